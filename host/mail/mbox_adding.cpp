#include "host/mail/mbox_adding.h"

#include <charconv>
#include <system_error>

#include "host/files/file_reasons.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

fs::path NoteOf(const fs::path& mbox) {
  fs::path note = mbox;
  return note += ".adding";
}

}  // namespace

std::optional<std::string> AddToMbox(const fs::path& mbox, std::string_view text) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(mbox, error);
  if (error) return CannotRead(mbox, ReasonOf(error));
  const fs::path note = NoteOf(mbox);
  if (auto reason = WriteSafely(note, std::to_string(size) + '\n' + std::string(text))) return reason;
  const WriteOutcome added = AppendToFile(mbox, text);
  fs::remove(note, error);
  return added ? std::nullopt : std::optional(WhyUnwritable(mbox, added.reason));
}

std::optional<std::size_t> SizeBeforeAdding(const fs::path& mbox, std::string_view bytes) {
  std::error_code error;
  if (!fs::exists(NoteOf(mbox), error)) return std::nullopt;
  const std::string note = ReadWholeFile(NoteOf(mbox)).value_or("");
  std::size_t size = 0;
  const auto [end, wrong] = std::from_chars(note.data(), note.data() + note.size(), size);
  const auto line = static_cast<std::size_t>(end - note.data());
  if (wrong != std::errc() || line >= note.size() || note[line] != '\n' || size > bytes.size())
    return std::nullopt;
  const std::string_view text = std::string_view(note).substr(line + 1);
  return text.starts_with(bytes.substr(size)) ? std::optional(size) : std::nullopt;
}

bool TakeBackAdding(const fs::path& mbox) {
  std::error_code error;
  if (!fs::exists(NoteOf(mbox), error)) return false;
  const auto bytes = ReadWholeFile(mbox);
  if (!bytes) return false;
  const auto size = SizeBeforeAdding(mbox, *bytes);
  if (size && *size < bytes->size()) {
    fs::resize_file(mbox, *size, error);
    if (error) return false;
  }
  fs::remove(NoteOf(mbox), error);
  return size && *size < bytes->size();
}

}  // namespace wrenfold
