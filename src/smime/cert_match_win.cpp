#include "src/smime/cert_match_win.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "src/base/fatal.h"
#include "src/smime/address_words.h"
#include "src/smime/mail_names.h"
#include "src/smime/message_store_win.h"
#include "src/smime/report_writer.h"

namespace wfinfo::smime {
namespace {

constexpr char kEmailAttribute[] = "1.2.840.113549.1.9.1";
constexpr char kAltName[] = "2.5.29.17";
constexpr char kOlderAltName[] = "2.5.29.7";  // treated exactly like the other

constexpr std::size_t kLongestAttribute = 511;  // bytes
constexpr std::size_t kAltNameRoom = 256;       // bytes of a converted name, terminator included

// An address of a certificate. Only an exact one is what the certificate says and may be compared; any may be
// shown, once cleaned.
struct CertAddress {
  std::string_view text;
  bool is_exact;
};

// UTF-16 text in the ANSI code page. Best-fit letters are no exact conversion: what comes back differs. So
// this needs no flag, which some code pages refuse.
class AnsiText {
 public:
  explicit AnsiText(std::wstring_view wide) : is_exact_(wide.empty()) {
    if (wide.empty() || wide.size() > kMostUnits) return;
    const auto units = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    block_.reset(LocalAlloc(LPTR, static_cast<SIZE_T>(size) + wide.size()));
    if (size == 0 || !block_) return;
    WideCharToMultiByte(CP_ACP, 0, wide.data(), units, text(), size, nullptr, nullptr);
    used_ = static_cast<std::size_t>(size);
    is_exact_ = ConvertsBackTo(wide);
    if (!is_exact_) KeepAsciiOf(wide);
  }
  CertAddress get() const { return {{text(), used_}, is_exact_}; }

 private:
  static constexpr std::size_t kMostUnits = 0x100000;

  char* text() const { return static_cast<char*>(block_.get()); }
  bool ConvertsBackTo(std::wstring_view wide) const {
    const UniqueLocal block(LocalAlloc(LMEM_FIXED, wide.size() * sizeof(wchar_t)));
    auto* const back = static_cast<wchar_t*>(block.get());
    const auto units = static_cast<int>(wide.size());
    return back != nullptr &&
           MultiByteToWideChar(CP_ACP, 0, text(), static_cast<int>(used_), back, units) == units &&
           std::wstring_view(back, wide.size()) == wide;
  }
  // Every unit that is no ASCII character becomes "?": a letter that merely looks alike would mislead.
  void KeepAsciiOf(std::wstring_view wide) {
    used_ = wide.size();
    std::transform(wide.begin(), wide.end(), text(),
                   [](wchar_t unit) { return unit < 0x80 ? static_cast<char>(unit) : '?'; });
  }

  UniqueLocal block_;
  std::size_t used_ = 0;
  bool is_exact_;
};

std::string_view BytesOf(const CERT_RDN_VALUE_BLOB& value) {
  return {reinterpret_cast<const char*>(value.pbData), value.cbData};
}

// The decoder gives these types as UTF-16, however they are encoded.
std::wstring_view UnitsOf(const CERT_RDN_VALUE_BLOB& value) {
  return {reinterpret_cast<const wchar_t*>(value.pbData), value.cbData / sizeof(wchar_t)};
}

enum class ValueKind { kBytes, kUnits, kNoText };
ValueKind KindOf(const CERT_RDN_ATTR& attribute) {
  const DWORD type = attribute.dwValueType & CERT_RDN_TYPE_MASK;
  if (type == CERT_RDN_UNICODE_STRING || type == CERT_RDN_UTF8_STRING) return ValueKind::kUnits;
  return IS_CERT_RDN_CHAR_STRING(type) && type != CERT_RDN_UNIVERSAL_STRING ? ValueKind::kBytes
                                                                            : ValueKind::kNoText;
}

// Walks the attributes of a name until `visit(attribute)` answers false. Answers false then.
template <class Visit>
bool EachAttribute(const CERT_NAME_BLOB& encoded, Visit&& visit) {
  const Decoded<CERT_NAME_INFO> name(X509_NAME, encoded.pbData, encoded.cbData);
  if (name.get() == nullptr) return true;
  for (DWORD i = 0; i < name.get()->cRDN; ++i) {
    const CERT_RDN& part = name.get()->rgRDN[i];
    for (DWORD j = 0; j < part.cRDNAttr; ++j) {
      if (!visit(part.rgRDNAttr[j])) return false;
    }
  }
  return true;
}

// The same for the emailAddress attributes of the subject, as `visit(address)`.
template <class Visit>
bool EachSubjectEmail(PCCERT_CONTEXT cert, Visit&& visit) {
  return EachAttribute(cert->pCertInfo->Subject, [&visit](const CERT_RDN_ATTR& attribute) {
    if (std::strcmp(attribute.pszObjId, kEmailAttribute) != 0) return true;
    switch (KindOf(attribute)) {
      case ValueKind::kBytes:
        return visit(CertAddress{BytesOf(attribute.Value), true});
      case ValueKind::kUnits:
        return visit(AnsiText(UnitsOf(attribute.Value)).get());
      case ValueKind::kNoText:
        break;
    }
    return visit(CertAddress{"?", false});
  });
}

// The same for the RFC 822 names of one extension. The decoder ends a name at its first zero; the encoded
// form tells.
template <class Visit>
bool EachAltNameOf(const CERT_EXTENSION& extension, Visit&& visit) {
  const Decoded<CERT_ALT_NAME_INFO> names(X509_ALTERNATE_NAME, extension.Value.pbData,
                                          extension.Value.cbData);
  if (names.get() == nullptr) return true;
  MailNames encoded({reinterpret_cast<const char*>(extension.Value.pbData), extension.Value.cbData});
  for (DWORD i = 0; i < names.get()->cAltEntry; ++i) {
    const CERT_ALT_NAME_ENTRY& entry = names.get()->rgAltEntry[i];
    if (entry.dwAltNameChoice != CERT_ALT_NAME_RFC822_NAME) continue;
    const std::wstring_view decoded = entry.pwszRfc822Name;
    const std::optional<std::string_view> whole = encoded.Next();
    const bool goes_on = whole && whole->size() == decoded.size()
                             ? visit(AnsiText(decoded).get())
                             : visit(CertAddress{whole.value_or("?"), false});
    if (!goes_on) return false;
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

bool IsAddressOfCert(const CertAddress& own, std::string_view address) {
  return own.is_exact && IsSameAddress(own.text, address);
}

// True for what an address does not hold unless it is to be read as another.
bool IsBlankOrControl(char byte) { return static_cast<unsigned char>(byte) <= ' ' || byte == 0x7F; }

// An address in a form that is fit for a report, as a block; null without memory. Blanks and control
// characters, zeroes too, are "?" and not dropped: what is left could be another's address.
UniqueLocal ShownForm(std::string_view text) {
  UniqueLocal block(LocalAlloc(LPTR, text.size() + 1));
  if (!block) return block;
  auto* const shown = static_cast<char*>(block.get());
  std::replace_copy_if(text.begin(), text.end(), shown, &IsBlankOrControl, '?');
  CleanName(shown, true);
  return block;
}

// Adds `address` to a list. Answers whether it is in there whole and equals `sender`.
bool AddAddress(AddressListWriter& list, const CertAddress& address, std::string_view sender) {
  const UniqueLocal shown = ShownForm(address.text);
  if (!shown || !list.Add(static_cast<const char*>(shown.get()))) return false;
  return !sender.empty() && IsAddressOfCert(address, sender);
}

// The address that is the certificate's e-mail name, in a form that is fit for a report.
UniqueLocal FirstAddress(PCCERT_CONTEXT cert) {
  UniqueLocal first;
  const auto take = [&first](const CertAddress& address) {
    first = ShownForm(address.text);
    return false;
  };
  if (EachAltName(cert, take)) EachSubjectEmail(cert, take);
  return first;
}

// True when a text of the name holds a zero: whoever gives it as zero-terminated text gives a part of it.
bool HoldsZero(const CERT_NAME_BLOB& name) {
  return !EachAttribute(name, [](const CERT_RDN_ATTR& attribute) {
    if (KindOf(attribute) == ValueKind::kUnits)
      return UnitsOf(attribute.Value).find(L'\0') == std::wstring_view::npos;
    return KindOf(attribute) == ValueKind::kNoText ||
           BytesOf(attribute.Value).find('\0') == std::string_view::npos;
  });
}

}  // namespace

bool CertMatchesEmailBySubject(PCCERT_CONTEXT cert, const char* address) {
  return !EachSubjectEmail(cert, [address](const CertAddress& email) {
    if (email.text.size() > kLongestAttribute) StopProcess();
    return !IsAddressOfCert(email, address);
  });
}

bool CertMatchesEmailByAltName(PCCERT_CONTEXT cert, const char* address) {
  bool matches = false;
  EachAltName(cert, [&](const CertAddress& name) {
    const bool fits = !name.text.empty() && name.text.size() < kAltNameRoom;
    matches = fits && IsAddressOfCert(name, address);
    return false;  // the first name decides
  });
  return matches;
}

bool CertHasEmail(PCCERT_CONTEXT cert) {
  const auto stop = [](const CertAddress&) { return false; };
  return !EachSubjectEmail(cert, stop) || !EachAltName(cert, stop);
}

bool GetCertEmailList(PCCERT_CONTEXT cert, char* buffer, std::size_t capacity, std::string_view sender) {
  AddressListWriter list(buffer, capacity);
  bool holds_sender = false;
  const auto add = [&](const CertAddress& address) {
    holds_sender = AddAddress(list, address, sender) || holds_sender;
    return true;
  };
  EachSubjectEmail(cert, add);
  EachAltName(cert, add);
  return holds_sender;
}

const char* EmailNameOf(PCCERT_CONTEXT cert, char (&name)[kEmailRoom]) {
  name[0] = '\0';
  const UniqueLocal first = FirstAddress(cert);
  if (!first) return name;
  lstrcpynA(name, static_cast<const char*>(first.get()), kEmailRoom);
  CleanName(name, true);
  return name;
}

const char* ReadName(PCCERT_CONTEXT cert, DWORD type, DWORD flags, char* name, DWORD room) {
  name[0] = '\0';
  const DWORD written = g_crypto.CertGetNameStringA(cert, type, flags, nullptr, name, room);
  name[room - 1] = '\0';
  CleanName(name, written >= room);
  const bool is_issuer = (flags & CERT_NAME_ISSUER_FLAG) != 0;
  const std::size_t length = std::strlen(name);
  if (length + 1 < room && HoldsZero(is_issuer ? cert->pCertInfo->Issuer : cert->pCertInfo->Subject))
    lstrcpyA(name + length, "?");
  return name;
}

UniqueCert OwnCertificate(HCERTSTORE store) {
  UniqueCert own;
  bool has_email = false;
  EachCertificate(store, [&](PCCERT_CONTEXT cert) {
    const bool is_signer = IsMessageSigner(cert);
    const bool is_first_email = !has_email && CertHasEmail(cert);
    if (is_signer || is_first_email || !own) own.reset(g_crypto.CertDuplicateCertificateContext(cert));
    has_email = has_email || is_first_email;
    return !is_signer;
  });
  return own;
}

}  // namespace wfinfo::smime
