// The two languages of every message.
#pragma once

namespace wfinfo {

// Non-zero: English, zero: Japanese. Set by the host through NotifyWrenfoldInfo.
extern int g_useEnglish;

// One message in both languages; the Japanese text is host text (code page 932).
struct Message {
  const char* english;
  const char* japanese;
};

inline const char* Chosen(const Message& message) {
  return g_useEnglish != 0 ? message.english : message.japanese;
}

}  // namespace wfinfo
