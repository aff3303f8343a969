// Searches of the address book, whose results the library keeps until the next one.
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/book_results_win.h"

using namespace wfinfo;

namespace {

constexpr int kCodeBookSearch = 143;
constexpr int kCodeLdapSearch = 144;

}  // namespace

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
