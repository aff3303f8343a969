#include "src/smime/cert_choice_dialog_win.h"

#include "resources/resource_ids.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/module_win.h"
#include "src/smime/cert_match_win.h"
#include "src/smime/report_writer.h"

namespace wfinfo::smime {
namespace {

struct Question {
  const Candidate* candidates;
  int count;
  const char* address;
};

SYSTEMTIME DateOf(const FILETIME& time) {
  SYSTEMTIME date{};
  FileTimeToSystemTime(&time, &date);
  return date;
}

// "<mark> Expiration date=<from>～<to> Issuer=<name>"; the dates are UTC.
void WriteLine(ReportWriter& line, const Candidate& candidate) {
  const char* const mark = candidate.is_valid ? kGoodMark : kProblemMark;
  const SYSTEMTIME from = DateOf(candidate.cert->pCertInfo->NotBefore);
  const SYSTEMTIME to = DateOf(candidate.cert->pCertInfo->NotAfter);
  if (g_useEnglish != 0) {
    line.AddFormat("%s Expiration date=%02u/%02u/%04u～%02u/%02u/%04u Issuer=", mark, from.wMonth, from.wDay,
                   from.wYear, to.wMonth, to.wDay, to.wYear);
  } else {
    line.AddFormat("%s 有効期限=%04u/%02u/%02u～%04u/%02u/%02u 発行元=", mark, from.wYear, from.wMonth,
                   from.wDay, to.wYear, to.wMonth, to.wDay);
  }
  char issuer[256];
  line.Add(NameOf(candidate.cert, CERT_NAME_FRIENDLY_DISPLAY_TYPE, CERT_NAME_ISSUER_FLAG, issuer));
}

void FillIn(HWND dialog, const Question& question) {
  char room[1024];
  ReportWriter prompt(room, sizeof room);
  prompt.AddFormat(
      Chosen({"Two or more certifications found for email addresss: %s. Please select one for use.",
              "メールアドレス %s に使える証明書が２つ以上見つかりました。使用する証明書を選んでください。"}),
      question.address);
  SetDlgItemTextA(dialog, IDC_CERT_CHOICE_TEXT, prompt.text());
  for (int i = 0; i < question.count; ++i) {
    ReportWriter line(room, sizeof room);
    WriteLine(line, question.candidates[i]);
    SendDlgItemMessageA(dialog, IDC_CERT_CHOICE_LIST, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.text()));
  }
  SendDlgItemMessageA(dialog, IDC_CERT_CHOICE_LIST, LB_SETCURSEL, 0, 0);
}

INT_PTR EndWithSelection(HWND dialog) {
  EndDialog(dialog, SendDlgItemMessageA(dialog, IDC_CERT_CHOICE_LIST, LB_GETCURSEL, 0, 0));
  return TRUE;
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    FillIn(dialog, *reinterpret_cast<const Question*>(lparam));
    return TRUE;
  }
  if (message != WM_COMMAND) return FALSE;
  const WORD id = LOWORD(wparam);
  if (id == IDOK || (id == IDC_CERT_CHOICE_LIST && HIWORD(wparam) == LBN_DBLCLK))
    return EndWithSelection(dialog);
  if (id != IDCANCEL) return FALSE;
  EndDialog(dialog, -1);
  return TRUE;
}

}  // namespace

int ChooseCertificate(const Candidate* candidates, int count, const char* address) {
  const Question question = {candidates, count, address};
  HWND owner = GetActiveWindow();
  if (owner == nullptr) owner = MessageBoxOwner();
  return static_cast<int>(DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(IDD_CERT_CHOICE), owner, &Procedure,
                                          reinterpret_cast<LPARAM>(&question)));
}

}  // namespace wfinfo::smime
