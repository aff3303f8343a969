// One test over all exports that are written by hand: each is called in several states of a host that answers
// everything and writes down what it is sent, and that is compared with the row's `requests`; the blocks with
// the list of codes.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "src/catalogue/requests.h"
#include "tests/support/block_forms_win.h"
#include "tests/support/library.h"
#include "tests/support/row_calls_win.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using wfinfo::catalogue::Kind;
using wfinfo::catalogue::Row;
using wfinfo::catalogue::Rows;

using Requests = std::set<std::string>;  // as in the rows: "H1", "F12:40024", "M40179"

Requests NamedBy(const Row& row) {
  Requests named;
  for (const wfinfo::catalogue::SentRequest& request : RequestsOf(row)) named.insert(WordOf(request));
  return named;
}

// How the host answers, so that each branch of an export is taken in one of them.
enum class Mood { kNothing, kPlain, kOther };
// Which window is active.
enum class State { kFrame, kOuterView, kStranger };

// A host that records. Requests of the frame's target, of the frame itself and of a view are told apart.
class RecordingHost {
 public:
  RecordingHost() {
    target_ = host_.OpenWindow("WrenfoldView", host_.frame(), WS_CHILD | WS_VISIBLE);
    host_.SetRequestTarget(target_);
    view_ = host_.OpenOuterView();
    grep_ = host_.OpenWindow("WrenfoldView", nullptr, WS_POPUP | WS_VISIBLE);
    stranger_ = host_.OpenWindow("STATIC");
    menu_ = CreatePopupMenu();
    AppendMenuA(menu_, MF_STRING, 40128, "notification");
    AppendMenuA(menu_, MF_STRING, 40129, "priority");
    host_.hook = [this](HWND window, UINT message, WPARAM wparam, LPARAM lparam, LRESULT* answer) {
      return Receive(window, message, wparam, lparam, answer);
    };
  }
  ~RecordingHost() {
    host_.TakeMessages();
    DestroyMenu(menu_);
  }

  CallTargets targets() const { return {stranger_, view_}; }

  void Prepare(State state, Mood mood) {
    mood_ = mood;
    // Calls minimise and hide it. Windows are moved no more than they must: that takes most of the time.
    if (!IsWindowVisible(host_.frame()) || IsIconic(host_.frame()) || IsZoomed(host_.frame())) {
      ShowWindow(host_.frame(), SW_SHOWNORMAL);
    }
    if (state == State::kStranger) BringWindowToTop(host_.frame());
    SetActiveWindow(state == State::kFrame ? host_.frame() : state == State::kOuterView ? view_ : stranger_);
    sent_.clear();
  }
  void Answer(Mood mood) { mood_ = mood; }
  // Both letters of a request that a view received are possible: it is a frame target too.
  const Requests& sent() const { return sent_; }
  void Forget() {
    sent_.clear();
    host_.TakeMessages();
  }

 private:
  bool Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam, LRESULT* answer) {
    const bool command = IsMenuCommand(message, wparam, lparam);
    if (!IsRequest(message) && !command) return false;
    *answer = 0;
    const int code = static_cast<int>(wparam);
    if (command) {
      if (window == grep_ || code == IDCANCEL) return true;  // the grep window's own button, not a menu
      sent_.insert("M" + std::to_string(code));
      return true;
    }
    EXPECT_EQ(WrongBlock(code, lparam), "") << "code " << code;
    std::string request = (window == host_.frame() ? "F" : "H") + std::to_string(code);
    auto* const block = reinterpret_cast<Slot*>(lparam);
    if (wfinfo::CarriesCommand(code)) request += ":" + std::to_string(block[0]);
    sent_.insert(request);
    *answer = AnswerTo(code, block);
    return true;
  }

  LRESULT Address(const void* address) const { return reinterpret_cast<LRESULT>(address); }

  // An address where the export expects one, else a small number.
  LRESULT AnswerTo(int code, Slot* block) {
    static const std::set<int> kTexts = {1,   2,   19,  47,  81,  86,  87,  111, 113, 114, 115, 134,
                                         153, 158, 176, 262, 268, 269, 285, 291, 292, 293, 297};
    static char lists[] = "one\0two\0";
    alignas(16) static char record[8192];
    const bool other = mood_ == Mood::kOther;
    if (code == 279) return other ? 0x300 : 0;
    if (code == 169) return static_cast<LRESULT>(mood_);
    if (code == 15) return other ? 0x4000 : 0;
    if (code == 263) return mood_ == Mood::kPlain ? 0x4000 : 0;
    if (code == 176) block[0] = 0;  // no table
    if (mood_ == Mood::kNothing) return 0;
    if (code == 3) return lstrcpynA(reinterpret_cast<char*>(block[1]), "value", 6), 5;
    if (code == 129) return other ? 0 : Address(grep_);
    if (code == 135) return Address(stranger_);
    if (code == 143 || code == 144) return Address(lists);
    if (code == 75) return lstrcpynA(record, "account", 8), Address(record);
    if (code == 290 || code == 313) return Address(L"text");
    if (code == 307) return Address("text");
    if (code == 329) return other ? 0 : Address(menu_);
    if (code == 256) return 0;
    if (kTexts.count(code) != 0) {
      return Address(code == 47 && other ? "" : "Subject: s\r\ntext: v\r\n\r\nbody\r\nline\r\n");
    }
    return other ? 2 : 1;
  }

  ScriptedHost host_;
  HWND target_;
  HWND view_;
  HWND grep_;
  HWND stranger_;
  HMENU menu_;
  Mood mood_ = Mood::kNothing;
  Requests sent_;
};

// Brings the library into the state in which an export has something to do.
void SetUpFor(std::string_view name) {
  if (name == "LoadAccountProp" || name == "GetAccountProp" || name == "SaveAccountProp" ||
      name == "SetAccountProp")
    LoadAccountProp("account");
  if (name == "SaveAccountProp")
    SetAccountProp("szSignature", static_cast<long long>(reinterpret_cast<INT_PTR>("-- ")));
  if (name == "DoBookGrep" || name == "DoLdapGrep") DoBookGrep("text", 0, 0);
}

// A request is named by its code and letter; what a view receives may have come by either of two ways.
bool IsNamed(const std::string& request, const Requests& named) {
  return named.count(request) != 0 || (request[0] == 'H' && named.count("V" + request.substr(1)) != 0);
}

std::string Joined(const Requests& requests) {
  std::string all;
  for (const std::string& request : requests) all += request + " ";
  return all;
}

// Codes that the calls here do not bring about, with the test that does.
const std::map<std::string_view, std::string_view> kSeenElsewhere = {
    {"PgpEncryptSuper", "needs a program or certificates: Pgp..., Smime..."},
    {"PgpEncrypt", "needs a program: Pgp..."},
    {"PgpSign", "needs a program: Pgp..."},
    {"PgpDecrypt", "needs a program: Pgp..."},
    {"SelectCertCrcDialog", "needs a personal certificate: smime_tests"},
    {"SMIMEVerifyRevocation", "needs certificates and a list: smime_tests"},
    {"SMIMEVerifyRevocation_Cert", "needs certificates and a list: smime_tests"},
};

TEST(HandRows, SendWhatTheirRowsSayAndNothingElse) {
  RecordingHost host;
  const CallTargets targets = host.targets();
  for (const Row& row : Rows()) {
    if (row.kind != Kind::kHand || !ReasonNotToCall(row).empty()) continue;
    const Requests named = NamedBy(row);
    Requests seen;
    for (const State state : {State::kFrame, State::kOuterView, State::kStranger}) {
      for (const Mood mood : {Mood::kNothing, Mood::kPlain, Mood::kOther}) {
        for (const ArgumentList& arguments : ArgumentListsOf(row, targets)) {
          host.Answer(Mood::kPlain);
          SetUpFor(row.name);
          host.Prepare(state, mood);
          CallRow(row, arguments, targets);
          EndLateEffects();
          seen.insert(host.sent().begin(), host.sent().end());
          host.Forget();
        }
      }
    }
    SaveAccountProp();
    host.Forget();
    for (const std::string& request : seen) {
      EXPECT_TRUE(IsNamed(request, named))
          << row.name << " sends " << request << ", its row names " << Joined(named);
    }
    if (kSeenElsewhere.count(row.name) != 0) continue;
    for (const std::string& request : named) {
      EXPECT_TRUE(seen.count(request) != 0)
          << row.name << " never sent " << request << ", only " << Joined(seen);
    }
  }
}

}  // namespace
}  // namespace wfinfo_test
