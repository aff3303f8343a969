// What the monkey leaves out, with the reason each.
#pragma once

#include <string_view>

#include "src/catalogue/rows.h"

namespace monkey {

struct LeftOut {
  std::string_view name;  // of an export, or of a family
  std::string_view why;
};

inline constexpr LeftOut kLeftOut[] = {
    {"Simple MAPI", "runs in another program and starts the host: tests of mapi"},
    {"Bypass_ShellExecute", "starts programs"},
    {"Bypass_MessageBox", "waits for the user"},
    {"Bypass_MessageBoxW", "waits for the user"},
    {"Inet_OpenUrl", "goes to the network: soak and faults"},
    {"Sock_connect", "goes to the network: soak and faults"},
    {"Sock_gethostbyname", "goes to the network"},
    {"Sock_gethostbyaddr", "goes to the network"},
    {"PgpEncryptSuper", "starts programs: pgp_tests"},
    {"PgpEncrypt", "starts programs: pgp_tests"},
    {"PgpSign", "starts programs: pgp_tests"},
    {"PgpDecrypt", "starts programs: pgp_tests"},
    {"SelectCertCrcDialog", "shows a dialog of the system's: smime_tests"},
    {"SMIMEAddCertificate", "shows a dialog: smime_tests"},
    {"SMIMEShowCertificate", "shows a dialog of the system's: smime_tests"},
    {"SMIMEAddEncodedCertificate", "shows a dialog, and writes the user's store: smime_tests"},
    {"NotifyWrenfoldInfo", "the monkey's own set-up; its record is not checked"},
    {"GetWFInfoVersion", "the host's table is not checked"},
    {"DllFunc", "calls whatever the arguments name, with arguments that nobody checks"},
    {"FreeDll", "gives back any module, the program's own too"},
    {"CallByEmailList", "calls an export with arguments that nobody checks"},
    {"CheckDuplication", "reports an unknown mode word without end, as its interface says"},
    {"FreeCertificate", "a certificate store is not checked"},
    {"SMIMEDecrypt", "its bytes are not checked: smime_tests"},
    {"SMIMEVerify", "its bytes are not checked: smime_tests"},
    {"SMIMEVerifyCertificate", "certificates and stores are not checked: smime_tests"},
    {"SMIMEVerifyCertificateByWinVerifyTrust", "certificates and stores are not checked: smime_tests"},
    {"SMIMEVerifyCertificateByWinVerifyTrust_Cert", "certificates and stores are not checked: smime_tests"},
    {"SMIMEVerifyRevocation", "certificates and stores are not checked: smime_tests"},
    {"SMIMEVerifyRevocation_Cert", "certificates and stores are not checked: smime_tests"},
};

constexpr std::string_view ReasonToLeaveOut(const wfinfo::catalogue::Row& row) {
  for (const LeftOut& left : kLeftOut) {
    if (row.name == left.name || row.family == left.name) return left.why;
  }
  return "";
}

}  // namespace monkey
