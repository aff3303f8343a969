// Dialog 105: five rows of a check box, a store to choose, and the label in front of that.
#include "resources/resource_ids.h"
#include "src/bridge/module_win.h"
#include "src/smime/import_win.h"
#include "src/smime/report_writer.h"

namespace wfinfo::smime {
namespace {

struct Question {
  ImportRow* rows;
  int count;
};

const char* TargetText(int target) {
  static const Message kTexts[kTargetCount] = {
      {"Other person", "ほかの人"},
      {"Intermediate certification authority", "中間証明機関"},
      {"Trusted certification authority", "信頼された証明機関"},
  };
  return Chosen(kTexts[target]);
}

void WriteCheckText(const ImportRow& row, char (&text)[256]) {
  ReportWriter(text, sizeof text)
      .AddFormat(row.is_installed ? Chosen({"Installed - %s", "登録済み - %s"})
                                  : Chosen({"%s register", "%s を登録する"}),
                 row.name);
}

void FillRow(HWND dialog, int i, const ImportRow& row) {
  char text[256];
  WriteCheckText(row, text);
  SetDlgItemTextA(dialog, IDC_IMPORT_FIRST_CHECK + i, text);
  CheckDlgButton(dialog, IDC_IMPORT_FIRST_CHECK + i, row.is_checked ? BST_CHECKED : BST_UNCHECKED);
  for (int target = 0; target < kTargetCount; ++target) {
    SendDlgItemMessageA(dialog, IDC_IMPORT_FIRST_COMBO + i, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(TargetText(target)));
  }
  SendDlgItemMessageA(dialog, IDC_IMPORT_FIRST_COMBO + i, CB_SETCURSEL, static_cast<WPARAM>(row.target), 0);
}

void Disable(HWND dialog, int i, bool hide) {
  for (const int first : {IDC_IMPORT_FIRST_CHECK, IDC_IMPORT_FIRST_COMBO, IDC_IMPORT_FIRST_LABEL}) {
    const HWND control = GetDlgItem(dialog, first + i);
    EnableWindow(control, FALSE);
    if (hide) ShowWindow(control, SW_HIDE);
  }
}

void FillIn(HWND dialog, const Question& question) {
  for (int i = 0; i < kMostImportRows; ++i) {
    const bool exists = i < question.count;
    if (exists) FillRow(dialog, i, question.rows[i]);
    if (!exists || question.rows[i].is_installed) Disable(dialog, i, !exists);
  }
}

void ReadBack(HWND dialog, int i, ImportRow& row) {
  row.is_checked = IsDlgButtonChecked(dialog, IDC_IMPORT_FIRST_CHECK + i) == BST_CHECKED;
  const LRESULT target = SendDlgItemMessageA(dialog, IDC_IMPORT_FIRST_COMBO + i, CB_GETCURSEL, 0, 0);
  if (target >= 0 && target < kTargetCount) row.target = static_cast<int>(target);
}

// A root makes everything below it trusted: asked for each one.
bool MayTrust(HWND dialog, const ImportRow& row) {
  char text[1024];
  ReportWriter(text, sizeof text)
      .AddFormat(
          Chosen(
              {"%s ... You are installing this certificate to the \"Trusted certification authority\" cert "
               "store.\n\n"
               "If you install it into this store, the certificate will be treated as 100%% trust. Are you "
               "OK to continue?",
               "%s ... この証明書を「信頼された証明機関」の証明書ストアに登録しようとしています。\n\n"
               "このストアに登録すると、この証明書は100%%"
               "信頼できるものとして扱われます。続けてもよろしいですか？"}),
          row.name);
  const char* const caption = Chosen({"Install to \"Trusted certification authority\" cert store",
                                      "「信頼された証明機関」の証明書ストアへの登録"});
  return MessageBoxA(dialog, text, caption, MB_YESNO | MB_ICONEXCLAMATION | MB_DEFBUTTON2) == IDYES;
}

bool TakeAnswers(HWND dialog, const Question& question) {
  for (int i = 0; i < question.count; ++i) {
    ImportRow& row = question.rows[i];
    ReadBack(dialog, i, row);
    if (row.is_checked && !row.is_installed && row.target == kRoot && !MayTrust(dialog, row)) return false;
  }
  return true;
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(dialog, DWLP_USER, lparam);
    FillIn(dialog, *reinterpret_cast<const Question*>(lparam));
    return TRUE;
  }
  if (message != WM_COMMAND || (LOWORD(wparam) != IDOK && LOWORD(wparam) != IDCANCEL)) return FALSE;
  const auto& question = *reinterpret_cast<const Question*>(GetWindowLongPtrA(dialog, DWLP_USER));
  if (LOWORD(wparam) == IDCANCEL) {
    EndDialog(dialog, 2);
  } else if (TakeAnswers(dialog, question)) {
    EndDialog(dialog, 1);
  }
  return TRUE;
}

}  // namespace

bool AskForImport(ImportRow* rows, int count, HWND parent) {
  Question question = {rows, count};
  return DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(IDD_CERT_IMPORT), parent, &Procedure,
                         reinterpret_cast<LPARAM>(&question)) == 1;
}

}  // namespace wfinfo::smime
