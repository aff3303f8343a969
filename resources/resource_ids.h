// Numbers of the library's resources.
#pragma once

// Waiting for an OpenPGP program.
#define IDD_PGP_WAIT 103
#define IDD_GNUPG_WAIT 104
#define IDC_PGP_WAIT_ICON 1000

// S/MIME: choice of a certificate.
#define IDD_CERT_CHOICE 107
#define IDC_CERT_CHOICE_TEXT 1013
#define IDC_CERT_CHOICE_LIST 1014

// S/MIME: import of certificates. Row i (0 to 4) has the controls first + i.
#define IDD_CERT_IMPORT 105
#define IDC_IMPORT_FIRST_CHECK 1001
#define IDC_IMPORT_FIRST_COMBO 1006
#define IDC_IMPORT_FIRST_LABEL 1011

// Simple MAPI: waiting for the host.
#define IDD_HOST_BUSY 101
#define IDD_CALLING_HOST 102
#define IDC_LAUNCH_ICON 1000
