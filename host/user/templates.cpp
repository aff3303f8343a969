#include "host/user/templates.h"

#include <algorithm>
#include <iterator>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/base/utf8_mark.h"
#include "host/charset/charsets.h"
#include "host/files/whole_file.h"
#include "host/mime/html_text.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFolders[] = {"newmail", "reply", "forward", "sign"};
static_assert(std::size(kFolders) == kTemplateKinds);
constexpr std::string_view kSignLine = "#sign ";

std::string NameOf(const fs::path& file) { return SystemCharsets().Utf8ToHost(PathToUtf8(file.stem())); }

}  // namespace

std::vector<fs::path> TemplateFolder::Files(std::size_t kind, std::string_view extension) const {
  std::vector<fs::path> files;
  if (!IsOpen() || kind >= kTemplateKinds) return files;
  std::error_code error;
  fs::directory_iterator entry(folder_ / kFolders[kind], error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (Lower(PathToUtf8(entry->path().extension())) == extension) files.push_back(entry->path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// Only names that Files lists count, so that a name with folders in it reaches nothing.
std::optional<fs::path> TemplateFolder::File(std::size_t kind, std::string_view name,
                                             std::string_view extension) const {
  for (const fs::path& file : Files(kind, extension)) {
    if (EqualsIgnoringCase(NameOf(file), name)) return file;
  }
  return std::nullopt;
}

std::vector<std::string> TemplateFolder::Names(std::size_t kind) const {
  std::vector<std::string> names;
  for (const fs::path& file : Files(kind, ".txt")) names.push_back(NameOf(file));
  if (kind == kSignKind) {
    for (const fs::path& file : Files(kind, ".html")) {
      if (!File(kind, NameOf(file), ".txt")) names.push_back(NameOf(file));
    }
    std::sort(names.begin(), names.end());
  }
  return names;
}

bool TemplateFolder::Has(std::size_t kind, std::string_view name) const {
  return File(kind, name, ".txt") || (kind == kSignKind && File(kind, name, ".html"));
}

std::string TemplateFolder::Content(std::size_t kind, std::string_view name,
                                    std::string_view extension) const {
  const auto file = File(kind, name, extension);
  const std::string bytes = file ? ReadWholeFile(*file).value_or("") : "";
  std::string_view rest = WithoutUtf8Mark(bytes);
  std::string content;
  while (!rest.empty()) {
    const LineLength length = FirstLine(rest);
    content += rest.substr(0, length.text);
    if (length.with_end > length.text) content += "\r\n";
    rest.remove_prefix(length.with_end);
  }
  return content;
}

std::string TemplateFolder::Text(std::size_t kind, std::string_view name) const {
  if (!File(kind, name, ".txt")) {
    const Charsets& charsets = SystemCharsets();
    const std::string html = Html(kind, name);
    return html.empty() ? "" : charsets.ToHostText(TextOfHtml(charsets.FromHostText(html)));
  }
  const std::string content = Content(kind, name);
  const std::size_t skipped = content.starts_with(kSignLine) ? FirstLine(content).with_end : 0;
  return SystemCharsets().Utf8ToHost(std::string_view(content).substr(skipped));
}

std::string TemplateFolder::Html(std::size_t kind, std::string_view name) const {
  return kind == kSignKind ? SystemCharsets().Utf8ToHost(Content(kind, name, ".html")) : "";
}

std::string TemplateFolder::Sign(std::size_t kind, std::string_view name) const {
  const std::string content = Content(kind, name);
  if (!content.starts_with(kSignLine)) return "";
  const std::string_view line = std::string_view(content).substr(0, FirstLine(content).text);
  return SystemCharsets().Utf8ToHost(Trim(line.substr(kSignLine.size())));
}

}  // namespace wrenfold
