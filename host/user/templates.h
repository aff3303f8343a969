// Templates and signatures of the small host: text files (UTF-8) in a folder for each kind.
//
//   newmail/Invitation.txt   reply/Thanks.txt   forward/FYI.txt   sign/Work.txt
//
// A template may begin with a line "#sign NAME": the signature that goes with it. That line is not part of
// the text. In a template the line "{body}" marks where the quoted text goes. A signature may have an HTML
// form: sign/Work.html, beside sign/Work.txt or alone.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// Kinds by their number in the library's requests.
inline constexpr std::size_t kTemplateKinds = 4;
inline constexpr std::size_t kSignKind = 3;

class TemplateFolder {
 public:
  void Open(std::filesystem::path folder) { folder_ = std::move(folder); }
  bool IsOpen() const { return !folder_.empty(); }

  // Names (host text) of one kind in order; read from the disk each time.
  std::vector<std::string> Names(std::size_t kind) const;
  bool Has(std::size_t kind, std::string_view name) const;
  // The text of a template as host text with CR LF line ends, "" when there is none.
  std::string Text(std::size_t kind, std::string_view name) const;
  // The HTML form of a signature as host text, "" when it has none.
  std::string Html(std::size_t kind, std::string_view name) const;
  // Name of the signature that goes with a template, "" for none.
  std::string Sign(std::size_t kind, std::string_view name) const;

 private:
  std::vector<std::filesystem::path> Files(std::size_t kind, std::string_view extension) const;
  std::optional<std::filesystem::path> File(std::size_t kind, std::string_view name,
                                            std::string_view extension) const;
  // The file's lines with CR LF ends, as UTF-8.
  std::string Content(std::size_t kind, std::string_view name, std::string_view extension = ".txt") const;

  std::filesystem::path folder_;
};

}  // namespace wrenfold
