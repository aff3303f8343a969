// Exports that quote the root mail and steer line folding. The host quotes and folds; here stands which text
// goes to it with which width, and the line ends that tell it what not to fold.
#include <cstring>

#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/value_params_win.h"
#include "src/catalogue/declarations.h"
#include "src/message/line_ends.h"

using namespace wfinfo;

namespace {

// Function codes and commands of the host.
constexpr int kCodeRootState = 263;
constexpr int kCodeQuote = 86;
constexpr int kCodeQuoteWidth = 262;
constexpr int kCodeQuoteBelow = 297;
constexpr int kDontFoldCommand = 40179;

bool StateHas(int code, MailState bit) { return (SendHostRequest(code) & bit) != 0; }

// `text` with all its line ends in one form. It may be the kept block, which is freed only after the copy.
const char* WithLineEnds(const char* text, LineEnd form) {
  if (!IsText(text)) return kNoText;
  const FoldSize size = MeasureLineEnds(text, form);
  if (size.output == 0) return kNoText;
  char* const block = NewUnwrittenBlock(size.output + 1);
  if (block == nullptr) return kNoText;
  WriteLineEnds(text, form, size, block);
  block[size.output] = '\0';
  return KeepLongResult(block);
}

// The texts that these get are results, which a macro may end while the host works.
const char* QuoteText(const char* text) {
  return WithLentText(text, [](const char* lent) {
    Slot block[] = {ToSlot(lent)};
    return SendHostRequestStr(kCodeQuote, block);
  });
}

const char* QuoteUnfolded(const char* text) {
  return WithLentText(text, [](const char* lent) { return QuoteWidth(lent, kUnfoldedWidth); });
}

// Quotes as the root mail is shown: folded or not.
const char* QuoteAsRoot(const char* text) {
  return WithLentText(text, [](const char* lent) {
    return IsRootOrikaeshi() != 0 ? Quote(lent) : QuoteWidth(lent, kUnfoldedWidth);
  });
}

}  // namespace

const char* Orikaeshi(const char* text) noexcept { return WithLineEnds(text, LineEnd::kCrLf); }

const char* DontOrikaeshi(const char* text) noexcept { return WithLineEnds(text, LineEnd::kCrCrLf); }

const char* QuoteWidth(const char* text, long long width) noexcept {
  if (!IsText(text)) return kNoText;
  Slot block[] = {ToSlot(text), WidthOf(width)};
  return SendHostRequestStr(kCodeQuoteWidth, block);
}

const char* QuoteOE(const char* text) noexcept {
  if (!IsText(text)) return kNoText;
  // This code takes the text itself, not a block that points to it.
  return SendHostRequestStr(kCodeQuoteBelow, reinterpret_cast<Slot*>(const_cast<char*>(text)));
}

long long IsOrikaeshi() noexcept { return StateHas(kCodeMailState, kStateNoFolding) ? 0 : 1; }

long long IsRootOrikaeshi() noexcept { return StateHas(kCodeRootState, kStateNoFolding) ? 0 : 1; }

long long SyncOrikaeshi() noexcept {
  const bool root_off = StateHas(kCodeRootState, kStateNoFolding);
  if (root_off != StateHas(kCodeMailState, kStateNoFolding)) SwitchOrikaeshi();
  return 0;
}

long long SwitchDontOrikaeshi() noexcept {
  SendHostCommand(kDontFoldCommand);
  return 0;
}

const char* QuotedRootHeader(const char* name) noexcept {
  return IsText(name) ? QuoteText(RootHeader(name)) : kNoText;
}

const char* QuotedSmallRootHeader() noexcept { return QuoteText(SmallRootHeader()); }

const char* QuotedAllRootHeader() noexcept { return QuoteText(AllRootHeader()); }

const char* QuotedRootBody() noexcept { return QuoteText(RootBody()); }

const char* QuotedSelectedRootText() noexcept { return QuoteText(SelectedRootText()); }

const char* QuotedSelectedRootText2() noexcept { return QuoteText(SelectedRootText2()); }

const char* QuotedRootBody_SyncOrikaeshi() noexcept { return QuoteAsRoot(RootBody()); }

const char* QuotedSelectedRootText_SyncOrikaeshi() noexcept { return QuoteAsRoot(SelectedRootText()); }

const char* QuotedSelectedRootText2_SyncOrikaeshi() noexcept { return QuoteAsRoot(SelectedRootText2()); }

const char* QuotedRootBody_NoOrikaeshi() noexcept { return QuoteUnfolded(RootBody()); }

const char* QuotedSelectedRootText_NoOrikaeshi() noexcept { return QuoteUnfolded(SelectedRootText()); }

const char* QuotedSelectedRootText2_NoOrikaeshi() noexcept { return QuoteUnfolded(SelectedRootText2()); }

const char* QuotedCustomRootHeader(const char* spec) noexcept {
  return IsText(spec) ? WithLentText(CustomRootHeader(spec), Quote) : kNoText;
}

const char* QuotedRootHtml() noexcept { return WithLentText(RootHtml(), QuoteHtml); }
