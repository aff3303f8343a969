// The exports that cut, change and compare texts and judge how random they look.
#include <cstring>
#include <span>
#include <string_view>

#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/value_params_win.h"
#include "src/catalogue/declarations.h"
#include "src/strings/letter_case.h"
#include "src/strings/randomness.h"
#include "src/strings/slicing.h"
#include "src/text/host_text.h"

namespace {

using wfinfo::IsText;
using wfinfo::kNoText;
using wfinfo::ReadableText;
using wfinfo::ReadCountParam;

constexpr std::size_t kBaseNameLimit = 8191;  // of a base name, terminator included

static_assert(wfinfo::kEscapedRoom < wfinfo::kShortResultSize + wfinfo::kShortResultSpare);

const char* ReturnChanged(std::string_view text, void (*change)(std::span<char>)) {
  const char* const copy = wfinfo::ReturnText(text);
  if (copy != kNoText) change({const_cast<char*>(copy), text.size()});
  return copy;
}

// A kept block of its own for `part`; `wanted` is false when there is nothing to return at all.
const char* ReturnPart(std::string_view part, bool wanted) {
  return wanted ? wfinfo::ReturnLongText(part) : kNoText;
}

}  // namespace

const char* ToUpper(const char* text) noexcept {
  const auto checked = wfinfo::CheckedText(text);
  return checked ? ReturnChanged(*checked, wfinfo::MakeUpperCase) : kNoText;
}

const char* ToLower(const char* text) noexcept {
  return ReturnChanged(ReadableText(text), wfinfo::MakeLowerCase);
}

const char* LeftStr(const char* text, long long count) noexcept {
  const std::string_view view = ReadableText(text);
  const int bytes = ReadCountParam(count);
  return ReturnPart(wfinfo::LeftPart(view, bytes), !view.empty() && bytes > 0);
}

const char* RightStr(const char* text, long long count) noexcept {
  const std::string_view view = ReadableText(text);
  const int bytes = ReadCountParam(count);
  return ReturnPart(wfinfo::RightPart(view, bytes), !view.empty() && bytes > 0);
}

const char* MidStr(const char* text, long long start, long long count) noexcept {
  const std::string_view part =
      wfinfo::MiddlePart(ReadableText(text), ReadCountParam(start), ReadCountParam(count));
  return ReturnPart(part, !part.empty());
}

const char* YenEncode(const char* text) noexcept {
  // Built beside the result buffer, in which the text may lie.
  char escaped[wfinfo::kEscapedRoom];
  const std::size_t length = wfinfo::EscapeQuotes(ReadableText(text), escaped);
  std::memcpy(wfinfo::g_resultText, escaped, length);
  wfinfo::g_resultText[length] = '\0';
  return wfinfo::g_resultText;
}

const char* UnDoubleQuote(const char* text) noexcept {
  const std::string_view view = ReadableText(text);
  return wfinfo::IsEnclosedInQuotes(view) ? wfinfo::ReturnText(view.substr(1, view.size() - 2)) : text;
}

const char* ToBaseName(const char* path) noexcept {
  const std::string_view base = wfinfo::BaseName(ReadableText(path));
  return wfinfo::ReturnText(base.substr(0, wfinfo::CutLength(base, kBaseNameLimit)));
}

long long IfEqual(const char* a, const char* b, long long then, long long otherwise) noexcept {
  if (!IsText(a) || !IsText(b)) return 0;
  return std::string_view(a) == b ? then : otherwise;
}

long long IfInclude(const char* text, const char* part, long long then, long long otherwise) noexcept {
  if (!IsText(text) || !IsText(part)) return 0;
  return wfinfo::Includes(text, part) ? then : otherwise;
}

int CheckRandomString(const char* text) noexcept { return IsText(text) ? wfinfo::RandomnessScore(text) : 0; }

int CheckRandomDomain(const char* domain) noexcept {
  return IsText(domain) ? wfinfo::DomainRandomness(domain) : 0;
}
