#include "src/commands/book_results_win.h"

#include <utility>

#include "src/bridge/host_request_win.h"
#include "src/commands/text_cursor.h"

namespace wfinfo {
namespace {

constexpr int kCodeFreeBlock = 74;
constexpr Slot kSearchFailed = -1;

// The host's block with the results of the last address-book search.
constinit TextCursor g_bookResults;

// Makes `texts` the results of the last search and gives those before back to the host. They are forgotten
// first: a macro that the host runs meanwhile must neither read them nor give them back again.
void ReplaceBookResults(const char* texts) {
  const char* const before = std::exchange(g_bookResults, TextCursor(texts)).texts();
  if (before == nullptr || before == texts) return;
  Slot block[] = {ToSlot(before)};
  SendHostRequest(kCodeFreeBlock, block);
}

}  // namespace

void ForgetBookResults() { ReplaceBookResults(nullptr); }

int KeepBookResults(Slot answer) {
  const bool found = answer != kSearchFailed;
  ReplaceBookResults(found ? FromSlot<const char*>(answer) : nullptr);
  return found ? 1 : 0;
}

const char* BookResult(int index) { return g_bookResults.Text(index); }

}  // namespace wfinfo
