// A host for tests: a frame window in the test's own process that expects requests one by one. A request that
// was not expected, differs from what was expected, or never came fails the test.
//
//   ScriptedHost host;
//   host.Expect(43).Text("Subject").Text("value").Answer(0);
//   SetHeader("Subject", "value");
//
// All expectations are met in order; the destructor reports what is missing.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/slots.h"

namespace wfinfo_test {

// What a request brought: its code and the address of its argument block.
struct Request {
  int code;
  Slot* block;  // null when the request has none
};

// One expected request or menu command.
class Expectation {
 public:
  // The next slot of the block, in order.
  Expectation& Int(Slot value);
  Expectation& Text(std::string text);
  Expectation& Null() { return Int(0); }
  // The next slot holds exactly this address.
  Expectation& Pointer(const void* address);
  // The next slot may hold anything.
  Expectation& Any();
  // lParam itself, not a block, is this address.
  Expectation& RawLParam(const void* address);

  // What the host answers (0 when nothing is said). A text lives as long as the host.
  Expectation& Answer(Slot value);
  Expectation& Answer(std::string text);
  // Run when the request comes, after the slots were compared; its result is the answer.
  Expectation& Do(std::function<Slot(const Request&)> action);
  // The window that must receive the request (by default the host's request target).
  Expectation& At(HWND window);
  // The same request may come any number of times, in any order with the others (also never).
  Expectation& Always();

 private:
  friend class ScriptedHost;
  enum class Kind { kRequest, kCommand, kMessage };
  struct Expected {
    enum class Form { kInt, kText, kAny } form;
    Slot value;
    std::string text;
  };

  Kind kind_ = Kind::kRequest;
  int code_ = 0;
  std::vector<Expected> slots_;
  const void* raw_lparam_ = nullptr;
  bool has_raw_lparam_ = false;
  std::function<Slot(const Request&)> action_;
  Slot answer_ = 0;
  std::string answer_text_;
  bool answers_text_ = false;
  HWND window_ = nullptr;
  bool always_ = false;
};

// The language that a host selects.
enum class Language { kJapanese, kEnglish };

class ScriptedHost {
 public:
  // Creates and activates the frame and hands the library the language and an error callback that collects
  // what it reports. Messages that a test does not take with TakeMessages fail it.
  explicit ScriptedHost(Language language = Language::kEnglish);
  ~ScriptedHost();
  ScriptedHost(const ScriptedHost&) = delete;
  ScriptedHost& operator=(const ScriptedHost&) = delete;

  HWND frame() const { return frame_; }
  // The window that answers requests of the frame: the frame itself unless SetRequestTarget changed it.
  HWND request_target() const { return request_target_; }

  // The next request with this function code.
  Expectation& Expect(int code);
  // The next menu command (WM_COMMAND to the request target).
  Expectation& ExpectCommand(int command);
  // Fails the test when any expectation is open, and forgets all of them.
  void Verify();

  // The messages reported since the last call, without the prefix "WFINFO.DLL: ".
  std::vector<std::string> TakeMessages();
  // Expects exactly these messages since the last call.
  void ExpectMessages(const std::vector<std::string>& messages);

  void SetLanguage(Language language);
  // What the frame answers to the two private queries.
  void SetActiveView(HWND window) { active_view_ = window; }
  void SetRequestTarget(HWND window) { request_target_ = window; }
  // How often the frame was asked for the window that acts for it, and for its request target.
  int active_view_queries() const { return active_view_queries_; }
  int request_target_queries() const { return request_target_queries_; }

  // Further host windows; destroyed with the host. They answer requests as the frame does.
  HWND OpenFrame();
  HWND OpenOuterView(bool with_user_data = true);
  HWND OpenHtmlViewer();
  // A plain window of the class "#32770", owned by `owner`; with `modal` the owner is disabled as a modal
  // dialog would.
  HWND OpenDialog(HWND owner, bool modal);
  // A window of class `class_name` with the given style.
  HWND OpenWindow(const char* class_name, HWND owner = nullptr, DWORD style = WS_POPUP | WS_VISIBLE);

  // Requests and commands received so far.
  int received() const { return received_; }
  // The frame's menu bar, made on demand, for menu-state tests.
  HMENU MakeMenuBar();

  // For further private messages of the tests: called first; true = handled with *result.
  std::function<bool(HWND, UINT, WPARAM, LPARAM, LRESULT*)> hook;

 private:
  static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  Slot Meet(Expectation& expectation, HWND window, int code, LPARAM lparam);

  HWND frame_ = nullptr;
  HWND active_view_ = nullptr;
  HWND request_target_ = nullptr;
  int active_view_queries_ = 0;
  int request_target_queries_ = 0;
  int received_ = 0;
  std::deque<Expectation> open_;
  std::deque<Expectation> always_;
  std::deque<std::string> answers_;  // texts that the library may still hold
  std::vector<HWND> windows_;
  Language language_;
};

// Runs `body` on a thread of its own and waits for it.
void OnOtherThread(const std::function<void()>& body);

// The visible dialogs of this process, front to back, from one look at all windows: other threads end theirs
// meanwhile, and a search that goes on from a window which is about to go may find no end.
std::vector<HWND> OwnDialogs();

// While alive, closes every message box of this process that shows, with the button `button`, and collects
// its texts and captions. A box of the library is modal: without this a test would wait for ever.
class BoxCloser {
 public:
  explicit BoxCloser(int button = IDOK);
  ~BoxCloser();
  BoxCloser(const BoxCloser&) = delete;
  BoxCloser& operator=(const BoxCloser&) = delete;

  struct Box {
    std::string caption;
    std::string text;
    HWND owner;
  };
  // The boxes closed so far.
  std::vector<Box> boxes();

 private:
  struct State;
  State* state_;
};

}  // namespace wfinfo_test
