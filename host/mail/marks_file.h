// What is kept of mails beside their files, as text: a line for each mail, its fields apart by tabs.
//
//   # comment                                                     ("#" at the start of a line)
//   minutes.eml<TAB>id=<1@example.com><TAB>mark=1<TAB>unread=0<TAB>colour=3<TAB>bookmark=1
//   lists.mbox<TAB>mail=4<TAB>id=#9e107d9d372bb682<TAB>mark=1      (the fourth mail of an mbox)
//
// A line tells of the mail in that file only while the mail is the one of its id: the Message-ID, or a number
// made from the mail's bytes where it has none or shares it. "\t", "\n", "\r" and "\\" stand for what would
// end a field. Fields of other names are kept as they stand; so are lines that cannot be read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

inline constexpr char kMarksFile[] = "wrenfold.marks";
inline constexpr char kMarksAreNoMail[] =
    "it keeps the marks of mails and is none";  // why it is not read as one
// A file that is larger is no such file: it is not read.
inline constexpr std::size_t kMostMarksBytes = std::size_t{64} << 20;

// True for the file of that name, and for what a write of it leaves that is interrupted.
bool IsMarksFile(std::string_view name);

// What is kept of a mail: that in which it differs from what its own bytes tell.
struct MailMarks {
  std::uint32_t mask = 0;  // MailState: which bits differ, and what they are
  std::uint32_t bits = 0;
  std::int64_t colour = 0;
  bool bookmark = false;
  std::string others;  // fields of other names, each with the tab in front

  bool IsEmpty() const { return *this == MailMarks{}; }
  bool operator==(const MailMarks&) const = default;
};

// The bits of the state word that are kept: the others tell what is in the mail, or what lasts no longer than
// the program.
std::uint32_t KeptStateBits();

struct MarksLine {
  std::string file;       // UTF-8, without folders
  std::size_t place = 0;  // in an mbox, from 1; 0 for a mail that has the file to itself
  std::string id;
  MailMarks marks;

  bool operator==(const MarksLine&) const = default;
};

struct MarksText {
  std::vector<std::string> comments;  // with their "#"
  std::vector<MarksLine> lines;
  std::vector<std::string> odd;  // lines that cannot be read, without their end
  std::size_t first_odd = 0;     // number of the first of them in the text, from 1
};

MarksText ReadMarks(std::string_view text);
// "" when there is nothing to keep but the comment that stands in each file.
std::string WriteMarks(const MarksText& text);

// --- Which mail a line means ---

// What tells a mail from others: its Message-ID; with `by_bytes`, or without a usable one, "#" and a number
// made from all of it but line ends and the headers that mail programs keep their own notes in.
std::string MailId(std::string_view raw, bool by_bytes);

struct MarkableMail {
  std::string file;  // as in a line
  std::size_t place;
  std::string_view raw;
};

inline constexpr std::size_t kNoMarkable = std::numeric_limits<std::size_t>::max();

// For each line the mail that it means, kNoMarkable for none; no mail is meant twice. A mail at the line's
// place comes before another of the same id in its file. File names are compared without regard to the
// case of ASCII letters.
std::vector<std::size_t> FindMarked(std::span<const MarksLine> lines, std::span<const MarkableMail> mails);

}  // namespace wrenfold
