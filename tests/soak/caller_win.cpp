#include "tests/soak/caller_win.h"

// clang-format off
#include <windows.h>
#include <mapi.h>  // needs the one above
// clang-format on

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "src/bridge/host_protocol.h"
#include "tests/monkey/dice.h"
#include "tests/monkey/library_memory_win.h"
#include "tests/soak/findings.h"
#include "tests/soak/peers.h"
#include "tests/support/library_imports_win.h"

namespace soak {
namespace {

constexpr unsigned long long kStretches = 6;
constexpr unsigned long long kEnoughToJudge =
    30;  // mails of one caller: with fewer, caches are still filling
constexpr unsigned kLongestPauseMs = 30;
constexpr DWORD kBoxPollMs = 20;

// --- What becomes of a hand-over ---

struct HandOver {
  bool made;
  bool answered;
  DWORD_PTR answer;
  DWORD error;
};
HandOver g_hand_over;

LRESULT WINAPI WatchedSend(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT flags,
                           UINT timeout_ms, PDWORD_PTR answer) {
  const LRESULT sent = SendMessageTimeoutA(window, message, wparam, lparam, flags, timeout_ms, answer);
  const DWORD error = GetLastError();
  if (message == wfinfo::kHostPassCommandLine)
    g_hand_over = {true, sent != 0, *answer, sent != 0 ? 0 : error};
  SetLastError(error);
  return sent;
}

// --- Boxes ---

std::string g_box;  // what the last box told, in the library's own words

// On one line, in UTF-8.
std::string Told(const char* host_text) {
  wchar_t wide[512];
  char utf8[3 * 512];
  if (MultiByteToWideChar(932, 0, host_text, -1, wide, 512) == 0) return "(?)";
  if (WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8, sizeof utf8, nullptr, nullptr) == 0) return "(?)";
  std::string told = utf8;
  std::replace_if(
      told.begin(), told.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return told;
}

int WINAPI WatchedBox(HWND owner, LPCSTR text, LPCSTR caption, UINT type) {
  g_box = Told(text);
  return MessageBoxA(owner, text, caption, type);
}

BOOL CALLBACK CloseBox(HWND window, LPARAM) {
  char name[16];
  if (GetClassNameA(window, name, sizeof name) != 0 && std::strcmp(name, wfinfo::kDialogClass) == 0)
    PostMessageA(window, WM_COMMAND, IDOK, 0);
  return TRUE;
}

DWORD WINAPI CloseBoxes(void* thread) {
  for (;; Sleep(kBoxPollMs))
    EnumThreadWindows(static_cast<DWORD>(reinterpret_cast<ULONG_PTR>(thread)), &CloseBox, 0);
}

void WatchHandOvers() {
  wfinfo_test::ForEachImportOfLibrary([](std::string_view name, void* original) {
    if (name == "SendMessageTimeoutA") return reinterpret_cast<void*>(&WatchedSend);
    return name == "MessageBoxA" ? reinterpret_cast<void*>(&WatchedBox) : original;
  });
}

// --- Mails ---

std::string TextOf(unsigned long long number) {
  constexpr unsigned long long kMostLines = 40;
  const std::string line = "text of mail " + std::to_string(number) + "\r\n";
  std::string text;
  for (unsigned long long i = 0; i <= number % kMostLines; ++i) text += line;
  return text;
}

// A file for every tenth mail; "" for none. The caller deletes it when the call is back.
std::string MakeFile(unsigned long long number) {
  if (number % 10 != 0) return "";
  char folder[MAX_PATH];
  GetTempPathA(sizeof folder, folder);
  const std::string path = std::string(folder) + "soak" + std::to_string(GetCurrentProcessId()) + "-" +
                           std::to_string(number) + ".bin";
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return Find("no file for mail " + std::to_string(number)), "";
  for (std::size_t at = 0; at < 1000 + number; ++at) std::fputc(BodyByte(number, at), file);
  std::fclose(file);
  return path;
}

ULONG Send(LPMAPISENDMAIL send, unsigned long long number, std::string& path) {
  std::string subject = "mail " + std::to_string(number);
  std::string text = TextOf(number);
  std::string name = "attached.bin";
  std::string address = "SMTP:to@example.com";
  MapiRecipDesc recipient{};
  recipient.ulRecipClass = MAPI_TO;
  recipient.lpszAddress = address.data();
  MapiFileDesc file{};
  file.nPosition = ~ULONG{0};
  file.lpszPathName = path.data();
  file.lpszFileName = name.data();
  MapiMessage message{};
  message.lpszSubject = subject.data();
  message.lpszNoteText = text.data();
  message.nRecipCount = 1;
  message.lpRecips = &recipient;
  message.nFileCount = path.empty() ? 0 : 1;
  message.lpFiles = &file;
  return send(0, 0, &message, 0, 0);
}

std::string Outcome() {
  const std::string told = g_box.empty() ? "" : "; box: " + g_box;
  if (!g_hand_over.made) return "not handed over" + told;
  if (!g_hand_over.answered) return "unanswered, error " + std::to_string(g_hand_over.error) + told;
  return (g_hand_over.answer == 1 ? "answered" : "refused") + told;
}

void SendOne(LPMAPISENDMAIL send, unsigned long long number) {
  std::string path = MakeFile(number);
  g_hand_over = {};
  g_box.clear();
  const ULONGLONG began = GetTickCount64();
  const ULONG code = Send(send, number, path);
  const ULONGLONG ended = GetTickCount64();
  if (!path.empty()) DeleteFileA(path.c_str());
  Print("mail: " + std::to_string(number) + " began " + std::to_string(began) + " ended " +
        std::to_string(ended) + " " + Outcome());
  if (code != SUCCESS_SUCCESS) Find("mail " + std::to_string(number) + ": code " + std::to_string(code));
}

template <class Function>
Function Exported(HMODULE library, const char* name) {
  const auto found = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  if (found == nullptr) Find(std::string("no ") + name);
  return found;
}

// The system's function, once the library that it leads to has come up and is watched.
LPMAPISENDMAIL PrepareSending() {
  const HMODULE mapi = LoadLibraryA("mapi32.dll");
  const auto send = Exported<LPMAPISENDMAIL>(mapi, "MAPISendMail");
  const auto resolve = Exported<LPMAPIRESOLVENAME>(mapi, "MAPIResolveName");
  const auto free_buffer = Exported<LPMAPIFREEBUFFER>(mapi, "MAPIFreeBuffer");
  if (send == nullptr || resolve == nullptr || free_buffer == nullptr) return nullptr;
  char name[] = "Jo <jo@example.com>";
  lpMapiRecipDesc found = nullptr;
  if (resolve(0, 0, name, 0, 0, &found) == SUCCESS_SUCCESS) free_buffer(found);
  if (GetModuleHandleA("WFINFO.dll") == nullptr)
    return Find("the system does not lead to the library"), nullptr;
  monkey::WatchLibraryMemory();
  WatchHandOvers();
  return send;
}

}  // namespace

void SendMails(const CallerPlan& plan) {
  const LPMAPISENDMAIL send = PrepareSending();
  if (send == nullptr) return;
  CloseHandle(CreateThread(nullptr, 0, &CloseBoxes, reinterpret_cast<void*>(ULONG_PTR{GetCurrentThreadId()}),
                           0, nullptr));
  const unsigned long long count = (plan.last - plan.first + plan.step - 1) / plan.step;
  const unsigned long long stretch = std::max(count / kStretches, 1ULL);
  Flatness flatness(Flatness::kAmongOthers);
  for (unsigned long long done = 0; done < count; ++done) {
    const unsigned long long number = plan.first + done * plan.step;
    monkey::Dice dice(plan.seed, number);
    Sleep(static_cast<DWORD>(dice.Below(kLongestPauseMs)));
    SendOne(send, number);
    if (done > 0 && (done + 1) % stretch == 0) flatness.Measure(done + 1);
  }
  if (count >= kEnoughToJudge) flatness.Judge();
}

}  // namespace soak
