// Exports that read the header and the body of the root mail and of the current mail.
//
// The host gives the whole text of the root mail and the library looks into it; for the current mail the host
// looks and the library provides the room for the result.

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/message/body_line_win.h"
#include "src/message/current_header_win.h"
#include "src/message/raw_message.h"

using namespace wfinfo;

namespace {

// Function codes of the host.
constexpr int kCodeRootText = 1;
constexpr int kCodeDisplayedHeader = 2;
constexpr int kCodeCountCurrentHeader = 4;
constexpr int kCodeSelectedRootText = 47;
constexpr int kCodeFoldHeader = 158;

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
  return WithLentText(SendHostRequestStr(kCodeDisplayedHeader), [](const char* lent) {
    Slot block[] = {ToSlot(lent)};
    return SendHostRequestStr(kCodeFoldHeader, block);
  });
}

const char* OrikaeshiSmallRootHeader() noexcept { return SmallRootHeader(); }

const char* CustomRootHeader2(const char* spec) noexcept {
  if (!IsText(spec)) return kNoText;
  return WithLentText(AllRootHeader(), [spec](const char* lent) { return CustomSmallHeader(spec, lent); });
}

const char* CustomRootHeader(const char* spec) noexcept {
  return IsText(spec) ? WithLentText(CustomRootHeader2(spec), HeaderOrikaeshi) : kNoText;
}

const char* OrikaeshiCustomRootHeader(const char* spec) noexcept { return CustomRootHeader(spec); }

const char* CurrentHeader2(const char* name, int n) noexcept {
  if (!IsText(name) || n < 0) return kNoText;
  return CurrentHeaderValue(name, n);
}

const char* CurrentHeader(const char* name) noexcept { return CurrentHeader2(name, 0); }

long long CountCurrentHeader(const char* name) noexcept {
  if (!IsText(name)) return 0;
  Slot block[] = {ToSlot(name), ToSlot(g_resultText), kShortResultSize};
  return SendHostRequest(kCodeCountCurrentHeader, block);
}
