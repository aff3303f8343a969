// Exports that read the header and the body of the root mail and of the current mail.
//
// The host gives the whole text of the root mail and the library looks into it; for the current mail the host
// looks and the library provides the room for the result.
#include <cstring>

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/message/raw_message.h"

using namespace wfinfo;

namespace {

// Function codes of the host.
constexpr int kCodeRootText = 1;
constexpr int kCodeDisplayedHeader = 2;
constexpr int kCodeCurrentHeader = 3;
constexpr int kCodeCountCurrentHeader = 4;
constexpr int kCodeSelectedRootText = 47;
constexpr int kCodeQuote = 86;
constexpr int kCodeFoldHeader = 158;
constexpr int kCodeQuoteBelow = 297;

// Room behind the length that the host told, for a value that grows until it is asked again.
constexpr Slot kSpareRoom = 256;

const char* RootText() { return SendHostRequestStr(kCodeRootText); }

const char* RootHeaderValue(const char* text, const HeaderName& name, std::size_t index) {
  const auto value = HeaderValue(text, name, index);
  return value ? ReturnText(*value) : kNoText;
}

// A copy of a host text in a new long-result block, without one final CR LF. `whole` is the host's answer
// that `part` lies in: when the host had none, nothing is made and the kept block stays.
const char* ReturnPart(const char* whole, std::string_view part) {
  return whole == kNoText ? kNoText : ReturnLongText(WithoutFinalLineEnd(part));
}

const char* SendText(int code, const char* text) {
  return WithLentText(text, [code](const char* lent) {
    Slot block[] = {ToSlot(lent)};
    return SendHostRequestStr(code, block);
  });
}

const char* QuoteText(const char* text) { return SendText(kCodeQuote, text); }

// A body line in the short-result buffer or a new block, in which the escapes lose the mark in their last
// byte. A new block is kept only when another one is kept already; else nobody ever frees it, and a text of
// it that a macro holds stays whatever it calls.
const char* ReturnBodyLine(std::string_view line) {
  char* copy = g_resultText;
  if (line.size() >= kShortResultSize) {
    copy = NewResultBlock(line.size() + 1);
    if (copy == nullptr) return kNoText;
    if (IsLongResultKept()) KeepLongResult(copy);
  }
  std::memcpy(copy, line.data(), line.size());
  copy[line.size()] = '\0';
  ClearEscapeMarks(copy, line.size());
  return copy;
}

// Asks for occurrence `n` of a header of the current mail; the host writes it to `room` and answers its
// full length.
Slot AskCurrentHeader(const char* name, char* room, Slot size, int n) {
  Slot block[] = {ToSlot(name), ToSlot(room), size, n};
  const Slot length = SendHostRequest(kCodeCurrentHeader, block);
  room[size - 1] = '\0';
  return length;
}

// The same for a value that is too long for the short-result buffer.
const char* LongCurrentHeader(const char* name, Slot length, int n) {
  // Added unsigned: a length that no memory can hold stays one.
  char* const room = NewResultBlock(static_cast<std::size_t>(length) + static_cast<std::size_t>(kSpareRoom));
  if (room == nullptr) return kNoText;
  if (AskCurrentHeader(name, room, length + kSpareRoom, n) != length) {
    ReportError("CurrentHeader/CurrentHeader2 internal error ?");
  }
  return KeepLongResult(room);
}

}  // namespace

const char* RootHeader(const char* name) noexcept { return RootHeader2(name, 0); }

const char* RootHeader2(const char* name, int n) noexcept {
  if (!IsText(name) || n < 0) return kNoText;
  return RootHeaderValue(RootText(), HeaderName(name), static_cast<std::size_t>(n));
}

long long CountRootHeader(const char* name) noexcept {
  if (!IsText(name)) return 0;
  return static_cast<long long>(CountHeaders(RootText(), HeaderName(name)));
}

const char* SearchHeader(const char* name) noexcept { return RootHeader(name); }

const char* Subject() noexcept { return SearchHeader("Subject:"); }

const char* From() noexcept { return SearchHeader("From:"); }

const char* RootReply() noexcept {
  const char* const text = RootText();
  const char* const reply = RootHeaderValue(text, HeaderName("Reply-To"), 0);
  return *reply != '\0' ? reply : RootHeaderValue(text, HeaderName("From"), 0);
}

const char* AllRootHeader() noexcept {
  const char* const text = RootText();
  return ReturnPart(text, HeaderBlock(text));
}

const char* OrikaeshiAllRootHeader() noexcept { return AllRootHeader(); }

const char* RootBody() noexcept {
  const char* const text = RootText();
  return ReturnPart(text, BodyStart(text));
}

const char* OrikaeshiRootBody() noexcept { return RootBody(); }

const char* RootBodyLine(int n) noexcept {
  if (n < 0) return kNoText;
  const auto line = BodyLineAt(RootText(), static_cast<std::size_t>(n));
  return line ? ReturnBodyLine(*line) : kNoText;
}

const char* BodyLine(int n) noexcept { return RootBodyLine(n); }

long long RootBodyLineCount() noexcept { return static_cast<long long>(CountBodyLines(RootText())); }

long long BodyLineCount() noexcept { return RootBodyLineCount(); }

const char* SelectedRootText() noexcept {
  const char* const text = SendHostRequestStr(kCodeSelectedRootText);
  return ReturnPart(text, text);
}

const char* OrikaeshiSelectedRootText() noexcept { return SelectedRootText(); }

const char* SelectedRootText2() noexcept {
  const char* const selected = SelectedRootText();
  return *selected != '\0' ? selected : RootBody();
}

const char* OrikaeshiSelectedRootText2() noexcept { return SelectedRootText2(); }

const char* SmallRootHeader() noexcept {
  return SendText(kCodeFoldHeader, SendHostRequestStr(kCodeDisplayedHeader));
}

const char* OrikaeshiSmallRootHeader() noexcept { return SmallRootHeader(); }

const char* CurrentHeader2(const char* name, int n) noexcept {
  if (!IsText(name) || n < 0) return kNoText;
  g_resultText[0] = '\0';
  const Slot length = AskCurrentHeader(name, g_resultText, kShortResultSize, n);
  if (length < static_cast<Slot>(kShortResultSize - 1)) return g_resultText;
  return LongCurrentHeader(name, length, n);
}

const char* CurrentHeader(const char* name) noexcept { return CurrentHeader2(name, 0); }

long long CountCurrentHeader(const char* name) noexcept {
  if (!IsText(name)) return 0;
  Slot block[] = {ToSlot(name), ToSlot(g_resultText), kShortResultSize};
  return SendHostRequest(kCodeCountCurrentHeader, block);
}

const char* QuotedRootHeader(const char* name) noexcept {
  return IsText(name) ? QuoteText(RootHeader(name)) : kNoText;
}

const char* QuotedSmallRootHeader() noexcept { return QuoteText(SmallRootHeader()); }

const char* QuotedAllRootHeader() noexcept { return QuoteText(AllRootHeader()); }

const char* QuotedRootBody() noexcept { return QuoteText(RootBody()); }

const char* QuotedSelectedRootText() noexcept { return QuoteText(SelectedRootText()); }

const char* QuotedSelectedRootText2() noexcept { return QuoteText(SelectedRootText2()); }

const char* QuoteOE(const char* text) noexcept {
  if (!IsText(text)) return kNoText;
  // This code takes the text itself, not a block that points to it.
  return SendHostRequestStr(kCodeQuoteBelow, reinterpret_cast<Slot*>(const_cast<char*>(text)));
}
