#include "tests/inside/services/stage_win.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>

#include "host/services/services_win.h"
#include "host/session/work_files_win.h"
#include "src/bridge/host_protocol.h"

namespace services_test {
namespace {

constexpr DWORD kPatienceMs = 20000;  // for one call
constexpr UINT kExitCode = 3;
constexpr int kMostMessages = 1000;  // that one call may leave behind
constexpr int kNewMail = 40002;

char g_calling[512] = "";            // what is called, for the watchers
std::atomic<ULONGLONG> g_since = 0;  // when; 0: nothing
int g_boxes = 0;
std::string g_trace;

[[noreturn]] void EndTelling(const char* what) {
  std::fprintf(stderr, "%s %s\n", g_calling, what);
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), kExitCode);
  for (;;) Sleep(INFINITE);
}

LONG WINAPI TellCrash(EXCEPTION_POINTERS* exception) {
  char what[64];
  std::snprintf(what, sizeof what, "crashed with 0x%08lX", exception->ExceptionRecord->ExceptionCode);
  EndTelling(what);
}

DWORD WINAPI WatchTime(void*) {
  for (;; Sleep(500)) {
    const ULONGLONG since = g_since;
    if (since != 0 && GetTickCount64() - since > kPatienceMs) EndTelling("does not come back");
  }
}

// Refuses every box, so that whoever shows one goes on.
LRESULT CALLBACK RefuseBoxes(int code, WPARAM wparam, LPARAM lparam) {
  char name[16] = "";
  if (code == HCBT_CREATEWND) GetClassNameA(reinterpret_cast<HWND>(wparam), name, sizeof name);
  if (std::string_view(name) != "#32770") return CallNextHookEx(nullptr, code, wparam, lparam);
  ++g_boxes;
  return 1;
}

void KeepTrace(std::string_view line) { g_trace += line; }

void CarryOutMessages() {
  MSG message;
  for (int i = 0; i < kMostMessages && PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
    if (message.message != WM_QUIT) DispatchMessageA(&message);
  }
}

constexpr std::string_view kMail =
    "From: Ann <ann@example.org>\r\nTo: bob@example.org\r\nSubject: Minutes\r\nMessage-ID: "
    "<1@example.org>\r\n"
    "Date: Tue, 5 Mar 2024 09:07:03 +0900\r\n\r\nFirst line\r\nsecond line\r\n";
constexpr std::string_view kMailWithFile =
    "From: Carl <carl@example.org>\r\nSubject: Files\r\nMIME-Version: 1.0\r\n"
    "Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\nContent-Type: text/html\r\n\r\n<p>Hi</p>\r\n"
    "--b\r\nContent-Disposition: attachment; filename=a.txt\r\n\r\nattached\r\n--b--\r\n";

}  // namespace

std::string NameOf(Situation situation) {
  switch (situation) {
    case Situation::kNoMails:
      return "NoMails";
    case Situation::kMailsOpen:
      return "MailsOpen";
    case Situation::kMailBeingWritten:
      return "MailBeingWritten";
  }
  return "";
}

Stage::Stage() {
  SetUnhandledExceptionFilter(TellCrash);
  CloseHandle(CreateThread(nullptr, 0, WatchTime, nullptr, 0, nullptr));
  hook_ = SetWindowsHookExA(WH_CBT, RefuseBoxes, nullptr, GetCurrentThreadId());
  state_.emplace();
  server_.emplace(*state_, wrenfold::AllServices(), KeepTrace);
  windows_.emplace(*server_);
  EXPECT_TRUE(windows_->IsComplete());
}

Stage::~Stage() {
  windows_.reset();
  UnhookWindowsHookEx(hook_);
  SetCurrentDirectoryA("C:\\");  // so that the folder can go
}

Stage& TheStage() {
  static Stage stage;
  return stage;
}

void Stage::WriteFiles() {
  const std::string name = "world" + std::to_string(++generation_);
  for (const char* inner :
       {"", "\\mails", "\\mails\\Work", "\\templates", "\\templates\\newmail", "\\templates\\sign"}) {
    CreateDirectoryA(folder_.Path(name + inner).c_str(), nullptr);
  }
  folder_.Write(name + "\\mails\\a.eml", kMail);
  folder_.Write(name + "\\mails\\b.eml", kMailWithFile);
  folder_.Write(name + "\\mails\\Work\\c.eml", kMail);
  folder_.Write(name + "\\accounts.txt", "[example]\nszMailFromSpecify = bob@example.org\n");
  folder_.Write(name + "\\templates\\newmail\\plain.txt", "#sign short\nDear\n{body}\n");
  folder_.Write(name + "\\templates\\sign\\short.txt", "-- \nBob\n");
  folder_.Write(name + "\\book.csv", "address, name\nann@example.org, Ann\n");
  // What a service writes without a folder in front goes here too.
  SetCurrentDirectoryA(folder_.Path(name).c_str());
}

void Stage::Set(Situation situation) {
  WriteFiles();
  state_.emplace();
  wrenfold::Options options;
  if (situation != Situation::kNoMails) options.mails = {"mails"};
  options.accounts = {"accounts.txt"};
  options.templates = {"templates"};
  options.books = {"book.csv"};
  const auto reason = wrenfold::OpenWorkFiles(options, *state_);
  ASSERT_FALSE(reason) << *reason;
  if (situation != Situation::kMailBeingWritten) return;
  server_->ServeCommand(kNewMail);
  ASSERT_TRUE(state_->HasDraft());
}

Stage::Called Stage::Call(const Form& form, LPARAM block, std::string_view how) {
  std::snprintf(g_calling, sizeof g_calling, "%s (%.100s), %.*s:", form.word.c_str(), form.exports.c_str(),
                static_cast<int>(how.size()), how.data());
  state_->failure.clear();
  g_trace.clear();
  g_boxes = 0;
  const std::uint64_t not_served = server_->not_served();
  g_since = GetTickCount64();
  Called called;
  called.value = form.IsCommand() ? server_->ServeCommand(static_cast<int>(form.first_slot))
                                  : server_->Serve(form.code, block);
  called.trace = g_trace;
  called.failure = state_->failure;
  CarryOutMessages();
  g_since = 0;
  called.served = server_->not_served() == not_served;
  called.boxes = g_boxes;
  called.answered_text = called.trace.find(" -> \"") != std::string::npos;
  return called;
}

Stage::Called Stage::CallPlain(const Form& form) {
  wrenfold::Slot slots[16] = {form.first_slot == wfinfo::catalogue::kNoFirstSlot ? 0 : form.first_slot};
  return Call(form, reinterpret_cast<LPARAM>(slots), "a block of zeros");
}

}  // namespace services_test
