// Texts of templates and signatures, and the template with which the mails of a folder begin.
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/folder_pair_win.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/template_words.h"

using namespace wfinfo;

namespace {

constexpr int kCodeTemplateName = 113;
constexpr int kCodeLoadTemplate = 114;
constexpr int kCodeTemplateSign = 115;
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
