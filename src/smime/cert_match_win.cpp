#include "smime/cert_match_win.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/fatal.h"
#include "smime/address_words.h"
#include "smime/report_writer.h"

namespace wfinfo::smime {
namespace {

constexpr char kEmailAttribute[] = "1.2.840.113549.1.9.1";
constexpr char kAltName[] = "2.5.29.17";
constexpr char kOlderAltName[] = "2.5.29.7";  // treated exactly like the other

constexpr DWORD kLongestAttribute = 511;  // bytes
constexpr int kAltNameRoom = 256;         // bytes of a converted name, terminator included

// Walks the emailAddress attributes of the subject until `visit(text)` answers false. Answers false then.
template <class Visit>
bool EachSubjectEmail(PCCERT_CONTEXT cert, Visit&& visit) {
  const CERT_NAME_BLOB& subject = cert->pCertInfo->Subject;
  const Decoded<CERT_NAME_INFO> name(X509_NAME, subject.pbData, subject.cbData);
  if (name.get() == nullptr) return true;
  for (DWORD i = 0; i < name.get()->cRDN; ++i) {
    const CERT_RDN& part = name.get()->rgRDN[i];
    for (DWORD j = 0; j < part.cRDNAttr; ++j) {
      const CERT_RDN_ATTR& attribute = part.rgRDNAttr[j];
      if (std::strcmp(attribute.pszObjId, kEmailAttribute) != 0) continue;
      if (!visit(std::string_view(reinterpret_cast<const char*>(attribute.Value.pbData),
                                  attribute.Value.cbData))) {
        return false;
      }
    }
  }
  return true;
}

// The same for the RFC 822 names of one extension.
template <class Visit>
bool EachAltNameOf(const CERT_EXTENSION& extension, Visit&& visit) {
  const Decoded<CERT_ALT_NAME_INFO> names(X509_ALTERNATE_NAME, extension.Value.pbData,
                                          extension.Value.cbData);
  if (names.get() == nullptr) return true;
  for (DWORD i = 0; i < names.get()->cAltEntry; ++i) {
    const CERT_ALT_NAME_ENTRY& entry = names.get()->rgAltEntry[i];
    if (entry.dwAltNameChoice == CERT_ALT_NAME_RFC822_NAME && !visit(entry.pwszRfc822Name)) return false;
  }
  return true;
}

// The same for all alternative-name extensions in order.
template <class Visit>
bool EachAltName(PCCERT_CONTEXT cert, Visit&& visit) {
  for (DWORD i = 0; i < cert->pCertInfo->cExtension; ++i) {
    const CERT_EXTENSION& extension = cert->pCertInfo->rgExtension[i];
    const bool is_alt_name =
        std::strcmp(extension.pszObjId, kAltName) == 0 || std::strcmp(extension.pszObjId, kOlderAltName) == 0;
    if (is_alt_name && !EachAltNameOf(extension, visit)) return false;
  }
  return true;
}

// `name` in the ANSI code page; "" when it is too long.
const char* ToAnsi(LPCWSTR name, char (&ansi)[kAltNameRoom]) {
  if (WideCharToMultiByte(CP_ACP, 0, name, -1, ansi, kAltNameRoom, nullptr, nullptr) == 0) ansi[0] = '\0';
  return ansi;
}

// Adds `address` in a form that is fit for a report; a zero byte in it goes as the control characters do.
void AddAddress(AddressListWriter& list, std::string_view address) {
  const UniqueLocal block(LocalAlloc(LPTR, address.size() + 1));
  auto* const shown = static_cast<char*>(block.get());
  if (shown == nullptr) return;
  std::remove_copy(address.begin(), address.end(), shown, '\0');
  CleanName(shown, false);
  list.Add(shown);
}

}  // namespace

bool CertMatchesEmailBySubject(PCCERT_CONTEXT cert, const char* address) {
  return !EachSubjectEmail(cert, [address](std::string_view email) {
    if (email.size() > kLongestAttribute) StopProcess();
    return !EqualIgnoringCase(email, address);
  });
}

bool CertMatchesEmailByAltName(PCCERT_CONTEXT cert, const char* address) {
  bool matches = false;
  EachAltName(cert, [&](LPCWSTR name) {
    char ansi[kAltNameRoom];
    matches = ToAnsi(name, ansi)[0] != '\0' && EqualIgnoringCase(ansi, address);
    return false;  // the first name decides
  });
  return matches;
}

bool CertHasEmail(PCCERT_CONTEXT cert) {
  return !EachSubjectEmail(cert, [](std::string_view) { return false; }) ||
         !EachAltName(cert, [](LPCWSTR) { return false; });
}

void GetCertEmailList(PCCERT_CONTEXT cert, char* buffer, std::size_t capacity) {
  AddressListWriter list(buffer, capacity);
  EachSubjectEmail(cert, [&list](std::string_view email) {
    AddAddress(list, email);
    return true;
  });
  EachAltName(cert, [&list](LPCWSTR name) {
    char ansi[kAltNameRoom];
    AddAddress(list, ToAnsi(name, ansi));
    return true;
  });
}

const char* ReadName(PCCERT_CONTEXT cert, DWORD type, DWORD flags, char* name, DWORD room) {
  name[0] = '\0';
  const DWORD written = g_crypto.CertGetNameStringA(cert, type, flags, nullptr, name, room);
  name[room - 1] = '\0';
  CleanName(name, written >= room);
  return name;
}

UniqueCert OwnCertificate(HCERTSTORE store) {
  UniqueCert own;
  EachCertificate(store, [&own](PCCERT_CONTEXT cert) {
    const bool has_email = CertHasEmail(cert);
    if (has_email || !own) own.reset(g_crypto.CertDuplicateCertificateContext(cert));
    return !has_email;
  });
  return own;
}

}  // namespace wfinfo::smime
