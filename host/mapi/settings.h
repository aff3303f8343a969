// What the small host does when it is started without a word: read from "settings.txt" in its home.
//
//   file = *( name "=" value line-end / "#" comment line-end )
//   from=Taro Yamada <taro@example.jp>     sender of the mails, UTF-8
//   slow=1500                              milliseconds that every answer takes
//   modal=3000                             a dialog shows for so long after the start; 0: until it is closed
//   deaf=1                                 is never ready and answers nothing
//   die=1                                  ends without an answer at the first command line or store request
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace wrenfold {

struct MapiSettings {
  std::string from = "wrenfold@localhost";
  unsigned slow_ms = 0;
  std::optional<unsigned> modal_ms;
  bool deaf = false;
  bool die = false;
};

// The settings of the file's text over those in `settings`; the text tells what is wrong with it.
std::variant<MapiSettings, std::string> ParseMapiSettings(std::string_view utf8, MapiSettings settings = {});

// A number of milliseconds; nullopt for anything else than 1 to 9 digits.
std::optional<unsigned> ParseMilliseconds(std::string_view text);

}  // namespace wrenfold
