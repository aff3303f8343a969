// GnuPG where it is installed, with a key ring of the test's own: it works hidden.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <set>
#include <thread>

#include "tests/kit/system/child_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"
#include "tests/support/temp_folder_win.h"

namespace system_tests {
namespace {

using wfinfo_test::ScriptedHost;

// Visible consoles of any program.
std::set<HWND> Consoles() {
  std::set<HWND> found;
  const auto collect = [](HWND window, LPARAM into) -> BOOL {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    const std::string_view kind = name;
    if (IsWindowVisible(window) &&
        (kind == "ConsoleWindowClass" || kind == "CASCADIA_HOSTING_WINDOW_CLASS")) {
      reinterpret_cast<std::set<HWND>*>(into)->insert(window);
    }
    return TRUE;
  };
  EnumWindows(collect, reinterpret_cast<LPARAM>(&found));
  return found;
}

// Looks for consoles that come up, while it lives.
class ConsoleWatch {
 public:
  ConsoleWatch() : before_(Consoles()), thread_([this] { Watch(); }) {}
  int Seen() {
    end_ = true;
    if (thread_.joinable()) thread_.join();
    return seen_;
  }
  ~ConsoleWatch() { Seen(); }

 private:
  void Watch() {
    while (!end_) {
      for (const HWND window : Consoles()) seen_ += before_.insert(window).second;
      Sleep(5);
    }
  }
  std::set<HWND> before_;
  std::atomic<bool> end_ = false;
  int seen_ = 0;
  std::thread thread_;
};

class Gnupg : public testing::Test {
 protected:
  void SetUp() override {
    char found[MAX_PATH];
    if (SearchPathA(nullptr, "gpg.exe", nullptr, sizeof found, found, nullptr) == 0) {
      GTEST_SKIP() << "no gpg.exe on the search path: GnuPG is not installed";
    }
    home_.Write("gpg.conf", "pinentry-mode loopback\nno-auto-key-locate\ntrust-model always\n");
    home_.Write("gpg-agent.conf", "allow-loopback-pinentry\n");
    std::string folder = home_.Path(".");
    folder.resize(folder.size() - 2);
    SetEnvironmentVariableA("GNUPGHOME", folder.c_str());
    const Finished made = RunChild(
        "gpg.exe --batch --passphrase secret --quick-gen-key alice@example.com rsa2048 default never", 120);
    ASSERT_EQ(made.code, 0u) << made.output;
    std::filesystem::current_path(work_.Path("."));
    ASSERT_EQ(PgpSetProgram(1), 1);
  }
  void TearDown() override {
    std::filesystem::current_path(before_);
    RunChild("gpgconf.exe --kill all");
  }

  const std::filesystem::path before_ = std::filesystem::current_path();
  wfinfo_test::TempFolder home_, work_;
  ScriptedHost host_;
};

TEST_F(Gnupg, EncryptsAndDecryptsWithoutShowingAConsole) {
  ConsoleWatch watch;
  const std::string message = PgpEncrypt("The text.\r\n", "alice@example.com");
  EXPECT_EQ(PgpGetExitCode(), 0) << PgpGetInfo();
  ASSERT_TRUE(message.starts_with("-----BEGIN PGP MESSAGE-----")) << message;
  const char* const text = PgpDecrypt(message.c_str(), "secret", nullptr, 0);
  EXPECT_EQ(PgpGetExitCode(), 0) << PgpGetInfo();
  EXPECT_STREQ(text, "The text.\r\n");
  EXPECT_EQ(watch.Seen(), 0) << "consoles came up";
}

TEST_F(Gnupg, SignsAndVerifiesWithoutShowingAConsole) {
  ConsoleWatch watch;
  const std::string message = PgpSign("The text.\r\n", "alice@example.com", "secret");
  ASSERT_EQ(PgpGetExitCode(), 0) << PgpGetInfo();
  PgpDecrypt(message.c_str(), "", nullptr, 0);
  EXPECT_EQ(PgpGetExitCode(), 0) << PgpGetInfo();
  EXPECT_NE(std::string(PgpGetInfo()).find("alice@example.com"), std::string::npos) << PgpGetInfo();
  EXPECT_EQ(watch.Seen(), 0) << "consoles came up";
}

TEST_F(Gnupg, AWrongPassPhraseGivesNoText) {
  const std::string message = PgpEncrypt("The text.\r\n", "alice@example.com");
  ASSERT_EQ(PgpGetExitCode(), 0) << PgpGetInfo();
  RunChild("gpgconf.exe --kill all");  // the agent may remember the right one
  const char* const text = PgpDecrypt(message.c_str(), "wrong", nullptr, 0);
  EXPECT_NE(PgpGetExitCode(), 0);
  EXPECT_STREQ(text, "");
}

}  // namespace
}  // namespace system_tests
