// The report on one certificate, and the system's own verdict on it.
#pragma once

#include "src/smime/crypto_binding_win.h"

namespace wfinfo::smime {

// Room of a certificate report, terminator included.
inline constexpr std::size_t kCertReportRoom = 8192;

// Checks `cert` and its chain; `further` (may be null) holds certificates that may belong to the chain. The
// result is valid until the next call.
const char* CertificateReport(PCCERT_CONTEXT cert, HCERTSTORE further);

// True when a report holds a problem.
bool HasProblem(const char* report);

// What TrustVerdict gives when wintrust cannot be used.
inline constexpr DWORD kNoTrustVerdict = 0xFFFFFFFF;

// WinVerifyTrust's result for the certificate; with `show_ui` the system may show its own windows.
DWORD TrustVerdict(bool show_ui, PCCERT_CONTEXT cert);

}  // namespace wfinfo::smime
