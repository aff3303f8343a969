// How the host folds and quotes texts.
#include "host/mail/quoting.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

// Without a width of its own a text folds as the root mail does.
std::size_t RootWidth(Request& request) {
  const bool folds = !request.state.HasRoot() || request.state.Folds(request.state.root());
  return folds ? kDefaultWidth : kNoFolding;
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
  return request.AnswerText(FoldAndQuote(request.Text(0), "", RootWidth(request)));
}

// Width 0 is the host's own.
Answer QuoteWidth(Request& request) {
  const Slot width = request.Number(1);
  const std::size_t columns = width <= 0 ? kDefaultWidth : static_cast<std::size_t>(width);
  return request.AnswerText(FoldAndQuote(request.Text(0), kQuoteMark, columns));
}

// Quotes without folding; the text comes without a block.
Answer QuoteUnfolded(Request& request) {
  return request.AnswerText(FoldAndQuote(request.WholeText(), kQuoteMark, kNoFolding));
}

constexpr Service kServices[] = {
    {86, "T", Quote,
     "each line with `> ` in front, folded at 72 columns unless the root mail's folding is off"},
    {87, "TT", QuoteWithMark, "the same as 86 with the second text as the mark"},
    {158, "T", FoldHeader, "folded at 72 columns unless the root mail's folding is off, no mark"},
    {262, "TI", QuoteWidth, "`> ` and folding at that width; 0 means 72, 9999 no folding"},
    {297, "P", QuoteUnfolded, "`> ` in front of each line, never folded"},
};

}  // namespace

const ServiceFamily kQuotingServices = {kServices, {}};

}  // namespace wrenfold
