#include "host/mail/marks_file.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <map>
#include <optional>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/utf8_mark.h"
#include "host/charset/charsets.h"
#include "host/mail/mail_state.h"
#include "host/mime/message.h"
#include "host/mime/sections.h"

namespace wrenfold {
namespace {

constexpr std::string_view kHead =
    "# What wrenfold keeps of the mails in this folder: a line for each, its fields apart by tabs.";

// Names as SetMailFlag has them, with its sense of 1.
struct FlagField {
  std::string_view name;
  std::uint32_t bit;
  bool inverted = false;
};

constexpr FlagField kFlagFields[] = {
    {"mark", kStateMarked},
    {"unread", kStateUnread},
    {"reply", kStateReplied},
    {"forward", kStateForwarded},
    {"hot", kStateHot},
    {"send", kStateSend},
    {"sent", kStateSent},
    {"sentunknown", kStateSentUnknown},
    {"orikaeshi", kStateNoFolding, true},
};

// --- Fields ---

std::string Escaped(std::string_view value) {
  std::string escaped;
  for (const char c : value) {
    switch (c) {
      case '\t':
        escaped += "\\t";
        break;
      case '\n':
        escaped += "\\n";
        break;
      case '\r':
        escaped += "\\r";
        break;
      case '\\':
        escaped += "\\\\";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string Unescaped(std::string_view text) {
  std::string value;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      value += text[i];
      continue;
    }
    const char letter = text[++i];
    value += letter == 't' ? '\t' : letter == 'n' ? '\n' : letter == 'r' ? '\r' : letter;
  }
  return value;
}

template <class Number>
bool ReadNumber(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

std::optional<bool> ReadSwitch(std::string_view text) {
  if (text == "0" || text == "1") return text == "1";
  return std::nullopt;
}

const FlagField* FindFlag(std::string_view name) {
  for (const FlagField& row : kFlagFields) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

// False when the field has a value that it cannot have.
bool TakeField(MarksLine& line, std::string_view name, std::string_view value, std::string_view field) {
  if (name == "id") return line.id = Unescaped(value), !line.id.empty();
  if (name == "mail") return ReadNumber(value, line.place) && line.place > 0;
  if (name == "colour") return ReadNumber(value, line.marks.colour);
  const FlagField* flag = FindFlag(name);
  if (flag == nullptr && name != "bookmark") return line.marks.others.append("\t").append(field), true;
  const auto on = ReadSwitch(value);
  if (!on) return false;
  if (flag == nullptr) return line.marks.bookmark = *on, true;
  line.marks.mask |= flag->bit;
  line.marks.bits = (line.marks.bits & ~flag->bit) | (*on != flag->inverted ? flag->bit : 0);
  return true;
}

std::optional<MarksLine> ReadLine(std::string_view text) {
  // Names become paths, which are to be UTF-8.
  if (!IsValidUtf8(text) || text.find('\0') != text.npos) return std::nullopt;
  MarksLine line;
  std::size_t end = std::min(text.find('\t'), text.size());
  line.file = Unescaped(text.substr(0, end));
  if (line.file.empty() || line.file.find('/') != std::string::npos) return std::nullopt;
  while (end < text.size()) {
    text.remove_prefix(end + 1);
    end = std::min(text.find('\t'), text.size());
    const std::string_view field = text.substr(0, end);
    const std::size_t equals = field.find('=');
    if (equals == field.npos || equals == 0) return std::nullopt;
    if (!TakeField(line, field.substr(0, equals), field.substr(equals + 1), field)) return std::nullopt;
  }
  return line.id.empty() ? std::nullopt : std::optional(std::move(line));
}

std::string WriteLine(const MarksLine& line) {
  // It would be a comment.
  std::string text = (line.file.starts_with('#') ? "\\" : "") + Escaped(line.file);
  if (line.place > 0) text += "\tmail=" + std::to_string(line.place);
  text += "\tid=" + Escaped(line.id);
  for (const FlagField& row : kFlagFields) {
    if ((line.marks.mask & row.bit) == 0) continue;
    const bool on = ((line.marks.bits & row.bit) != 0) != row.inverted;
    text.append("\t").append(row.name).append(on ? "=1" : "=0");
  }
  if (line.marks.colour != 0) text += "\tcolour=" + std::to_string(line.marks.colour);
  if (line.marks.bookmark) text += "\tbookmark=1";
  return text + line.marks.others;
}

// --- Ids ---

// Headers in which mail programs note what became of a mail: they come and go.
constexpr std::string_view kNotes[] = {"Status", "X-Status",   "X-Keywords",     "X-UID",
                                       "X-IMAP", "X-IMAPbase", "Content-Length", "Lines"};

bool IsNote(std::string_view line) {
  const std::string_view name = Trim(line.substr(0, line.find(':')));
  for (const std::string_view note : kNotes) {
    if (EqualsIgnoringCase(name, note)) return true;
  }
  return false;
}

// FNV-1a, 64 bits.
class Digest {
 public:
  void Add(std::string_view bytes) {
    for (const char c : bytes) value_ = (value_ ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
  }
  std::string Text() const {
    char text[24];
    std::snprintf(text, sizeof text, "#%016llx", static_cast<unsigned long long>(value_));
    return text;
  }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325u;
};

// Empty lines at the end do not count: an mbox adds and takes them.
std::string DigestOf(std::string_view raw) {
  Digest digest;
  bool in_header = true;
  bool in_note = false;
  std::size_t empty_lines = 0;
  while (!raw.empty()) {
    const LineLength length = FirstLine(raw);
    const std::string_view line = raw.substr(0, length.text);
    raw.remove_prefix(length.with_end);
    if (line.empty()) {
      in_header = false;
      ++empty_lines;
      continue;
    }
    if (in_header && !IsBlank(line[0])) in_note = IsNote(line);
    if (in_header && in_note) continue;
    for (; empty_lines > 0; --empty_lines) digest.Add("\n");
    digest.Add(line);
    digest.Add("\n");
  }
  return digest.Text();
}

// On one line, and not what the number of another mail looks like.
bool IsUsableId(std::string_view id) {
  constexpr std::size_t kLongest = 250;
  if (id.empty() || id.size() > kLongest || id[0] == '#') return false;
  for (const char c : id) {
    if (c < ' ' || c > '~') return false;
  }
  return true;
}

bool IsByBytes(std::string_view id) { return id.starts_with('#'); }

}  // namespace

bool IsMarksFile(std::string_view name) {
  return EqualsIgnoringCase(name, kMarksFile) || EqualsIgnoringCase(name, std::string(kMarksFile) + ".new");
}

std::uint32_t KeptStateBits() {
  std::uint32_t bits = 0;
  for (const FlagField& row : kFlagFields) bits |= row.bit;
  return bits;
}

MarksText ReadMarks(std::string_view text) {
  MarksText marks;
  text = WithoutUtf8Mark(text);
  for (std::size_t number = 1; !text.empty(); ++number) {
    const LineLength length = FirstLine(text);
    const std::string_view line = text.substr(0, length.text);
    text.remove_prefix(length.with_end);
    if (Trim(line).empty()) continue;
    if (line[0] == '#') {
      marks.comments.emplace_back(line);
    } else if (auto read = ReadLine(line)) {
      marks.lines.push_back(*std::move(read));
    } else {
      if (marks.odd.empty()) marks.first_odd = number;
      marks.odd.emplace_back(line);
    }
  }
  return marks;
}

std::string WriteMarks(const MarksText& text) {
  const bool own_comments = !text.comments.empty() && (text.comments.size() > 1 || text.comments[0] != kHead);
  if (text.lines.empty() && text.odd.empty() && !own_comments) return "";
  std::string written;
  if (text.comments.empty()) written.append(kHead).append("\r\n");
  for (const std::string& comment : text.comments) written += comment + "\r\n";
  for (const MarksLine& line : text.lines) written += WriteLine(line) + "\r\n";
  for (const std::string& line : text.odd) written += line + "\r\n";
  return written;
}

std::string MailId(std::string_view raw, bool by_bytes) {
  const std::string_view id = by_bytes ? "" : Trim(FindHeader(SplitMessage(raw), "Message-ID"));
  return IsUsableId(id) ? std::string(id) : DigestOf(raw);
}

std::vector<std::size_t> FindMarked(std::span<const MarksLine> lines, std::span<const MarkableMail> mails) {
  struct Named {
    bool by_bytes = false;  // a line of this file has such an id
  };
  std::map<std::string, Named> files;
  for (const MarksLine& line : lines) files[Lower(line.file)].by_bytes |= IsByBytes(line.id);
  // Mails by file and id; an mbox with many alike has them in their order.
  std::map<std::string, std::vector<std::size_t>> known;
  const auto key = [](std::string_view file, std::string_view id) {
    return Lower(file) + '\n' + std::string(id);
  };
  for (std::size_t i = 0; i < mails.size(); ++i) {
    const auto named = files.find(Lower(mails[i].file));
    if (named == files.end()) continue;
    const std::string id = MailId(mails[i].raw, false);
    known[key(mails[i].file, id)].push_back(i);
    if (named->second.by_bytes && !IsByBytes(id))
      known[key(mails[i].file, MailId(mails[i].raw, true))].push_back(i);
  }
  std::vector<std::size_t> found(lines.size(), kNoMarkable);
  std::vector<bool> taken(mails.size());
  for (const bool at_place : {true, false}) {
    for (std::size_t n = 0; n < lines.size(); ++n) {
      const auto alike = known.find(key(lines[n].file, lines[n].id));
      if (found[n] != kNoMarkable || alike == known.end()) continue;
      for (const std::size_t i : alike->second) {
        const bool fits = at_place ? mails[i].place == lines[n].place && mails[i].file == lines[n].file
                                   : (mails[i].place == 0) == (lines[n].place == 0);
        if (!fits || taken[i]) continue;
        taken[i] = true;
        found[n] = i;
        break;
      }
    }
  }
  return found;
}

}  // namespace wrenfold
