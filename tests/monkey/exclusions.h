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
    {"Bypass_ShellExecute", "starts programs"},
    {"SMIMEDecrypt", "Wine 8 ends a program that asks it to decrypt a message: smime_tests, with a stand-in"},
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
    {"65535 and -1 as the window of Bypass_PostMessage and SimulateKeyStroke2",
     "what the caller asks for: a message to every window of every program"},
    {"a message above 65535",
     "the system's own: Wine's 0x80000000 destroys all windows of the thread, "
     "and a box among them waits without end"},
    {"a module, certificate or store that is an address",
     "not checked: null and numbers that cannot be read"},
    {"bytes of a message that are more than there are", "not checked further than that they can be read"},
    {"a buffer to free", "freed whatever it is: null"},
    {"recipients or a pass phrase of many words for PGP",
     "without pgp.exe the system looks for a program under every beginning of the command line up to a "
     "blank: minutes"},
    {"1 MiB in Bypass_MessageBox", "the system takes many seconds to lay it out: 9,000 bytes at most"},
    {"a text without a terminator that goes on for more than is checked", "no check can tell"},
    {"NUL as the name of a file",
     "Bypass_SetFileAttributes, run by root, makes Wine write-protect /dev/null: tests of files"},
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
inline constexpr const char* kPgpWords[] = {"",           "a@b.c",    "a@b.c  d@e.f", "a b c d",
                                            "\"a\" %s\\", "\x93\xFA", "\x1A\x81"};
inline constexpr OwnTexts kOwnTexts[] = {
    {"PgpEncrypt", "recipients", kPgpWords},
    {"PgpEncryptSuper", "recipients", kPgpWords},
    {"PgpEncryptSuper", "pass_phrase", kPgpWords},
    {"PgpSign", "pass_phrase", kPgpWords},
    {"PgpDecrypt", "pass_phrase", kPgpWords},
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
inline constexpr long long kNull[] = {0};
// No module, certificate or store, and no address that can be read.
inline constexpr long long kNoObjects[] = {0, 1, 2, -1, 65535, 0x7FFFFFFFFFFFFFFF};
inline constexpr long long kByteCounts[] = {0, 1, 2, 16, 100, 4095, 4096};
inline constexpr OwnNumbers kOwnNumbers[] = {
    {"Sock_connect", "port", kClosedPorts},
    {"MAPIFreeBuffer", "buffer", kNull},
    {"DllFunc", "module", kNoObjects},
    {"FreeDll", "module", kNoObjects},
    {"FreeCertificate", "store", kNoObjects},
    {"SMIMEVerify", "size", kByteCounts},
    {"SMIMEVerify", "detached_size", kByteCounts},
    {"SMIMEVerify", "decryption", kNull},
    {"SMIMEVerifyCertificate", "cert", kNoObjects},
    {"SMIMEVerifyCertificate", "further", kNoObjects},
    {"SMIMEVerifyCertificateByWinVerifyTrust_Cert", "cert", kNoObjects},
    {"SMIMEVerifyCertificateByWinVerifyTrust", "store", kNoObjects},
    {"SMIMEVerifyRevocation", "store", kNoObjects},
    {"SMIMEVerifyRevocation_Cert", "cert", kNoObjects},
    {"SMIMEVerifyRevocation_Cert", "store", kNoObjects},
    {"SMIMEAddCertificate", "source", kNoObjects},
    {"SMIMEAddEncodedCertificate", "size", kByteCounts},
    {"SMIMEShowCertificate", "store", kNoObjects},
};

// Parameters that would reach windows of other programs: 65535 and -1 name them all.
struct ToOneWindow {
  std::string_view name;
  std::string_view parameter;
};
inline constexpr ToOneWindow kToOneWindow[] = {{"Bypass_PostMessage", "window"},
                                               {"SimulateKeyStroke2", "window"}};

constexpr bool MustNameOneWindow(std::string_view name, std::string_view parameter) {
  for (const ToOneWindow& each : kToOneWindow) {
    if (each.name == name && each.parameter == parameter) return true;
  }
  return false;
}

// Its texts are laid out by the system as they are.
constexpr bool ShowsItsTexts(std::string_view name) { return name == "Bypass_MessageBox"; }

// Messages that programs may send; those above are the system's own.
inline constexpr long long kMessages = 0xFFFF;
constexpr bool IsMessage(std::string_view name, std::string_view parameter) {
  return name == "Bypass_PostMessage" && parameter == "message";
}

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
