// start_cost: how long the small host needs from its start to the first word of a macro, and how much memory,
// with many mails and with a large file of mails.
#include <windows.h>

#include <psapi.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "bench/windows/report.h"
#include "bench/windows/stopwatch.h"

namespace {

namespace fs = std::filesystem;

constexpr int kMails = 10'000;
constexpr std::size_t kMboxSize = 500'000'000;

struct Start {
  double ns = 1e300;
  double bytes = 0;  // the most that the host had for itself
};

// A line of a folder's list and some text: 1 to 9 KB.
std::string MakeMail(std::mt19937& random, int number) {
  std::string mail = "From: Sender " + std::to_string(random() % 500) +
                     " <s@mail.example.com>\r\nTo: me@mail.example.com\r\n" + "Subject: mail " +
                     std::to_string(number) + "\r\nDate: Mon, 2 Nov 2026 10:00:00 +0900\r\n" +
                     "Message-ID: <" + std::to_string(number) + "@mail.example.com>\r\n\r\n";
  for (std::size_t lines = 10 + random() % 110; lines > 0; --lines) {
    for (std::size_t length = 40 + random() % 35; length > 0; --length)
      mail += static_cast<char>('a' + random() % 26);
    mail += "\r\n";
  }
  return mail;
}

bool Write(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  return static_cast<bool>(file.flush());
}

bool MakeFolder(const fs::path& folder) {
  std::mt19937 random(1);
  fs::create_directories(folder);
  for (int i = 0; i < kMails; ++i) {
    if (!Write(folder / (std::to_string(i) + ".eml"), MakeMail(random, i))) return false;
  }
  return true;
}

bool MakeMbox(const fs::path& path) {
  std::mt19937 random(1);
  std::ofstream file(path, std::ios::binary);
  std::size_t size = 0;
  for (int i = 0; size < kMboxSize; ++i) {
    const std::string mail =
        "From s@mail.example.com Mon Nov  2 10:00:00 2026\r\n" + MakeMail(random, i) + "\r\n";
    file << mail;
    size += mail.size();
  }
  return static_cast<bool>(file.flush());
}

// One start; false when the host says nothing.
bool Measure(const fs::path& mails, const fs::path& macro, Start& least) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE read, write;
  if (!CreatePipe(&read, &write, &inherited, 0)) return false;
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = write;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  std::wstring command = L"..\\..\\out\\host\\wrenfold.exe --mail \"" + mails.wstring() + L"\" --macro \"" +
                         macro.wstring() + L"\"";
  PROCESS_INFORMATION process{};
  const double start = wfinfo_bench::Now_ns();
  const BOOL started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                      &startup, &process);
  CloseHandle(write);
  char first = 0;
  DWORD count = 0;
  const bool said = started && ReadFile(read, &first, 1, &count, nullptr) && count == 1;
  const double ns = wfinfo_bench::Now_ns() - start;
  if (started) {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(process.hProcess, &memory, sizeof memory);
    WaitForSingleObject(process.hProcess, INFINITE);
    if (static_cast<double>(memory.PeakPagefileUsage) > least.bytes) {
      least.bytes = static_cast<double>(memory.PeakPagefileUsage);
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  CloseHandle(read);
  if (said && ns < least.ns) least.ns = ns;
  return said;
}

bool Starts(const fs::path& mails, const fs::path& macro, Start& least) {
  constexpr int kStarts = 3;
  for (int i = 0; i < kStarts; ++i) {
    if (!Measure(mails, macro, least)) return false;
  }
  return true;
}

}  // namespace

int main() {
  const fs::path folder =
      fs::temp_directory_path() / ("wfinfo-start-" + std::to_string(GetCurrentProcessId()));
  Start many, large, few;
  const bool done = MakeFolder(folder / "many") && MakeMbox(folder / "large.mbox") &&
                    Write(folder / "one.eml", "Subject: one\r\n\r\ntext\r\n") &&
                    Write(folder / "hello.macro", "print MailCount()\n") &&
                    Starts(folder / "one.eml", folder / "hello.macro", few) &&
                    Starts(folder / "many", folder / "hello.macro", many) &&
                    Starts(folder / "large.mbox", folder / "hello.macro", large);
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  if (!done) return 1;
  wfinfo_bench::Report report;
  report.Time("Start/one_mail", few.ns);
  report.Time("Start/many_mails", many.ns);
  report.Size("Memory/many_mails", many.bytes);
  report.Time("Start/large_mbox", large.ns);
  report.Size("Memory/large_mbox", large.bytes);
  return 0;
}
