// What the monkey leaves out or tames, with the reason each, and texts of its own for parameters that would reach
// beyond this machine. docs/reliability.md shows these tables; `monkey --left-out` prints them.
#pragma once

#include <span>
#include <string_view>

#include "src/catalogue/rows.h"

namespace monkey {

struct LeftOut {
  std::string_view name;
  std::string_view why;
};

// Exports that are not called.
inline constexpr LeftOut kLeftOut[] = {
    {"MAPILogon", "starts the host's program: tests of mapi"},
    {"MAPISendMail", "starts the host's program; its records are not checked: tests of mapi"},
    {"MAPISendDocuments", "starts the host's program: tests of mapi"},
    {"MAPIFindNext", "starts the host's program: tests of mapi"},
    {"MAPIReadMail", "starts the host's program: tests of mapi"},
    {"MAPIDeleteMail", "starts the host's program: tests of mapi"},
    {"MAPIResolveName", "the caller frees what it gets, which a monkey forgets: tests of mapi"},
    {"MAPIFreeBuffer", "frees whatever it is given"},
    {"Bypass_ShellExecute", "starts programs"},
    {"SelectCertCrcDialog", "shows a dialog of the system's: smime_tests"},
    {"SMIMEAddCertificate", "certificate stores are not checked: smime_tests"},
    {"SMIMEShowCertificate", "certificate stores are not checked: smime_tests"},
    {"SMIMEAddEncodedCertificate", "its bytes are not checked, and it writes the user's store: smime_tests"},
    {"DllFunc", "calls whatever the arguments name, with arguments that nobody checks"},
    {"FreeDll", "gives back any module, the program's own too"},
    {"FreeCertificate", "certificate stores are not checked"},
    {"SMIMEDecrypt", "its bytes are not checked: smime_tests"},
    {"SMIMEVerify", "its bytes are not checked: smime_tests"},
    {"SMIMEVerifyCertificate", "certificates and stores are not checked: smime_tests"},
    {"SMIMEVerifyCertificateByWinVerifyTrust", "certificate stores are not checked: smime_tests"},
    {"SMIMEVerifyCertificateByWinVerifyTrust_Cert", "certificates are not checked: smime_tests"},
    {"SMIMEVerifyRevocation", "certificate stores are not checked: smime_tests"},
    {"SMIMEVerifyRevocation_Cert", "certificates and stores are not checked: smime_tests"},
};

// Called in a manner of its own, by the monkey's set-up.
inline constexpr LeftOut kCalledBySetUp[] = {
    {"NotifyWrenfoldInfo", "the address of its function is not checked: good records, short and whole"},
    {"GetWFInfoVersion", "the addresses in its table are not checked: none, or one whose log calls back"},
};

// What the monkey's host and its arguments never do.
inline constexpr LeftOut kTamed[] = {
    {"a number for an answer that is a text", "an address of the host's, which nobody checks"},
    {"code 4 with more than 99", "the number of headers: each is asked for"},
    {"code 176 with a table", "an address of the host's, whose functions are called"},
    {"code 256 with 1", "the search goes on: waited for without end, as its interface says"},
    {"a menu or a move of a window", "the system waits for the user; the host's windows refuse both"},
    {"65535 and -1 as a window", "the system takes it for every window of every program"},
    {"a text without a terminator that goes on for more than is checked", "no check can tell"},
};

// Texts of a parameter in place of any: seven times of eight one of these, else what is no text.
struct OwnTexts {
  std::string_view name;
  std::string_view parameter;
  std::span<const char* const> texts;
};

inline constexpr const char* kAddresses[] = {"127.0.0.1", "localhost", "0.0.0.0", "127.1"};
inline constexpr const char* kUrls[] = {"http://127.0.0.1:1/",    "http://", "", "x", "ftp://127.0.0.1:1/a",
                                        "http://127.0.0.1:99999/"};
inline constexpr const char* kListedExports[] = {"SetNameOnly", "SetEmailOnly",   "AddSama", "ToUpper",
                                                 "ToLower",     "no such export", ""};
// An unknown word is reported without end, as the interface says.
inline constexpr const char* kDuplicationWords[] = {"", "batch", "under+hotonly", "BATCHyesall+"};
inline constexpr OwnTexts kOwnTexts[] = {
    {"CheckDuplication", "mode", kDuplicationWords},
    {"Inet_OpenUrl", "url", kUrls},
    {"Sock_connect", "host", kAddresses},
    {"Sock_gethostbyname", "name", kAddresses},
    {"Sock_gethostbyaddr", "address", kAddresses},
    {"CallByEmailList", "export_name", kListedExports},
};

// Numbers of a parameter in place of any.
struct OwnNumbers {
  std::string_view name;
  std::string_view parameter;
  std::span<const long long> numbers;
};

// Nobody listens there: with a connection Sock_recv waits 20 seconds, as its interface says.
inline constexpr long long kClosedPorts[] = {1, 0x10001, -65535, 0};
inline constexpr OwnNumbers kOwnNumbers[] = {{"Sock_connect", "port", kClosedPorts}};

constexpr const OwnNumbers* OwnNumbersOf(std::string_view name, std::string_view parameter) {
  for (const OwnNumbers& own : kOwnNumbers) {
    if (own.name == name && own.parameter == parameter) return &own;
  }
  return nullptr;
}

constexpr const OwnTexts* OwnTextsOf(std::string_view name, std::string_view parameter) {
  for (const OwnTexts& own : kOwnTexts) {
    if (own.name == name && own.parameter == parameter) return &own;
  }
  return nullptr;
}

// Why a row is not called like the others; "" for those that are.
constexpr std::string_view ReasonToLeaveOut(std::string_view name) {
  for (const LeftOut& left : kLeftOut) {
    if (left.name == name) return left.why;
  }
  for (const LeftOut& left : kCalledBySetUp) {
    if (left.name == name) return left.why;
  }
  return "";
}

}  // namespace monkey
