// walk_cost: macros that read everything there is, through the exports of the library: each header and each
// line of mails by their numbers, and each field of a list of a million lines. Beside them what one would
// write instead.
#include <windows.h>

#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "bench/windows/frame.h"
#include "bench/windows/report.h"
#include "bench/windows/stopwatch.h"
#include "src/csv/csv_text.h"

extern "C" {
#include "wfinfo.h"
}

namespace {

using wfinfo_bench::Least_ns;

constexpr int kMails = 1000;
constexpr int kListLines = 1'000'000;
constexpr int kFields = 8;

const char* const kHeaders[] = {"Return-Path",  "Received",   "From",         "To",
                                "Cc",           "Subject",    "Date",         "List-Id",
                                "MIME-Version", "Message-ID", "Content-Type", "X-Mailer"};

std::string Words(std::mt19937& random, std::size_t length) {
  std::string text;
  while (text.size() < length) text += static_cast<char>(random() % 7 == 0 ? ' ' : 'a' + random() % 26);
  return text;
}

// Twelve headers and 40 to 80 lines.
std::string MakeMail(std::mt19937& random) {
  std::string mail;
  for (const char* const name : kHeaders)
    mail += std::string(name) + ": " + Words(random, 20 + random() % 60) + "\r\n";
  mail += "\r\n";
  for (std::size_t lines = 40 + random() % 40; lines > 0; --lines)
    mail += Words(random, random() % 76) + "\r\n";
  return mail;
}

std::vector<std::string> g_mails;
std::size_t g_shown = 0;

// Of a host that shows one of the mails.
LRESULT AnswerTo(WPARAM code) { return code == 1 ? reinterpret_cast<LRESULT>(g_mails[g_shown].c_str()) : 1; }

std::size_t g_read = 0;  // bytes that were looked at: the work cannot be left out

void ReadByNumber() {
  for (const char* const name : kHeaders) g_read += std::string_view(RootHeader(name)).size();
  const long long lines = RootBodyLineCount();
  for (int n = 0; n < lines; ++n) g_read += std::string_view(RootBodyLine(n)).size();
}

void AddLines(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find("\r\n");
    g_read += text.substr(0, end).size();
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
  }
}

// Two requests for a mail, and the rest in the program.
void ReadAtOnce() {
  AddLines(AllRootHeader());
  AddLines(RootBody());
}

double EachMail_ns(void (*read)()) {
  return Least_ns(
             [read] {
               for (g_shown = 0; g_shown < g_mails.size(); ++g_shown) read();
             },
             3) /
         kMails;
}

std::string MakeList() {
  std::mt19937 random(1);
  std::string text;
  for (int line = 0; line < kListLines; ++line) {
    for (int field = 0; field < kFields; ++field) {
      const bool quoted = random() % 4 == 0;
      if (quoted) text += '"';
      for (std::size_t length = 2 + random() % 8; length > 0; --length)
        text += static_cast<char>('a' + random() % 26);
      if (quoted) text += '"';
      text += field < kFields - 1 ? "," : "\r\n";
    }
  }
  return text;
}

bool Load(const std::string& text) {
  char folder[MAX_PATH], name[MAX_PATH];
  GetTempPathA(sizeof folder, folder);
  GetTempFileNameA(folder, "csv", 0, name);
  std::FILE* const file = std::fopen(name, "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  std::fclose(file);
  const bool loaded = written && CSV_LoadFile(name) == 1;
  DeleteFileA(name);
  return loaded;
}

void WalkList() {
  CSV_SetCurrentLine(0);
  do {
    const long long columns = CSV_GetColumnCount();
    for (int i = 0; i < columns; ++i) g_read += static_cast<unsigned char>(*CSV_GetColumnText(i));
  } while (CSV_SkipOneLine() != 0);
}

void WalkText(const std::string& text) {
  wfinfo::CsvText walker;
  walker.Attach(text);
  char field[8192];
  do {
    const std::size_t columns = walker.ColumnCount();
    for (std::size_t i = 0; i < columns; ++i) g_read += walker.CopyColumn(i, field, sizeof field);
  } while (walker.SkipLine());
  walker.Detach();
}

}  // namespace

int main() {
  wfinfo_bench::Report report;
  const std::string list = MakeList();
  if (!Load(list)) return 1;  // without a frame the library reads the file itself
  report.Time("List/through_the_library", Least_ns(&WalkList, 3) / kListLines);
  report.Time("List/pure_walk", Least_ns([&] { WalkText(list); }, 3) / kListLines);
  CSV_Free();

  std::mt19937 random(1);
  for (int i = 0; i < kMails; ++i) g_mails.push_back(MakeMail(random));
  wfinfo_bench::ShowFrame(&AnswerTo);
  report.Time("Mails/by_number", EachMail_ns(&ReadByNumber));
  report.Time("Mails/at_once", EachMail_ns(&ReadAtOnce));
  return g_read == 0;
}
