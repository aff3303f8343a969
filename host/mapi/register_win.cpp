#include "host/mapi/register_win.h"

#include <windows.h>

#include "host/charset/charsets.h"
#include "host/files/own_folder_win.h"
#include "src/base/unique_win.h"

namespace wrenfold {
namespace {

constexpr wchar_t kMailKey[] = L"Software\\Clients\\Mail";
constexpr wchar_t kClient[] = L"Wrenfold";
constexpr wchar_t kClientKey[] = L"Software\\Clients\\Mail\\Wrenfold";
// What was there before, kept in our own key.
constexpr wchar_t kFormerDefault[] = L"FormerDefault";
constexpr wchar_t kMadeMailKey[] = L"MadeMailKey";

using Key = wfinfo::Unique<wfinfo::PointerTraits<HKEY, &RegCloseKey>>;

std::string Why(const char* what, LSTATUS status) {
  if (status == ERROR_ACCESS_DENIED)
    return std::string(what) + ": access denied; run this as an administrator";
  return std::string(what) + ": error " + std::to_string(status);
}

LSTATUS Open(const wchar_t* path, REGSAM access, Key& key) {
  HKEY opened = nullptr;
  const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, access, &opened);
  key.reset(opened);
  return status;
}

// A text value; nullopt when there is none.
std::optional<std::wstring> Read(HKEY key, const wchar_t* name) {
  wchar_t text[1024] = L"";
  DWORD size = sizeof text - sizeof *text;
  if (RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS)
    return std::nullopt;
  return text;
}

LSTATUS Write(HKEY key, const wchar_t* name, const std::wstring& text) {
  return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

std::wstring LibraryPath() { return OwnFolder() + L"WFINFO.dll"; }

// Fills in our client's key; the first failure counts.
LSTATUS WriteClient(HKEY client, const std::optional<std::wstring>& former, bool made_mail_key) {
  const std::wstring library = LibraryPath();
  LSTATUS status = Write(client, nullptr, kClient);
  if (status == ERROR_SUCCESS) status = Write(client, L"DLLPath", library);
  // The system frees what a library handed out through the one that this value names.
  if (status == ERROR_SUCCESS) status = Write(client, L"DLLPathEx", library);
  if (status == ERROR_SUCCESS && former) status = Write(client, kFormerDefault, *former);
  if (status == ERROR_SUCCESS && made_mail_key) status = Write(client, kMadeMailKey, L"1");
  return status;
}

}  // namespace

std::optional<std::string> RegisterMapi(const Consent& consent) {
  Key existing;
  const bool has_mail_key = Open(kMailKey, KEY_READ, existing) == ERROR_SUCCESS;
  const auto former = has_mail_key ? Read(existing.get(), nullptr) : std::nullopt;
  const bool ours_already = former == kClient;
  if (former && !former->empty() && !ours_already &&
      !consent("The system's mail client is " + WideToUtf8(Utf16(*former)) +
               ". 32-bit programs cannot use Wrenfold: they will reach no mail client. "
               "Replace it with Wrenfold?")) {
    return "nothing was changed";
  }
  HKEY made = nullptr;
  LSTATUS status =
      RegCreateKeyExW(HKEY_LOCAL_MACHINE, kClientKey, 0, nullptr, 0, KEY_WRITE, nullptr, &made, nullptr);
  const Key client(made);
  // A second registration keeps what the first found.
  if (status == ERROR_SUCCESS) {
    status = WriteClient(client.get(), ours_already ? std::nullopt : former, !has_mail_key);
  }
  Key mail;
  if (status == ERROR_SUCCESS) status = Open(kMailKey, KEY_WRITE, mail);
  if (status == ERROR_SUCCESS) status = Write(mail.get(), nullptr, kClient);
  if (status != ERROR_SUCCESS) return Why("cannot register", status);
  return std::nullopt;
}

std::optional<std::string> UnregisterMapi() {
  Key client;
  const LSTATUS opened = Open(kClientKey, KEY_READ, client);
  if (opened == ERROR_FILE_NOT_FOUND) return "Wrenfold is not registered";
  if (opened != ERROR_SUCCESS) return Why("cannot unregister", opened);
  const auto former = Read(client.get(), kFormerDefault);
  const bool made_mail_key = Read(client.get(), kMadeMailKey).has_value();
  client.reset();
  Key mail;
  LSTATUS status = Open(kMailKey, KEY_READ | KEY_WRITE, mail);
  // Another client that became the default since stays it.
  if (status == ERROR_SUCCESS && Read(mail.get(), nullptr) == kClient) {
    status = former ? Write(mail.get(), nullptr, *former) : RegDeleteValueW(mail.get(), nullptr);
  }
  if (status == ERROR_SUCCESS) status = RegDeleteKeyW(HKEY_LOCAL_MACHINE, kClientKey);
  if (status != ERROR_SUCCESS) return Why("cannot unregister", status);
  DWORD keys = 0;
  DWORD values = 0;
  RegQueryInfoKeyW(mail.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                   nullptr, nullptr);
  mail.reset();
  if (made_mail_key && keys == 0 && values == 0) RegDeleteKeyW(HKEY_LOCAL_MACHINE, kMailKey);
  return std::nullopt;
}

}  // namespace wrenfold
