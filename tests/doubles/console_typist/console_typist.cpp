// A person at a console: starts a program in a console, types, and reads the screen.
//
//   console_typist [--alone|--hidden] COMMANDLINE STEP...
//
// --alone starts it as a double click does: the console is the program's alone, until a step types or reads;
// --hidden as the library does, without a window. "file NAME" waits until that file is there.
// A step is "type TEXT" (UTF-8 from the command line's UTF-16; \t is Tab, \n Enter, \b Backspace), "left N", "up",
// "wait TEXT" (until the screen shows it) or "end" (until the program ends, for 30 seconds). At the end the rows of
// the screen that hold something go to standard output in UTF-8, then "code N", or "code runs". "colours" puts in
// front of each row the foreground colour of its first character, as a number, from there on.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

constexpr DWORD kPatienceMs = 30000;
constexpr DWORD kPollMs = 20;

HANDLE g_in;
HANDLE g_out;
DWORD g_owner = 0;  // process whose console is still to be shared

std::string Utf8(std::wstring_view wide) {
  std::string text(wide.size() * 3 + 1, '\0');
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                                       static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<std::size_t>(size));
  return text;
}

bool g_colours = false;

std::wstring ColourOf(COORD place) {
  WORD attribute = 0;
  DWORD count = 0;
  ReadConsoleOutputAttribute(g_out, &attribute, 1, place, &count);
  return std::to_wstring(attribute & 15) + L" ";
}

// Rows without the blanks at their ends.
std::wstring Screen() {
  CONSOLE_SCREEN_BUFFER_INFO info;
  std::wstring screen;
  if (!GetConsoleScreenBufferInfo(g_out, &info)) return screen;
  for (SHORT y = 0; y <= info.dwCursorPosition.Y; ++y) {
    std::wstring row(static_cast<std::size_t>(info.dwSize.X), L' ');
    DWORD count = 0;
    ReadConsoleOutputCharacterW(g_out, row.data(), static_cast<DWORD>(row.size()), {0, y}, &count);
    row.resize(count);
    row.resize(row.find_last_not_of(L" \0") + 1);
    screen += (g_colours ? ColourOf({0, y}) : L"") + row + L"\n";
  }
  return screen;
}

void Press(WORD key, wchar_t character) {
  INPUT_RECORD records[2] = {};
  for (int i = 0; i < 2; ++i) {
    records[i].EventType = KEY_EVENT;
    KEY_EVENT_RECORD& event = records[i].Event.KeyEvent;
    event.bKeyDown = i == 0;
    event.wRepeatCount = 1;
    event.wVirtualKeyCode = key;
    event.wVirtualScanCode = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    event.uChar.UnicodeChar = character;
  }
  DWORD written = 0;
  WriteConsoleInputW(g_in, records, 2, &written);
}

void Type(std::wstring_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escaped = text[i] == L'\\' && i + 1 < text.size();
    const wchar_t c = escaped ? text[++i] : text[i];
    if (escaped && c == L't') {
      Press(VK_TAB, L'\t');
    } else if (escaped && c == L'n') {
      Press(VK_RETURN, L'\r');
    } else if (escaped && c == L'b') {
      Press(VK_BACK, L'\b');
    } else {
      Press(0, c);
    }
  }
}

bool WaitFor(std::wstring_view text) {
  const ULONGLONG end = GetTickCount64() + kPatienceMs;
  while (Screen().find(text) == std::wstring::npos) {
    if (GetTickCount64() >= end) return false;
    Sleep(kPollMs);
  }
  return true;
}

HANDLE OpenConsole(const wchar_t* name) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                     OPEN_EXISTING, 0, nullptr);
}

void OpenConsoles() {
  g_in = OpenConsole(L"CONIN$");
  g_out = OpenConsole(L"CONOUT$");
}

// Wine has no answer of its console's server now and then: error 1359.
bool MakeConsole() {
  for (int tries = 5; tries > 0; --tries) {
    if (AllocConsole()) return true;
    Sleep(kPollMs);
  }
  return false;
}

void ShareConsole() {
  if (g_owner != 0 && AttachConsole(g_owner)) OpenConsoles();
  g_owner = 0;
}

bool WaitForFile(const std::wstring& name) {
  const ULONGLONG end = GetTickCount64() + kPatienceMs;
  while (GetFileAttributesW(name.c_str()) == INVALID_FILE_ATTRIBUTES) {
    if (GetTickCount64() >= end) return false;
    Sleep(kPollMs);
  }
  return true;
}

bool Start(wchar_t* line, std::wstring_view manner, PROCESS_INFORMATION* process) {
  const bool alone = !manner.empty();
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  FreeConsole();
  if (alone) {
    if (manner == L"--hidden") startup.dwFlags = STARTF_USESHOWWINDOW;  // and SW_HIDE, which is 0
  } else {
    if (!MakeConsole()) return false;
    OpenConsoles();
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = g_in;
    startup.hStdOutput = startup.hStdError = g_out;
  }
  if (!CreateProcessW(nullptr, line, nullptr, nullptr, !alone, alone ? CREATE_NEW_CONSOLE : 0, nullptr,
                      nullptr, &startup, process))
    return false;
  if (alone) g_owner = process->dwProcessId;
  return true;
}

// False for a step that could not be done.
bool Do(std::wstring_view step, HANDLE process) {
  const std::size_t blank = step.find(L' ');
  const std::wstring_view word = step.substr(0, blank);
  const std::wstring_view rest = blank == step.npos ? L"" : step.substr(blank + 1);
  if (word == L"file") return WaitForFile(std::wstring(rest));
  if (word == L"end") return WaitForSingleObject(process, kPatienceMs) == WAIT_OBJECT_0;
  ShareConsole();
  if (word == L"type") return Type(rest), true;
  if (word == L"wait") return WaitFor(rest);
  if (word == L"colours") return g_colours = true;
  if (word == L"up") return Press(VK_UP, 0), true;
  if (word != L"left") return false;
  for (int i = _wtoi(std::wstring(rest).c_str()); i > 0; --i) Press(VK_LEFT, 0);
  return true;
}

}  // namespace

int wmain(int count, wchar_t** words) {
  const bool has_manner = count > 1 && words[1][0] == L'-';
  const int first = has_manner ? 2 : 1;
  if (count <= first) return 2;
  PROCESS_INFORMATION process{};
  if (!Start(words[first], has_manner ? words[1] : L"", &process))
    return std::fprintf(stderr, "cannot start it: %lu\n", GetLastError()), 2;
  std::string failed;
  for (int i = first + 1; i < count && failed.empty(); ++i) {
    if (!Do(words[i], process.hProcess)) failed = "cannot " + Utf8(words[i]) + "\n";
  }
  DWORD code = STILL_ACTIVE;
  GetExitCodeProcess(process.hProcess, &code);
  std::printf("%s%scode %s\n", Utf8(Screen()).c_str(), failed.c_str(),
              code == STILL_ACTIVE ? "runs" : std::to_string(code).c_str());
  if (code == STILL_ACTIVE) TerminateProcess(process.hProcess, 3);
  return failed.empty() ? 0 : 1;
}
