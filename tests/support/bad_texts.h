// Parameters that are no texts, and messages in both languages.
#pragma once

#include <functional>
#include <vector>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {

// What macros pass by mistake for a text: nothing, a small number, memory that cannot be read.
inline std::vector<const char*> BadTexts() {
  static void* const reserved = VirtualAlloc(nullptr, 4096, MEM_RESERVE, PAGE_NOACCESS);
  return {nullptr, kNumberForText, static_cast<const char*>(reserved)};
}

// The same without null, for parameters that may be omitted.
inline std::vector<const char*> UnreadableTexts() { return {BadTexts()[1], BadTexts()[2]}; }

// A text as a macro passes it where a number may stand.
inline long long AsValue(const void* text) { return static_cast<long long>(reinterpret_cast<INT_PTR>(text)); }

// The text behind a value, null for 0.
inline const char* AsText(long long value) {
  return reinterpret_cast<const char*>(static_cast<INT_PTR>(value));
}

// A message in both languages.
struct Texts {
  std::string english;
  std::u8string_view japanese;
};

// The message of the check that every text parameter passes.
inline const Texts kNoTextMessage = {
    kStringMessageEnglish, u8"文字列が渡されるべき所に数値が指定されたか、またはパラメータが足りません。"};

// Calls `call` in English and in Japanese; each time it must report exactly `messages`, in this order.
inline void ExpectReports(ScriptedHost& host, const std::vector<Texts>& messages,
                          const std::function<void()>& call) {
  for (const Language language : {Language::kJapanese, Language::kEnglish}) {
    host.SetLanguage(language);
    call();
    std::vector<std::string> expected;
    for (const Texts& message : messages) {
      expected.push_back(language == Language::kEnglish ? message.english : Sjis(message.japanese));
    }
    host.ExpectMessages(expected);
  }
}

}  // namespace wfinfo_test
