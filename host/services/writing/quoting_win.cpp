// How the host folds and quotes texts.
#include "host/mail/custom_header.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/writing/draft.h"
#include "host/writing/kinsoku.h"
#include "host/writing/quoting.h"

namespace wrenfold {
namespace {

// Without a width of its own a text folds as the root mail does.
std::size_t RootWidth(Request& request) {
  const bool folds = !request.state.HasRoot() || request.state.Folds(request.state.root());
  return folds ? kDefaultWidth : kUnfoldedWidth;
}

Answer Quote(Request& request) {
  return request.AnswerText(FoldAndQuote(request.Text(0), kQuoteMark, RootWidth(request)));
}

// The second text is the mark to quote with.
Answer QuoteWithMark(Request& request) {
  const std::string_view mark = request.HasText(1) ? request.Text(1) : kQuoteMark;
  return request.AnswerText(FoldAndQuote(request.Text(0), mark, RootWidth(request)));
}

Answer FoldHeader(Request& request) {
  return request.AnswerText(FoldHeaders(request.Text(0), RootWidth(request)));
}

// Width 0 is the host's own.
Answer QuoteWidth(Request& request) {
  const Slot width = request.Number(1);
  const std::size_t columns = width <= 0 ? kDefaultWidth : static_cast<std::size_t>(width);
  return request.AnswerText(FoldAndQuote(request.Text(0), kQuoteMark, columns));
}

// Quotes without folding; the text comes without a block.
Answer QuoteUnfolded(Request& request) {
  return request.AnswerText(FoldAndQuote(request.WholeText(), kQuoteMark, kUnfoldedWidth));
}

Answer Kinsoku(Request& request) {
  if (!request.HasText(0)) return request.Fail("there is no text");
  return request.AnswerText(ApplyKinsoku(request.Text(0), kDefaultWidth));
}

// spec, header block
Answer CustomHeader(Request& request) {
  if (!request.HasText(0) || !request.HasText(1)) return request.Fail("there is no text");
  return request.AnswerText(CustomHeaders(request.Text(0), request.Text(1)));
}

// --- The line with the cursor: the first of the body, until a macro moves it ---

Answer IsLineUnfolded(Request& request) {
  return Request::Done(IsCursorLineUnfolded(*request.state.writing.draft));
}

Answer SwitchLine(Request& request) {
  if (!SwitchCursorLine(*request.state.writing.draft))
    return request.Fail("the mail being written has no such line");
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {86, "T", Quote,
     "each line with `> ` in front, folded at 72 columns unless the open mail's folding is off"},
    {87, "TT", QuoteWithMark, "the same with the second text as the mark"},
    {101, nullptr, WithDraft<IsLineUnfolded>,
     "1 when the line with the cursor is not to be folded; the cursor stands in the first line until "
     "`HostGoToLine`"},
    {134, "T", Kinsoku,
     "folded at 72 columns by the rules for Japanese text; at the line ends that are there closing "
     "characters go up, opening ones down"},
    {158, "T", FoldHeader, "headers folded at 72 columns: lines that go on begin with a blank"},
    {262, "TI", QuoteWidth, "`> ` and folding at that width; 0 means 72, 9999 no folding"},
    {285, "TT", CustomHeader,
     "the headers that a list of names chooses from a header block: `From, Subject=Betreff, *, -Received`"},
    {297, "P", QuoteUnfolded, "`> `, never folded"},
};

constexpr Command kCommands[] = {
    {40179, WithDraft<SwitchLine>,
     "sets or clears the mark that the line with the cursor is not to be folded"},
};

}  // namespace

const ServiceFamily kQuotingServices = {kServices, kCommands};

}  // namespace wrenfold
