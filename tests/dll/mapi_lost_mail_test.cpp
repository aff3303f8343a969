// Simple MAPI: what the user sees of a mail that does not reach the host, and what is left behind then.
#include <thread>

#include "tests/support/import_patch_win.h"
#include "tests/support/mapi_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::mapi;

DWORD g_error = 0;                 // of the call that fails
std::vector<std::string> g_boxes;  // that were shown
bool g_turnIsFree = false;         // while a box shows: other programs may hand over their mails
int g_untilFailure = 0;            // duplications that succeed before one fails

HANDLE Fail() {
  SetLastError(g_error);
  return nullptr;
}
HANDLE WINAPI NoMutex(SECURITY_ATTRIBUTES*, BOOL, LPCSTR) { return Fail(); }
HANDLE WINAPI NoMapping(HANDLE, SECURITY_ATTRIBUTES*, DWORD, DWORD, DWORD, LPCSTR) { return Fail(); }
void* WINAPI NoView(HANDLE, DWORD, DWORD, DWORD, SIZE_T) { return Fail(); }
HANDLE WINAPI NoProcess(DWORD, BOOL, DWORD) { return Fail(); }
BOOL WINAPI PostFails(HWND, UINT, WPARAM, LPARAM) { return Fail() != nullptr; }
LRESULT WINAPI NoAnswer(HWND, UINT, WPARAM, LPARAM, UINT, UINT, DWORD_PTR*) {
  SetLastError(ERROR_TIMEOUT);
  return 0;
}
BOOL WINAPI DuplicateFails(HANDLE from, HANDLE handle, HANDLE to, HANDLE* duplicate, DWORD access,
                           BOOL inherit, DWORD options) {
  const bool closes = (options & DUPLICATE_CLOSE_SOURCE) != 0;
  if (!closes && g_untilFailure-- <= 0) return Fail() != nullptr;
  return DuplicateHandle(from, handle, to, duplicate, access, inherit, options);
}

int WINAPI RecordBox(HWND owner, LPCSTR text, LPCSTR caption, UINT type) {
  EXPECT_EQ(owner, nullptr);
  EXPECT_EQ(caption, nullptr);
  EXPECT_EQ(type, UINT{MB_ICONHAND | MB_SYSTEMMODAL});
  g_boxes.emplace_back(text);
  std::thread([] {
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, "Wrenfold_CommandLine");
    g_turnIsFree = WaitForSingleObject(mutex, 0) == WAIT_OBJECT_0;
    if (g_turnIsFree) ReleaseMutex(mutex);
    CloseHandle(mutex);
  }).join();
  return IDOK;
}

void SendBoth() {
  MapiMessage message{};
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  EXPECT_EQ(MAPISendDocuments(0, nullptr, Mutable("p"), nullptr, 0), 0u);
}

constexpr char kDenied[] =
    "TamarinMail cannot be reached from this program, and the mail is lost. If TamarinMail runs as an "
    "administrator, close it and start it as usual, then send the mail again.";
constexpr char kFailed[] =
    "The mail could not be handed over to TamarinMail and is lost (error %). Please send it again.";

TEST_F(Mapi, AMailThatCannotBeHandedOverIsToldByABoxThatKeepsNobodyWaiting) {
  MapiHost mapi;
  const ImportPatch boxes("USER32.dll", "MessageBoxA", &RecordBox);
  const auto expect = [&](DWORD error, std::string text, const char* why) {
    g_error = error;
    g_boxes.clear();
    g_untilFailure = 0;
    g_turnIsFree = false;
    SendBoth();
    if (text.find('%') != text.npos) text.replace(text.find('%'), 1, std::to_string(error));
    EXPECT_EQ(g_boxes, std::vector<std::string>(2, text)) << why;
    EXPECT_TRUE(g_turnIsFree) << why;
  };
  {
    const ImportPatch patch("KERNEL32.dll", "CreateFileMappingA", &NoMapping);
    expect(ERROR_COMMITMENT_LIMIT, kFailed, "no shared memory");
  }
  {
    const ImportPatch patch("KERNEL32.dll", "MapViewOfFile", &NoView);
    expect(ERROR_NOT_ENOUGH_MEMORY, kFailed, "no room for it here");
  }
  {
    const ImportPatch patch("KERNEL32.dll", "OpenProcess", &NoProcess);
    expect(ERROR_ACCESS_DENIED, kDenied, "a host of higher integrity");
    mapi.host.SetLanguage(Language::kJapanese);
    expect(ERROR_ACCESS_DENIED,
           Sjis(u8"このプログラムからはタマリンメールに接続できないため、メールを渡せませんでした。"
                u8"タマリンメールを管理者として実行している場合は、終了して通常どおり起動してから、"
                u8"もう一度送信してください。"),
           "in Japanese");
    mapi.host.SetLanguage(Language::kEnglish);
    expect(ERROR_INVALID_PARAMETER, kFailed, "a host that has just ended");
  }
  {
    const ImportPatch patch("KERNEL32.dll", "DuplicateHandle", &DuplicateFails);
    expect(ERROR_ACCESS_DENIED, kDenied, "a host that takes no handles");
    mapi.host.SetLanguage(Language::kJapanese);
    expect(ERROR_NO_SYSTEM_RESOURCES,
           Sjis(u8"メールをタマリンメールに渡せませんでした (エラー %)。もう一度送信してください。"),
           "in Japanese");
  }
  EXPECT_TRUE(mapi.lines.empty());
}

TEST_F(Mapi, WithoutATurnFromTheSystemOrAnAnswerInTimeNothingIsToldButToTheLog) {
  MapiHost mapi;
  const LogLines log;
  const ImportPatch boxes("USER32.dll", "MessageBoxA", &RecordBox);
  g_boxes.clear();
  g_error = ERROR_ACCESS_DENIED;
  {
    const ImportPatch patch("KERNEL32.dll", "CreateMutexA", &NoMutex);
    SendBoth();
  }
  const std::string no_mutex = "AcquireCommandLineMutex CreateMutex failed code=5";
  EXPECT_EQ(log.Take(),
            (std::vector<std::string>{"MAPISendMail64", no_mutex, "MAPISendDocuments64", no_mutex}));
  {
    const ImportPatch patch("USER32.dll", "SendMessageTimeoutA", &NoAnswer);
    SendBoth();
  }
  EXPECT_EQ(log.Take(), (std::vector<std::string>{"MAPISendMail64", "MAPISendDocuments64"}));
  EXPECT_TRUE(g_boxes.empty());
}

// The host is this process: what stays in it is counted here.
TEST_F(Mapi, ARequestThatFailsLeavesNoHandleInTheHost) {
  MapiHost mapi;
  g_error = ERROR_ACCESS_DENIED;
  const auto left_by = [](int duplications) {
    const auto fail_often = [duplications](int times) {
      for (int i = 0; i < times; ++i) {
        g_untilFailure = duplications;
        EXPECT_EQ(Mapi::Delete(), 2u);
      }
    };
    fail_often(2);
    const int before = OpenHandles();
    fail_often(20);
    return OpenHandles() - before;
  };
  {
    const ImportPatch patch("USER32.dll", "PostMessageA", &PostFails);
    EXPECT_LE(left_by(2), 2) << "mapping and event, the request cannot be posted";
  }
  {
    const ImportPatch patch("KERNEL32.dll", "DuplicateHandle", &DuplicateFails);
    EXPECT_LE(left_by(1), 2) << "the mapping, the event cannot be handed over";
    EXPECT_LE(left_by(0), 2) << "nothing handed over at all";
  }
  EXPECT_TRUE(mapi.kinds.empty());
}

}  // namespace
}  // namespace wfinfo_test
