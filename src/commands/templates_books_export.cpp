#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/book_results_win.h"
#include "src/commands/folder_pair_win.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/template_words.h"
#include "src/text/host_text.h"

using namespace wfinfo;

namespace {

constexpr int kCodeFindPack = 81;
constexpr int kCodeTemplateName = 113;
constexpr int kCodeLoadTemplate = 114;
constexpr int kCodeTemplateSign = 115;
constexpr int kCodeFolderMailCount = 139;
constexpr int kCodeBookSearch = 143;
constexpr int kCodeLdapSearch = 144;
constexpr int kCodeTemplateReference = 153;
constexpr int kCodeSetTemplateReference = 154;

std::optional<Slot> TemplateKind(const char* kind) {
  return CodeOrReport(kTemplateKinds, TextOrEmpty(kind),
                      {"Invalid template kind specified in Template series function.",
                       "テンプレート系関数で、テンプレートの種類の指定が間違っています。"});
}

const char* TextOfTemplate(int code, const char* kind, const char* name) {
  const auto kind_code = TemplateKind(kind);
  if (!kind_code || !IsText(name)) return kNoText;
  Slot block[] = {*kind_code, ToSlot(name)};
  return SendHostRequestStr(code, block);
}

// Searching from the main window replaces the results shown: an old grep window is closed first. Not while a
// search runs, and not when the grep window itself asks.
void CloseOldGrepWindow() {
  if (IsTamarinMailGrep() == 0 && IsGrepProcessing() == 0) CloseGrepWnd(1);
}

}  // namespace

const char* GetTemplateName(const char* kind, int index) noexcept {
  const auto kind_code = TemplateKind(kind);
  if (!kind_code) return kNoText;
  Slot block[] = {*kind_code, ToSlot(index)};
  return SendHostRequestStr(kCodeTemplateName, block);
}

const char* LoadTemplate(const char* kind, const char* name) noexcept {
  return TextOfTemplate(kCodeLoadTemplate, kind, name);
}

const char* GetTemplateAssociatedSign(const char* kind, const char* name) noexcept {
  return TextOfTemplate(kCodeTemplateSign, kind, name);
}

const char* GetTemplateReference(const char* folder1, const char* folder2, unsigned kind) noexcept {
  if (!IsFolderPair(folder1, folder2) || kind >= kTemplateKindCount) return nullptr;
  Slot block[] = {ToSlot(folder1), ToSlot(folder2), ToSlot(kind)};
  return SendHostRequestStr(kCodeTemplateReference, block);
}

long long SetTemplateReference(const char* folder1, const char* folder2, unsigned kind,
                               const char* name) noexcept {
  if (!IsFolderPair(folder1, folder2) || kind >= kTemplateKindCount || !IsText(name)) return 0;
  Slot block[] = {ToSlot(folder1), ToSlot(folder2), ToSlot(kind), ToSlot(name)};
  return SendHostRequest(kCodeSetTemplateReference, block);
}

const char* GetFindPack(unsigned a, unsigned b) noexcept {
  Slot block[] = {ToSlot(a), ToSlot(b)};
  CopyWithinLimit(g_resultText, SendFrameRequestStr(kCodeFindPack, block), kShortResultSize);
  return g_resultText;
}

long long DoGrep(const char* folder1, const char* folder2, unsigned flags) noexcept {
  CloseOldGrepWindow();
  return DoGrep2(folder1, folder2, flags, 0);
}

long long StartDoGrep(const char* folder1, const char* folder2, unsigned flags) noexcept {
  CloseOldGrepWindow();
  return StartDoGrep2(folder1, folder2, flags, 0);
}

long long GetFolderMailCount(const char* folder1, const char* folder2, const char* kind) noexcept {
  if (!IsFolderPair(folder1, folder2) || !IsTextOrNull(kind)) return 0;
  const Slot counted = kind == nullptr ? kCountAllMails : KeywordOr(kMailCounts, kind, kCountAllMails);
  Slot block[] = {ToSlot(folder1), ToSlot(folder2), counted};
  return SendFrameRequest(kCodeFolderMailCount, block);
}

int DoBookGrep(const char* text, int a, int b) noexcept {
  ForgetBookResults();
  if (!IsText(text)) return 0;
  Slot block[] = {ToSlot(text), ToSlot(a), ToSlot(b)};
  return KeepBookResults(SendHostRequest(kCodeBookSearch, block));
}

int DoLdapGrep(const char* text, int a, const char* s1, const char* s2, int b) noexcept {
  ForgetBookResults();
  if (!IsText(text) || !IsText(s1) || !IsText(s2)) return 0;
  Slot block[] = {ToSlot(text), ToSlot(a), ToSlot(s1), ToSlot(s2), ToSlot(b)};
  return KeepBookResults(SendHostRequest(kCodeLdapSearch, block));
}

const char* GetGrepResult(int index) noexcept { return BookResult(index); }
