#include "tests/support/scripted_host_win.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "tests/support/block_forms_win.h"
#include "tests/support/library.h"

namespace wfinfo_test {

namespace {

ScriptedHost* g_host = nullptr;
std::vector<std::string> g_messages;
std::mutex g_messagesLock;

void CollectMessage(const char* text) {
  const std::string_view prefix = "WFINFO.DLL: ";
  std::string_view message = text;
  EXPECT_EQ(message.substr(0, prefix.size()), prefix);
  if (message.substr(0, prefix.size()) == prefix) message.remove_prefix(prefix.size());
  const std::lock_guard lock(g_messagesLock);
  g_messages.emplace_back(message);
}

std::string Shown(const std::string& text) { return "\"" + text + "\""; }

}  // namespace

const char kStringMessageEnglish[] =
    "String parameter missing or numeric parameter specified that should be string.";

std::string StringMessageJapanese() {
  return Sjis(u8"文字列が渡されるべき所に数値が指定されたか、またはパラメータが足りません。");
}

std::string Sjis(std::u8string_view utf8) {
  const auto* bytes = reinterpret_cast<const char*>(utf8.data());
  std::wstring wide(utf8.size(), L'\0');
  wide.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes,
                                                           static_cast<int>(utf8.size()), wide.data(),
                                                           static_cast<int>(wide.size()))));
  std::string text(wide.size() * 2, '\0');
  BOOL lost = FALSE;
  text.resize(static_cast<std::size_t>(WideCharToMultiByte(932, WC_NO_BEST_FIT_CHARS, wide.data(),
                                                           static_cast<int>(wide.size()), text.data(),
                                                           static_cast<int>(text.size()), nullptr, &lost)));
  EXPECT_FALSE(lost) << "a character of the literal is not in code page 932";
  return text;
}

Expectation& Expectation::Int(Slot value) {
  slots_.push_back({Expected::Form::kInt, value, {}});
  return *this;
}

Expectation& Expectation::Text(std::string text) {
  slots_.push_back({Expected::Form::kText, 0, std::move(text)});
  return *this;
}

Expectation& Expectation::Pointer(const void* address) {
  return Int(static_cast<Slot>(reinterpret_cast<INT_PTR>(address)));
}

Expectation& Expectation::Any() {
  slots_.push_back({Expected::Form::kAny, 0, {}});
  return *this;
}

Expectation& Expectation::RawLParam(const void* address) {
  raw_lparam_ = address;
  has_raw_lparam_ = true;
  return *this;
}

Expectation& Expectation::Answer(Slot value) {
  answer_ = value;
  return *this;
}

Expectation& Expectation::Answer(std::string text) {
  answer_text_ = std::move(text);
  answers_text_ = true;
  return *this;
}

Expectation& Expectation::Do(std::function<Slot(const Request&)> action) {
  action_ = std::move(action);
  return *this;
}

Expectation& Expectation::At(HWND window) {
  window_ = window;
  return *this;
}

Expectation& Expectation::Always() {
  always_ = true;
  return *this;
}

ScriptedHost::ScriptedHost(Language language) : language_(language) {
  EXPECT_EQ(g_host, nullptr) << "one host at a time";
  g_host = this;
  {
    const std::lock_guard lock(g_messagesLock);
    g_messages.clear();
  }
  SetLanguage(language);
  frame_ = OpenFrame();
  request_target_ = frame_;
  SetActiveWindow(frame_);
}

ScriptedHost::~ScriptedHost() {
  Verify();
  for (const std::string& message : TakeMessages())
    ADD_FAILURE() << "a message that was not expected: " << message;
  for (const HWND window : windows_) DestroyWindow(window);
  g_host = nullptr;
}

void ScriptedHost::SetLanguage(Language language) {
  language_ = language;
  const wfinfo::HandOverRecord info = {sizeof info, language == Language::kEnglish ? 1u : 0u,
                                       &CollectMessage};
  NotifyWrenfoldInfo(&info);
}

Expectation& ScriptedHost::Expect(int code) {
  Expectation expectation;
  expectation.code_ = code;
  return open_.emplace_back(std::move(expectation));
}

Expectation& ScriptedHost::ExpectCommand(int command) {
  Expectation expectation;
  expectation.kind_ = Expectation::Kind::kCommand;
  expectation.code_ = command;
  return open_.emplace_back(std::move(expectation));
}

void ScriptedHost::Verify() {
  for (const Expectation& expectation : open_) {
    if (!expectation.always_) {
      ADD_FAILURE() << "never received: "
                    << (expectation.kind_ == Expectation::Kind::kCommand ? "command " : "request ")
                    << expectation.code_;
    }
  }
  open_.clear();
}

std::vector<std::string> ScriptedHost::TakeMessages() {
  const std::lock_guard lock(g_messagesLock);
  return std::exchange(g_messages, {});
}

void ScriptedHost::ExpectMessages(const std::vector<std::string>& messages) {
  EXPECT_EQ(TakeMessages(), messages);
}

HWND ScriptedHost::OpenWindow(const char* class_name, HWND owner, DWORD style) {
  WNDCLASSA existing{};
  if (!GetClassInfoA(GetModuleHandleA(nullptr), class_name, &existing) &&
      !GetClassInfoA(nullptr, class_name, &existing)) {
    WNDCLASSA fresh{};
    fresh.lpfnWndProc = &ScriptedHost::WindowProcedure;
    fresh.hInstance = GetModuleHandleA(nullptr);
    fresh.lpszClassName = class_name;
    EXPECT_NE(RegisterClassA(&fresh), 0) << class_name;
  }
  const HWND window = CreateWindowExA(0, class_name, "", style, 10, 20, 300, 200, owner, nullptr,
                                      GetModuleHandleA(nullptr), nullptr);
  EXPECT_NE(window, nullptr) << class_name;
  windows_.push_back(window);
  return window;
}

HWND ScriptedHost::OpenFrame() {
  return OpenWindow("WrenfoldFrame", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
}

HWND ScriptedHost::OpenOuterView(bool with_user_data) {
  const HWND window = OpenWindow("WrenfoldOuterView", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  if (with_user_data) SetWindowLongPtrA(window, GWLP_USERDATA, 1);
  return window;
}

HWND ScriptedHost::OpenHtmlViewer() {
  return OpenWindow("WrenfoldIsolatedHtmlViewer", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
}

HWND ScriptedHost::OpenDialog(HWND owner, bool modal) {
  const HWND window = OpenWindow("#32770", owner, WS_POPUP | WS_CAPTION | WS_VISIBLE);
  if (modal && owner != nullptr) EnableWindow(owner, FALSE);
  SetActiveWindow(window);
  return window;
}

HMENU ScriptedHost::MakeMenuBar() {
  if (GetMenu(frame_) == nullptr) SetMenu(frame_, CreateMenu());
  return GetMenu(frame_);
}

LRESULT CALLBACK ScriptedHost::WindowProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (g_host != nullptr) return g_host->Receive(window, message, wparam, lparam);
  return DefWindowProcA(window, message, wparam, lparam);
}

LRESULT ScriptedHost::Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  LRESULT result = 0;
  if (hook && hook(window, message, wparam, lparam, &result)) return result;
  if (message == wfinfo::kHostGetActiveView) {
    ++active_view_queries_;
    return reinterpret_cast<LRESULT>(active_view_);
  }
  if (message == wfinfo::kHostGetRequestTarget) {
    ++request_target_queries_;
    return reinterpret_cast<LRESULT>(request_target_);
  }
  const bool command = IsMenuCommand(message, wparam, lparam);
  if (!IsRequest(message) && !command) return DefWindowProcA(window, message, wparam, lparam);

  ++received_;
  const int code = static_cast<int>(wparam);
  const auto kind = command ? Expectation::Kind::kCommand : Expectation::Kind::kRequest;
  for (Expectation& standing : open_) {
    if (standing.always_ && standing.kind_ == kind && standing.code_ == code) {
      return Meet(standing, window, code, lparam);
    }
  }
  for (auto next = open_.begin(); next != open_.end(); ++next) {
    if (next->always_) continue;
    if (next->kind_ != kind || next->code_ != code) break;
    Expectation expectation = std::move(*next);
    open_.erase(next);
    return Meet(expectation, window, code, lparam);
  }
  ADD_FAILURE() << "not expected: " << (command ? "command " : "request ") << code;
  return 0;
}

Slot ScriptedHost::Meet(Expectation& expectation, HWND window, int code, LPARAM lparam) {
  const HWND wanted = expectation.window_ != nullptr ? expectation.window_ : request_target_;
  EXPECT_EQ(window, wanted) << "window of " << code;
  auto* block = reinterpret_cast<Slot*>(lparam);
  if (expectation.has_raw_lparam_) {
    EXPECT_EQ(reinterpret_cast<const void*>(lparam), expectation.raw_lparam_) << "lParam of " << code;
  } else if (expectation.slots_.empty()) {
    EXPECT_TRUE(lparam == 0 || expectation.action_) << "request " << code << " should have no block";
  } else if (block == nullptr) {
    ADD_FAILURE() << "request " << code << " has no block";
  } else {
    EXPECT_TRUE(expectation.kind_ != Expectation::Kind::kRequest ||
                HasSlotCount(code, expectation.slots_.size()))
        << "request " << code << " has another number of slots in the list of codes";
    for (std::size_t i = 0; i < expectation.slots_.size(); ++i) {
      const auto& expected = expectation.slots_[i];
      if (expected.form == Expectation::Expected::Form::kInt) {
        EXPECT_EQ(block[i], expected.value) << "request " << code << ", slot " << i;
      } else if (expected.form == Expectation::Expected::Form::kText) {
        const auto* text = reinterpret_cast<const char*>(block[i]);
        if (text == nullptr) {
          ADD_FAILURE() << "request " << code << ", slot " << i << " is null, not " << Shown(expected.text);
        } else {
          EXPECT_EQ(std::string(text), expected.text) << "request " << code << ", slot " << i;
        }
      }
    }
  }
  if (expectation.action_) return expectation.action_(Request{code, block});
  if (!expectation.answers_text_) return expectation.answer_;
  answers_.push_back(expectation.answer_text_);
  return static_cast<Slot>(reinterpret_cast<INT_PTR>(answers_.back().c_str()));
}

void OnOtherThread(const std::function<void()>& body) {
  const HANDLE done = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  std::thread thread([&] {
    body();
    SetEvent(done);
  });
  // The other thread may send messages to windows of this one: keep answering them.
  while (MsgWaitForMultipleObjects(1, &done, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
  }
  thread.join();
  CloseHandle(done);
}

struct BoxCloser::State {
  int button;
  std::atomic<bool> stop{false};
  std::mutex lock;
  std::vector<Box> boxes;
  std::thread thread;
};

namespace {

// A property of boxes that were told to close. It goes with the window: the next one may have the same handle.
constexpr char kToldToClose[] = "BoxCloser";

std::string WindowText(HWND window) {
  char text[1024] = "";
  SendMessageTimeoutA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text), SMTO_NORMAL, 2000,
                      nullptr);
  return text;
}

BOOL CALLBACK AddOwnDialog(HWND window, LPARAM list) {
  DWORD process = 0;
  char name[8] = "";
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return TRUE;
  if (GetClassNameA(window, name, sizeof name) != 0 && std::string_view(name) == "#32770") {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  }
  return TRUE;
}

}  // namespace

std::vector<HWND> OwnDialogs() {
  std::vector<HWND> dialogs;
  EnumWindows(&AddOwnDialog, reinterpret_cast<LPARAM>(&dialogs));
  return dialogs;
}

BoxCloser::BoxCloser(int button) : state_(new State{}) {
  state_->button = button;
  state_->thread = std::thread([state = state_] {
    while (!state->stop) {
      for (const HWND box : OwnDialogs()) {
        const HWND label = GetDlgItem(box, 0xFFFF);  // the text of a message box
        if (label == nullptr) continue;
        if (GetPropA(box, kToldToClose) != nullptr) continue;
        SetPropA(box, kToldToClose, box);
        {
          const std::lock_guard lock(state->lock);
          state->boxes.push_back({WindowText(box), WindowText(label), GetWindow(box, GW_OWNER)});
        }
        PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(state->button), 0);
      }
      Sleep(10);
    }
  });
}

BoxCloser::~BoxCloser() {
  state_->stop = true;
  state_->thread.join();
  delete state_;
}

std::vector<BoxCloser::Box> BoxCloser::boxes() {
  const std::lock_guard lock(state_->lock);
  return state_->boxes;
}

}  // namespace wfinfo_test
