// What running an example takes beside the mails of the samples. Lines of comment in an example, and in the
// head of its file for all examples there, tell it:
//
//   # Run with: --accounts samples/accounts.txt
//   # Needs: a web server; `site` is its address
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace wfinfo {

class ExampleNeeds {
 public:
  // True when `line` told what is needed; it is not shown as a part of the example.
  bool Take(std::string_view line) {
    for (const std::string_view comment : {"# ", "// "}) {
      if (!line.starts_with(comment)) continue;
      const std::string_view text = line.substr(comment.size());
      return Add(text, "Run with: ", " ", options_) || Add(text, "Needs: ", "; ", things_);
    }
    return false;
  }

  // "wrenfold --mail samples/mails --accounts samples/accounts.txt --macro FILE"; "" when nothing is needed.
  std::string Command() const {
    if (options_.empty()) return "";
    return "wrenfold --mail samples/mails " + options_ + " --macro FILE";
  }
  const std::string& things() const { return things_; }

 private:
  static bool Add(std::string_view line, std::string_view mark, std::string_view between, std::string& to) {
    if (!line.starts_with(mark)) return false;
    to.append(to.empty() ? "" : between).append(line.substr(mark.size()));
    return true;
  }

  std::string options_;
  std::string things_;
};

}  // namespace wfinfo
