#include "tests/inside/smime/tool.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "src/bridge/security_state_win.h"
#include "src/smime/cert_choice_dialog_win.h"
#include "src/smime/import_win.h"
#include "src/smime/smime_engine_win.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

std::string Load(const std::string& name) {
  std::string bytes;
  if (FILE* file = std::fopen(name.c_str(), "rb")) {
    char room[4096];
    for (std::size_t got; (got = std::fread(room, 1, sizeof room, file)) > 0;) bytes.append(room, got);
    std::fclose(file);
  }
  return bytes;
}

void Save(const std::string& name, const char* bytes, std::size_t size) {
  if (FILE* file = std::fopen(name.c_str(), "wb")) {
    std::fwrite(bytes, 1, size, file);
    std::fclose(file);
  }
}

void Print(const char* name, const std::string& value) {
  std::printf("%s=", name);
  for (const char byte : value) std::printf("%02x", static_cast<unsigned char>(byte));
  std::printf("\n");
}
void Print(const char* name, long long value) { Print(name, std::to_string(value)); }

const char* OrNull(const std::string& text) { return text == "-" ? nullptr : text.c_str(); }

// "hex:" and bytes in hexadecimal, for what a command line of another code page would not carry.
std::string Plain(const std::string& argument) {
  if (argument.rfind("hex:", 0) != 0) return argument;
  std::string bytes;
  for (std::size_t i = 4; i + 1 < argument.size(); i += 2) {
    bytes += static_cast<char>(std::strtoul(argument.substr(i, 2).c_str(), nullptr, 16));
  }
  return bytes;
}

// What the last operation left behind.
void PrintState(const char* result, const std::string& output) {
  Print("result", std::string(result, result == nullptr ? 0 : std::char_traits<char>::length(result)));
  Print("size", PgpGetSMIMEOutputSize());
  Print("state", wfinfo::g_signatureState);
  Print("exit", wfinfo::g_pgpExitCode);
  Print("info", wfinfo::PgpInfoText());
  if (!output.empty()) Save(output, result, PgpGetSMIMEOutputSize());
}

using Arguments = std::vector<std::string>;

void Make(const Arguments& a) {
  const std::string text = Load(a[2]);
  PrintState(
      wfinfo::smime::SmimeEncryptSign(std::atoi(a[1].c_str()), text.c_str(), OrNull(a[3]), OrNull(a[4]),
                                      std::atoi(a[5].c_str()), std::atoi(a[6].c_str()), 0),
      a[7]);
}

void Decrypt(const Arguments& a) {
  const std::string message = Load(a[1]);
  PrintState(SMIMEDecrypt(message.data(), static_cast<unsigned>(message.size()),
                          a.size() > 3 ? OrNull(a[3]) : nullptr),
             a[2]);
}

void Verify(const Arguments& a) {
  const std::string message = Load(a[1]);
  const std::string content = a[3] == "-" ? "" : Load(a[3]);
  PrintState(SMIMEVerify(message.data(), static_cast<unsigned>(message.size()),
                         a[3] == "-" ? nullptr : content.data(), static_cast<unsigned>(content.size()),
                         a.size() > 4 ? OrNull(a[4]) : nullptr, nullptr),
             a[2]);
}

void Open(const Arguments& a) {
  const std::string message = Load(a[1]);
  HCERTSTORE stores[] = {CertOpenSystemStoreA(0, "My")};
  CRYPT_DECRYPT_MESSAGE_PARA decryption{};
  decryption.cbSize = sizeof decryption;
  decryption.dwMsgAndCertEncodingType = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;
  decryption.cCertStore = 1;
  decryption.rghCertStore = stores;
  PrintState(SMIMEVerify(message.data(), static_cast<unsigned>(message.size()), nullptr, 0,
                         a.size() > 3 ? OrNull(a[3]) : nullptr, &decryption),
             a[2]);
  CertCloseStore(stores[0], 0);
}

void Report(const Arguments& a) {
  const std::string der = Load(a[1]);
  const PCCERT_CONTEXT cert = CertCreateCertificateContext(
      X509_ASN_ENCODING, reinterpret_cast<const BYTE*>(der.data()), static_cast<DWORD>(der.size()));
  Print("report", SMIMEVerifyCertificate(cert, nullptr));
  CertFreeCertificateContext(cert);
}

void Revoke(const Arguments& a, HWND frame) {
  const HWND control =
      CreateWindowExA(0, "EDIT", "", WS_CHILD | ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL, 0, 0, 100,
                      100, frame, nullptr, GetModuleHandleA(nullptr), nullptr);
  SendMessageA(control, EM_LIMITTEXT, 0, 0);
  for (int times = a.size() > 2 ? std::atoi(a[2].c_str()) : 1; times > 0; --times) {
    Verify({"", a[1], "", "-"});
    SetWindowTextA(control, wfinfo::PgpInfoText());
    SendMessageA(control, EM_SETSEL, 0x7FFFFFFF, 0x7FFFFFFF);
    void* const store = RetrieveCertificate();
    Print("checked", SMIMEVerifyRevocation(store, control));
    FreeCertificate(store);
    Print("control", HostTextOf(control));
  }
}

void Import(const Arguments& a) {
  Verify({"", a[1], "", "-"});
  void* const store = RetrieveCertificate();
  Print("imported", SMIMEAddCertificate(store, 1, nullptr));
  FreeCertificate(store);
}

void Balance(const Arguments& a) {
  const std::string message = Load(a[1]);
  const std::string envelope = Load(a[2]);
  CountedCrypto crypto;
  crypto.uses_real_stores = true;
  int good = 0;
  for (int i = std::atoi(a[3].c_str()); i > 0; --i) {
    SMIMEVerify(message.data(), static_cast<unsigned>(message.size()), nullptr, 0, "alice@example.org",
                nullptr);
    good += wfinfo::g_signatureState == 1;
    SMIMEDecrypt(envelope.data(), static_cast<unsigned>(envelope.size()), nullptr);
    good += wfinfo::g_signatureState == 0 && PgpGetSMIMEOutputSize() != 0;
    const char* const made =
        wfinfo::smime::SmimeEncryptSign(2, "text", "bob@example.org", "alice@example.org", 6, 0, 0);
    good += *made != '\0';
  }
  FreeCertificate(RetrieveCertificate());
  Print("good", good);
  Print("held", crypto.open_certs() + 1000LL * crypto.open_stores() + 1000000LL * crypto.open_chains());
}

// Shows dialog 105 or 107 for some seconds, to be looked at.
void Show(const Arguments& a) {
  const auto wait = static_cast<DWORD>(std::atoi(a[2].c_str())) * 1000;
  DialogDriver driver(IDCANCEL, [wait](HWND dialog) {
    Sleep(wait);
    PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
  });
  if (a[1] == "105") {
    wfinfo::smime::ImportRow rows[] = {{0, "Alice Example", 0, true, false},
                                       {1, "Sample Intermediate", 1, true, true},
                                       {2, "Sample Root", 2, false, false},
                                       {3, "An Authority With a Rather Long Name", 1, true, false}};
    wfinfo::smime::AskForImport(rows, 4, nullptr);
    return;
  }
  Authority authority("Sample Intermediate Authority");
  const PCCERT_CONTEXT certs[] = {authority.Issue(ForEmail("alice@example.org")),
                                  authority.Issue(ForEmail("alice@example.org"))};
  wfinfo::smime::LoadCryptoLibrary();
  const wfinfo::smime::Candidate candidates[] = {{certs[0], true}, {certs[1], false}};
  wfinfo::smime::ChooseCertificate(candidates, 2, "alice@example.org");
}

}  // namespace

int RunTool(int count, char** arguments) {
  Arguments a;
  for (int i = 0; i < count; ++i) a.push_back(Plain(arguments[i]));
  const char* const language = std::getenv("WFINFO_LANGUAGE");
  ScriptedHost host(language != nullptr && std::string(language) == "ja" ? Language::kJapanese
                                                                         : Language::kEnglish);
  std::wstring wide;
  host.Expect(313).Any().Always().Do([&wide](const Request& request) {
    const auto* const text = reinterpret_cast<const char*>(request.block[0]);
    wide.resize(8192);
    MultiByteToWideChar(932, 0, text, -1, wide.data(), static_cast<int>(wide.size()));
    return static_cast<Slot>(reinterpret_cast<INT_PTR>(wide.data()));
  });
  const std::string& command = a[0];
  if (command == "show") {
    Show(a);
    return 0;
  }
  BoxCloser boxes;
  if (command == "make") Make(a);
  if (command == "decrypt") Decrypt(a);
  if (command == "verify") Verify(a);
  if (command == "open") Open(a);
  if (command == "report") Report(a);
  if (command == "revoke") Revoke(a, host.frame());
  if (command == "import") Import(a);
  if (command == "balance") Balance(a);
  for (const auto& box : boxes.boxes()) Print("box", box.text);
  for (const auto& message : host.TakeMessages()) Print("message", message);
  return 0;
}

}  // namespace wfinfo_test
