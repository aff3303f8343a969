// Which library the system's mapi32 takes, and the sample for PowerShell.
//
// Mails are sent only with WFINFO_KIT_MAPI, which `run.cmd --mapi` sets: for the time of a test wrenfold.exe is the
// system's mail client then. The kit puts back what a killed test left.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "tests/kit/system/child_win.h"
#include "tests/support/temp_folder_win.h"

namespace system_tests {
namespace {

constexpr char kClients[] = "Software\\Clients\\Mail";
const std::string kHost = "..\\host\\wrenfold.exe";
const std::string kScript = "..\\samples\\mapi\\Send-Mail.ps1";
const std::string kPowerShell = "powershell.exe -NoProfile -NonInteractive -ExecutionPolicy Bypass ";

std::string Hex(std::string_view text) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char byte : text) (hex += kDigits[static_cast<unsigned char>(byte) >> 4]) += kDigits[byte & 15];
  return hex;
}

// The user's own choice, which goes before the machine's.
class UsersChoice {
 public:
  explicit UsersChoice(const char* client) {
    DWORD size = sizeof before_;
    had_one_ = RegGetValueA(HKEY_CURRENT_USER, kClients, "", RRF_RT_REG_SZ, nullptr, before_, &size) ==
               ERROR_SUCCESS;
    Set(client);
  }
  ~UsersChoice() {
    if (had_one_) {
      Set(before_);
    } else {
      RegDeleteKeyValueA(HKEY_CURRENT_USER, kClients, nullptr);
    }
  }

 private:
  static void Set(const char* client) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kClients, nullptr, REG_SZ, client,
                    static_cast<DWORD>(std::strlen(client) + 1));
  }
  char before_[256] = "";
  bool had_one_ = false;
};

// Why PowerShell cannot be tried; "" when it can.
std::string NoPowerShell() {
  const Finished asked = RunChild(kPowerShell + "-Command \"40 + 2\"");
  if (!asked.started) return "no powershell.exe on the search path";
  return asked.output.starts_with("42") ? "" : "powershell.exe is there and computes nothing";
}

class MailClient : public testing::Test {
 protected:
  void SetUp() override {
    if (std::getenv("WFINFO_KIT_MAPI") == nullptr) {
      GTEST_SKIP() << "only with run.cmd --mapi: it changes the system's mail client for a moment";
    }
    const Finished registered = RunChild(kHost + " --english --register-mapi --yes");
    if (registered.code != 0 && registered.output.find("administrator") != std::string::npos) {
      GTEST_SKIP() << "only an administrator may change the system's mail client";
    }
    ASSERT_EQ(registered.code, 0u) << registered.output;
    registered_ = true;
    std::filesystem::create_directories(Home() / "mails");
  }
  void TearDown() override {
    RunChild("doubles\\mapi_client.exe close");
    if (!registered_) return;
    const Finished undone = RunChild(kHost + " --english --unregister-mapi");
    EXPECT_EQ(undone.code, 0u) << undone.output;
  }

  std::filesystem::path Home() const { return folder_.WidePath(L"home"); }
  std::string ServeLine() const { return kHost + " --serve --home \"" + folder_.Path("home") + "\""; }
  static bool HostIsUp() {
    for (int tries = 0; tries < 100; ++tries, Sleep(100)) {
      if (RunChild("doubles\\mapi_client.exe frame").code == 0) return true;
    }
    return false;
  }
  // Contents of all mails of the outbox.
  std::string Sent() const {
    std::string all;
    std::error_code none;
    for (const auto& file : std::filesystem::directory_iterator(Home() / "outbox", none)) {
      all += folder_.Read(L"home\\outbox\\" + file.path().filename().wstring());
    }
    return all;
  }

  wfinfo_test::TempFolder folder_;
  bool registered_ = false;
};

TEST_F(MailClient, TheSystemSendsThroughTheRegisteredLibrary) {
  const UsersChoice choice("Wrenfold");
  const Companion host(ServeLine());
  ASSERT_TRUE(HostIsUp());
  const Finished sent = RunChild("doubles\\mapi_client.exe send 0 " + Hex("From a program") + " " +
                                 Hex("The text.") + " to - " + Hex("jo@example.jp"));
  EXPECT_NE(sent.output.find("code=0"), std::string::npos) << sent.output;
  EXPECT_NE(Sent().find("Subject: From a program"), std::string::npos) << Sent();
}

TEST_F(MailClient, ThePowerShellSampleSends) {
  const std::string missing = NoPowerShell();
  if (!missing.empty()) GTEST_SKIP() << missing;
  const UsersChoice choice("Wrenfold");
  const Companion host(ServeLine());
  ASSERT_TRUE(HostIsUp());
  const Finished sent =
      RunChild(kPowerShell + "-File " + kScript + " -To jo@example.jp -Subject Hello -Text \"Dear Jo\"");
  EXPECT_EQ(sent.code, 0u) << sent.output;
  EXPECT_NE(sent.output.find("MAPISendMail: 0"), std::string::npos) << sent.output;
  EXPECT_NE(Sent().find("Subject: Hello"), std::string::npos) << Sent();
}

TEST(SendMailScript, IsReadAndItsTypesAreCompiledByPowerShell) {
  const std::string missing = NoPowerShell();
  if (!missing.empty()) GTEST_SKIP() << missing;
  const Finished compiled = RunChild(
      kPowerShell + "-Command \"$text = [IO.File]::ReadAllText((Resolve-Path '" + kScript +
      "')); [void][ScriptBlock]::Create($text); "
      "Add-Type -TypeDefinition ([regex]::Match($text, '(?s)@.\\r?\\n(.*?)\\r?\\n.@').Groups[1].Value); "
      "[SimpleMapi].GetMethod('Send').GetParameters().Count\"");
  EXPECT_EQ(compiled.code, 0u);
  EXPECT_TRUE(compiled.output.starts_with("5")) << compiled.output;
}

}  // namespace
}  // namespace system_tests
