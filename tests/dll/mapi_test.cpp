// Simple MAPI against a scripted host: what crosses the border, what the caller gets, how long he waits.
#define WFINFO_NO_MAPI
// clang-format off
#include <windows.h>
#include <mapi.h>  // needs the one above
// clang-format on

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "mapi/host_blocks.h"
#include "support/library.h"
#include "support/scripted_host_win.h"
#include "support/temp_folder_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::mapi;

constexpr char kConfig[] = "Software\\Quenby\\Wrenfold\\Config";

char* Mutable(const char* text) { return const_cast<char*>(text); }

// A text that ends right before memory that cannot be read.
class Guarded {
 public:
  explicit Guarded(const std::string& text) {
    constexpr std::size_t kPage = 4096;
    const std::size_t pages = (text.size() + kPage) / kPage;
    base_ = static_cast<char*>(VirtualAlloc(nullptr, (pages + 1) * kPage, MEM_RESERVE, PAGE_NOACCESS));
    VirtualAlloc(base_, pages * kPage, MEM_COMMIT, PAGE_READWRITE);
    text_ = base_ + pages * kPage - text.size() - 1;
    std::memcpy(text_, text.c_str(), text.size() + 1);
  }
  ~Guarded() { VirtualFree(base_, 0, MEM_RELEASE); }
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;
  char* get() const { return text_; }

 private:
  char* base_;
  char* text_;
};

// A mapping handle that the library handed over, open here.
class Block {
 public:
  explicit Block(HANDLE mapping)
      : mapping_(mapping), view_(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0)) {}
  ~Block() {
    UnmapViewOfFile(view_);
    CloseHandle(mapping_);
  }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  char* bytes() const { return static_cast<char*>(view_); }
  template <class Layout>
  Layout& as() const {
    return *static_cast<Layout*>(view_);
  }

 private:
  HANDLE mapping_;
  void* view_;
};

// Posted by a test to the frame, whose thread alone may destroy its windows.
constexpr UINT kClosePopup = WM_APP + 9;

// The host's side of the two exchanges.
class MapiHost {
 public:
  MapiHost() {
    host.hook = [this](HWND, UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
      if (message == kPassCommandLine) {
        EXPECT_EQ(lparam, 1);
        const Block block(reinterpret_cast<HANDLE>(wparam));
        EXPECT_EQ(*reinterpret_cast<std::uint64_t*>(block.bytes()), 0u);
        lines.emplace_back(block.bytes() + 8);
        if (window != nullptr) *reinterpret_cast<HWND*>(block.bytes()) = window;
        *result = 1;
        return true;
      }
      if (message == kStoreRequest) {
        const Block block(reinterpret_cast<HANDLE>(lparam));
        EXPECT_EQ(block.as<StoreHead>().reserved, 0u);
        kinds.push_back(static_cast<unsigned>(wparam));
        event = reinterpret_cast<HANDLE>(block.as<StoreHead>().event);
        if (answer) answer(block);
        if (answers) Signal();
        return true;
      }
      if (message == kClosePopup) {
        EnableWindow(host.frame(), TRUE);
        DestroyWindow(GetLastActivePopup(host.frame()));
        return true;
      }
      return false;
    };
  }
  void Signal() {
    SetEvent(event);
    CloseHandle(event);
    event = nullptr;
  }

  ScriptedHost host;
  std::vector<std::string> lines;
  std::vector<unsigned> kinds;
  std::function<void(const Block&)> answer;
  bool answers = true;
  HANDLE event = nullptr;
  HWND window = nullptr;
};

class Mapi : public testing::Test {
 protected:
  void SetUp() override { RegDeleteKeyA(HKEY_CURRENT_USER, kConfig); }
  void TearDown() override { RegDeleteKeyA(HKEY_CURRENT_USER, kConfig); }
  static void Set(const char* name, DWORD type, const void* data, std::size_t size) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kConfig, name, type, data, static_cast<DWORD>(size));
  }
  static void SetMode(DWORD mode) { Set("MapiSend", REG_DWORD, &mode, sizeof mode); }

  static std::string Send(MapiHost& mapi, const char* subject, const char* note, FLAGS flags = 0) {
    char address[] = "SMTP:a@b.c";
    MapiRecipDesc recipient{};
    recipient.ulRecipClass = MAPI_TO;
    recipient.lpszAddress = address;
    MapiMessage message{};
    message.lpszSubject = Mutable(subject);
    message.lpszNoteText = Mutable(note);
    message.nRecipCount = 1;
    message.lpRecips = &recipient;
    mapi.lines.clear();
    EXPECT_EQ(MAPISendMail(0, 0, &message, flags, 0), 0u);
    EXPECT_EQ(mapi.lines.size(), 1u);
    return mapi.lines.empty() ? "" : mapi.lines[0];
  }
};

TEST_F(Mapi, TheSettingChoosesTheCommandWord) {
  MapiHost mapi;
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec")
      << "nothing set; no signature for that";
  SetMode(0);
  EXPECT_EQ(Send(mapi, "s", "n"), "sendnow Subject=s body=n To=a@b%2Ec");
  SetMode(1);
  EXPECT_EQ(Send(mapi, "s", "n"), "unsentmail Subject=s body=n To=a@b%2Ec");
  SetMode(7);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec");
  Set("MapiSend", REG_BINARY, "\0\0\0", 4);
  EXPECT_EQ(Send(mapi, "s", "n").substr(0, 8), "sendnow ") << "the type is not looked at";
  Set("MapiSend", REG_BINARY, "\0\0", 2);
  EXPECT_EQ(Send(mapi, "s", "n").substr(0, 8), "newmail ") << "another size counts as nothing";
  Set("MapiSend", REG_BINARY, "\0\0\0\0\0\0\0", 8);
  EXPECT_EQ(Send(mapi, "s", "n").substr(0, 8), "newmail ");
}

TEST_F(Mapi, WhatForcesTheDialogAsksForASignatureToo) {
  MapiHost mapi;
  SetMode(0);
  EXPECT_EQ(Send(mapi, "s", nullptr), "newmail Subject=s To=a@b%2Ec template=1 sign=1");
  EXPECT_EQ(Send(mapi, nullptr, "n"), "newmail body=n To=a@b%2Ec sign=1");
  EXPECT_EQ(Send(mapi, "s", "n", MAPI_DIALOG), "newmail Subject=s body=n To=a@b%2Ec sign=1");
  MapiMessage message{};
  message.lpszSubject = Mutable("s");
  message.lpszNoteText = Mutable("n");
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  EXPECT_EQ(mapi.lines.back(), "newmail Subject=s body=n sign=1");
}

TEST_F(Mapi, TheMacroBelongsToTheNewMailWindowThatTheSettingAsksFor) {
  MapiHost mapi;
  Set("MapiSendMacro", REG_SZ, "a b", 4);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Macro=a%20b Subject=s body=n To=a@b%2Ec");
  for (const DWORD mode : {0u, 1u}) {
    SetMode(mode);
    EXPECT_EQ(Send(mapi, "s", nullptr), "newmail Subject=s To=a@b%2Ec template=1 sign=1") << mode;
  }
  SetMode(2);
  const std::string longest(259, 'm');
  Set("MapiSendMacro", REG_SZ, longest.c_str(), longest.size() + 1);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Macro=" + longest + " Subject=s body=n To=a@b%2Ec");
  const std::string longer(260, 'm');
  Set("MapiSendMacro", REG_SZ, longer.c_str(), longer.size() + 1);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec");
}

TEST_F(Mapi, SubjectAndTextBecomeHostText) {
  MapiHost mapi;
  const auto utf8 = [](std::u8string_view text) { return std::string(text.begin(), text.end()); };
  const std::string japanese = Sjis(u8"日本語");
  EXPECT_EQ(Send(mapi, utf8(u8"日本語").c_str(), utf8(u8"é").c_str()),
            "newmail Subject=" + japanese + " body=\x1A\xE9\x80\x85 To=a@b%2Ec");
  EXPECT_EQ(Send(mapi, japanese.c_str(), "plain"), "newmail Subject=" + japanese + " body=plain To=a@b%2Ec");
}

TEST_F(Mapi, MissingAndUnreadableMembersAreNoHarm) {
  MapiHost mapi;
  EXPECT_EQ(MAPISendMail(0, 0, nullptr, 0, 0), 0u);
  MapiMessage message{};
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  message.nRecipCount = 3;
  message.nFileCount = 3;
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  message.lpRecips = reinterpret_cast<lpMapiRecipDesc>(123);
  message.lpFiles = reinterpret_cast<lpMapiFileDesc>(123);
  message.lpszSubject = Mutable(kNumberForText);
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  EXPECT_EQ(MAPISendMail(0, 0, reinterpret_cast<lpMapiMessage>(123), 0, 0), 0u);
  EXPECT_EQ(mapi.lines, std::vector<std::string>(5, "newmail template=1 sign=1"));
  EXPECT_EQ(MAPISendDocuments(0, nullptr, nullptr, nullptr, 0), 0u);
  EXPECT_EQ(MAPISendDocuments(0, Mutable(";"), Mutable(""), nullptr, 0), 0u);
  EXPECT_EQ(mapi.lines.size(), 5u) << "no paths, no mail";
}

TEST_F(Mapi, TextsAreReadToTheirEndAndNotBeyond) {
  MapiHost mapi;
  const Guarded subject("s"), note("n"), name("Jo"), address("SMTP:x"), path("C:\\a"), file_name("a"),
      paths("p;q"), mark(";");
  MapiRecipDesc recipient{0, MAPI_CC, name.get(), address.get(), 0, nullptr};
  MapiFileDesc file{0, 0, 0, path.get(), file_name.get(), nullptr};
  MapiMessage message{};
  message.lpszSubject = subject.get();
  message.lpszNoteText = note.get();
  message.nRecipCount = message.nFileCount = 1;
  message.lpRecips = &recipient;
  message.lpFiles = &file;
  MAPISendMail(0, 0, &message, 0, 0);
  MAPISendDocuments(0, mark.get(), paths.get(), nullptr, 0);
  EXPECT_EQ(mapi.lines, (std::vector<std::string>{"newmail Subject=s body=n Cc=Jo%20%3Cx%3E Attach=C%3A\\a*a",
                                                  "newmail attach=\"p\" attach=\"q\" template=1 sign=1"}));
}

TEST_F(Mapi, TheWindowThatTheHostNamesComesToTheFront) {
  MapiHost mapi;
  mapi.window = mapi.host.OpenWindow("STATIC", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  SetForegroundWindow(mapi.host.frame());
  Send(mapi, "s", "n");
  EXPECT_EQ(GetForegroundWindow(), mapi.window);
}

TEST_F(Mapi, AMutexThatItsOwnerLeftBehindIsTaken) {
  MapiHost mapi;
  HANDLE mutex = nullptr;
  std::thread([&] { mutex = CreateMutexA(nullptr, TRUE, "Wrenfold_CommandLine"); }).join();
  Send(mapi, "s", "n");
  EXPECT_EQ(WaitForSingleObject(mutex, 0), WAIT_OBJECT_0) << "released after the hand-off";
  ReleaseMutex(mutex);
  CloseHandle(mutex);
}

TEST_F(Mapi, AStuckHandOffIsWaitedForAsLongAsThisProcessMayAndTwoCallersShareOneBox) {
  MapiHost mapi;
  const HANDLE mutex = CreateMutexA(nullptr, TRUE, "Wrenfold_CommandLine");
  std::vector<std::string> titles;
  std::atomic<bool> stop{false};
  const DWORD start = GetTickCount();
  DWORD box_after = 0;
  std::thread watcher([&] {
    while (!stop) {
      const HWND box = FindWindowA(nullptr, "Wrenfold.exe command-line error");
      if (box != nullptr) {
        box_after = GetTickCount() - start;
        Sleep(2000);  // the second caller must find the box open
        HWND next = nullptr;
        while ((next = FindWindowExA(nullptr, next, nullptr, "Wrenfold.exe command-line error")) != nullptr) {
          titles.push_back("box");
        }
        PostMessageA(box, WM_COMMAND, IDOK, 0);
        return;
      }
      Sleep(20);
    }
  });
  const auto send = [] {
    MapiMessage message{};
    MAPISendMail(0, 0, &message, 0, 0);
  };
  OnOtherThread([&] {
    std::thread second([&] {
      Sleep(500);
      send();
    });
    send();
    second.join();
  });
  stop = true;
  watcher.join();
  const DWORD expected = CommandLineWaitMs(GetCurrentProcessId());
  EXPECT_GE(box_after + 50, expected);
  EXPECT_LT(box_after, expected + 2000);
  EXPECT_EQ(titles, std::vector<std::string>{"box"});
  EXPECT_TRUE(mapi.lines.empty());
  ReleaseMutex(mutex);
  CloseHandle(mutex);
}

// --- The host's store ---

TEST_F(Mapi, FindNextFillsInTheBlockAndTheCallersBuffer) {
  MapiHost mapi;
  mapi.answer = [](const Block& block) {
    auto& request = block.as<FindNextBlock>();
    EXPECT_EQ(request.unread_only, 1u);
    EXPECT_STREQ(request.seed, "seed");
    std::memset(request.found, 'f', 259);
    request.found[259] = '\0';
    request.head.result = 0;
  };
  char found[512];
  ULONG code = 99;
  const Guarded seed("seed");
  OnOtherThread([&] {
    code = MAPIFindNext(0, 0, Mutable("type"), seed.get(), MAPI_UNREAD_ONLY | MAPI_GUARANTEE_FIFO, 0, found);
  });
  EXPECT_EQ(code, 0u);
  EXPECT_EQ(found, std::string(259, 'f'));
  mapi.answer = [](const Block& block) {
    EXPECT_EQ(block.as<FindNextBlock>().unread_only, 0u);
    EXPECT_STREQ(block.as<FindNextBlock>().seed, "");
    block.as<StoreHead>().result = 16;
  };
  OnOtherThread([&] { code = MAPIFindNext(0, 0, nullptr, nullptr, 0, 0, nullptr); });
  EXPECT_EQ(code, 16u);
  EXPECT_EQ(mapi.kinds, (std::vector<unsigned>{0, 0}));
}

TEST_F(Mapi, IdentifiersAreCutBetweenCharacters) {
  const struct {
    std::string identifier;
    std::size_t kept;
    const char* why;
  } cases[] = {
      {std::string(255, 'a'), 255, "fits"},
      {std::string(300, 'a'), 255, "cut"},
      {std::string(254, 'a') + "\x83\x5C" + std::string(20, 'b'), 254, "lead byte at 254"},
      {std::string(253, 'a') + "\x1A\xE9\x80\x85" + std::string(20, 'b'), 253, "escape at 253"},
  };
  MapiHost mapi;
  for (const auto& row : cases) {
    mapi.answer = [&](const Block& block) {
      EXPECT_EQ(std::string(block.as<DeleteBlock>().identifier), row.identifier.substr(0, row.kept))
          << row.why;
      block.as<StoreHead>().result = 17;
    };
    ULONG code = 99;
    const Guarded identifier(row.identifier);
    OnOtherThread([&] { code = MAPIDeleteMail(0, 0, identifier.get(), 0, 0); });
    EXPECT_EQ(code, 17u);
  }
  EXPECT_EQ(mapi.kinds, std::vector<unsigned>(4, 2));
}

// Puts `bytes` into a mapping of the caller, as a host does.
void AnswerWithImage(const Block& block, const std::string& bytes, std::uint32_t size) {
  auto& request = block.as<ReadBlock>();
  EXPECT_EQ(request.caller_process, GetCurrentProcessId());
  EXPECT_EQ(request.image, 0u);
  const HANDLE image = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, nullptr);
  void* const view = MapViewOfFile(image, FILE_MAP_ALL_ACCESS, 0, 0, 0);
  std::memcpy(view, bytes.data(), bytes.size());
  UnmapViewOfFile(view);
  request.image = reinterpret_cast<std::uint64_t>(image);
  request.image_size = size;
}

TEST_F(Mapi, AReadMessageIsTheCallersOwn) {
  MapiHost mapi;
  mapi.answer = [](const Block& block) {
    EXPECT_STREQ(block.as<ReadBlock>().identifier, "id");
    EXPECT_EQ(block.as<ReadBlock>().flags, 0x12345u);
    MapiMessage message{};
    message.lpszSubject = reinterpret_cast<LPSTR>(sizeof message);
    message.nRecipCount = 5000;  // more than the image holds
    message.lpRecips = reinterpret_cast<lpMapiRecipDesc>(sizeof message);
    std::string bytes(reinterpret_cast<const char*>(&message), sizeof message);
    AnswerWithImage(block, bytes + "subject", static_cast<std::uint32_t>(bytes.size() + 7));
    block.as<StoreHead>().result = 3;
  };
  lpMapiMessage message = nullptr;
  ULONG code = 99;
  OnOtherThread([&] { code = MAPIReadMail(0, 0, Mutable("id"), 0x12345, 0, &message); });
  EXPECT_EQ(code, 3u) << "the host's code, with a message";
  ASSERT_NE(message, nullptr);
  EXPECT_STREQ(message->lpszSubject, "subject");
  EXPECT_EQ(message->nRecipCount, 0u);
  EXPECT_EQ(message->lpRecips, nullptr);
  EXPECT_EQ(MAPIFreeBuffer(message), 0u);
}

TEST_F(Mapi, WithoutAMessageTheCallersPointerStays) {
  MapiHost mapi;
  mapi.answer = [](const Block& block) { block.as<StoreHead>().result = 17; };
  auto* message = reinterpret_cast<lpMapiMessage>(42);
  ULONG code = 99;
  OnOtherThread([&] { code = MAPIReadMail(0, 0, nullptr, 0, 0, &message); });
  EXPECT_EQ(code, 17u);
  EXPECT_EQ(message, reinterpret_cast<lpMapiMessage>(42));
}

TEST_F(Mapi, AnImageThatCannotBeReadIsAFailure) {
  MapiHost mapi;
  lpMapiMessage message = nullptr;
  ULONG code = 99;
  mapi.answer = [](const Block& block) { AnswerWithImage(block, "", 0x7FFFFFFF); };
  OnOtherThread([&] { code = MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message); });
  EXPECT_EQ(code, 2u);
  mapi.answer = [](const Block& block) { block.as<ReadBlock>().image = 0x7FFFFFF0; };
  OnOtherThread([&] { code = MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message); });
  EXPECT_EQ(code, 2u);
  EXPECT_EQ(message, nullptr);
}

TEST_F(Mapi, WithoutAHostStoreCallsFail) {
  char found[512];
  lpMapiMessage message = nullptr;
  EXPECT_EQ(MAPIFindNext(0, 0, nullptr, nullptr, 0, 0, found), 2u);
  EXPECT_EQ(MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message), 2u);
  EXPECT_EQ(MAPIDeleteMail(0, 0, Mutable("id"), 0, 0), 2u);
}

TEST_F(Mapi, NoHandleIsLeftBehind) {
  MapiHost mapi;
  mapi.answer = [](const Block& block) { block.as<StoreHead>().result = 16; };
  const auto round = [&] {
    Send(mapi, "s", "n");
    char found[512];
    OnOtherThread([&] { MAPIFindNext(0, 0, nullptr, nullptr, 0, 0, found); });
  };
  round();
  DWORD before = 0;
  DWORD after = 0;
  GetProcessHandleCount(GetCurrentProcess(), &before);
  for (int i = 0; i < 50; ++i) round();
  GetProcessHandleCount(GetCurrentProcess(), &after);
  EXPECT_LE(after, before + 2);
}

// --- The two dialogs ---

// Waits for a dialog of the library and presses its button.
HWND WaitForDialog(const wchar_t* caption) {
  for (int i = 0; i < 200; ++i) {
    const HWND dialog = FindWindowW(L"#32770", caption);
    if (dialog != nullptr && IsWindowVisible(dialog)) return dialog;
    Sleep(20);
  }
  return nullptr;
}

constexpr wchar_t kBusyCaption[] = L"タマリンメールの処理が終わるのを待っています";
constexpr wchar_t kCallingCaption[] = L"タマリンメールを呼び出しています";

TEST_F(Mapi, WhileTheHostShowsADialogTheUserIsAskedToCloseIt) {
  MapiHost mapi;
  const HWND popup = mapi.host.OpenDialog(mapi.host.frame(), true);
  ASSERT_EQ(GetLastActivePopup(mapi.host.frame()), popup);
  ULONG code = 99;
  OnOtherThread([&] {
    std::thread user([&] {
      const HWND dialog = WaitForDialog(kBusyCaption);
      EXPECT_NE(dialog, nullptr);
      PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    user.join();
  });
  EXPECT_EQ(code, 2u) << "given up";
  EXPECT_TRUE(mapi.kinds.empty());
  mapi.answer = [](const Block& block) { block.as<StoreHead>().result = 0; };
  OnOtherThread([&] {
    std::thread user([&] {
      EXPECT_NE(WaitForDialog(kBusyCaption), nullptr);
      PostMessageA(mapi.host.frame(), kClosePopup, 0, 0);
    });
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    user.join();
  });
  EXPECT_EQ(code, 0u) << "goes on when the host is free";
}

TEST_F(Mapi, ASlowHostIsWaitedForUntilTheUserGivesUp) {
  MapiHost mapi;
  mapi.answers = false;
  ULONG code = 99;
  DWORD elapsed = 0;
  OnOtherThread([&] {
    std::thread user([&] {
      const HWND dialog = WaitForDialog(kCallingCaption);
      EXPECT_NE(dialog, nullptr);
      PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    const DWORD start = GetTickCount();
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    elapsed = GetTickCount() - start;
    user.join();
  });
  EXPECT_EQ(code, 2u);
  EXPECT_GE(elapsed, 990u);
  mapi.Signal();  // too late: into a block that nobody looks at any more
  OnOtherThread([&] {
    std::thread user([&] {
      EXPECT_NE(WaitForDialog(kCallingCaption), nullptr);
      mapi.Signal();
    });
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    user.join();
  });
  EXPECT_EQ(code, 0u) << "answered while the dialog showed";
}

TEST_F(Mapi, AHostThatGoesAwayEndsTheWait) {
  MapiHost mapi;
  mapi.answers = false;
  ULONG code = 99;
  OnOtherThread([&] {
    std::thread user([&] {
      EXPECT_NE(WaitForDialog(kCallingCaption), nullptr);
      PostMessageA(mapi.host.frame(), WM_CLOSE, 0, 0);
    });
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    user.join();
  });
  EXPECT_EQ(code, 2u);
  CloseHandle(mapi.event);
}

// --- Sessions, names, what is not supported ---

TEST_F(Mapi, ALogonFindsTheRunningHostAndLeavesItRunning) {
  ScriptedHost host;
  LHANDLE session = 0;
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, 0, 0, &session), 0u);
  EXPECT_EQ(reinterpret_cast<HWND>(session), host.frame());
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, 0, 0, nullptr), 0u);
  host.ExpectCommand(40143);
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, MAPI_FORCE_DOWNLOAD, 0, &session), 0u);
  host.Verify();
  EXPECT_EQ(MAPILogoff(session, 0, 0, 0), 0u);
  MSG message;
  EXPECT_FALSE(PeekMessageA(&message, host.frame(), WM_CLOSE, WM_CLOSE, PM_NOREMOVE));
}

TEST_F(Mapi, NamesAreResolvedOnTheSpot) {
  const struct {
    std::string text;
    std::string name;
    std::string address;
  } cases[] = {{"jo@x.jp", "", "jo@x.jp"},
               {"Jo <jo@x.jp>", "Jo", "jo@x.jp"},
               {Sjis(u8"山田") + " <y@x.jp>", Sjis(u8"山田"), "y@x.jp"}};
  for (const auto& row : cases) {
    const Guarded text(row.text);
    lpMapiRecipDesc recipient = nullptr;
    ASSERT_EQ(MAPIResolveName(0, 0, text.get(), MAPI_DIALOG, 0, &recipient), 0u) << row.text;
    EXPECT_EQ(recipient->ulRecipClass, ULONG{MAPI_TO});
    EXPECT_EQ(recipient->lpszName, row.name);
    EXPECT_EQ(recipient->lpszAddress, row.address);
    EXPECT_EQ(recipient->ulEIDSize, row.address.size());
    EXPECT_EQ(recipient->lpEntryID, recipient->lpszAddress);
    EXPECT_EQ(LocalSize(recipient), 1064u);
    EXPECT_EQ(recipient->lpszName, reinterpret_cast<char*>(recipient) + 40);
    EXPECT_EQ(recipient->lpszAddress, reinterpret_cast<char*>(recipient) + 552);
    MAPIFreeBuffer(recipient);
  }
  for (const char* text : {static_cast<const char*>(nullptr), kNumberForText, "", "a <b", "a <b> c"}) {
    auto* recipient = reinterpret_cast<lpMapiRecipDesc>(42);
    EXPECT_EQ(MAPIResolveName(0, 0, Mutable(text), 0, 0, &recipient), 14u);
    EXPECT_EQ(recipient, reinterpret_cast<lpMapiRecipDesc>(42));
  }
  EXPECT_EQ(MAPIResolveName(0, 0, Mutable("a@b"), 0, 0, nullptr), 14u);
}

TEST_F(Mapi, WhatIsNotSupportedTellsSoAndSucceeds) {
  ScriptedHost host;
  BoxCloser closer;
  EXPECT_EQ(MAPIAddress(0, 0, nullptr, 0, nullptr, 0, nullptr, 0, 0, nullptr, nullptr), 0u);
  EXPECT_EQ(MAPIDetails(0, 0, nullptr, 0, 0), 0u);
  EXPECT_EQ(MAPISaveMail(0, 0, nullptr, 0, 0, nullptr), 0u);
  const auto boxes = closer.boxes();
  ASSERT_EQ(boxes.size(), 3u);
  const char* const names[] = {"MAPIAddress", "MAPIDetails", "MAPISaveMail"};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(boxes[i].text, "TamarinMail: " + std::string(names[i]) +
                                 " called but this MAPI api is not supported by TamarinMail.");
  }
}

TEST_F(Mapi, TheLogTellsWhatWasDone) {
  static std::vector<std::string> lines;
  lines.clear();
  void* services[33] = {};
  services[32] = reinterpret_cast<void*>(+[](const char* text, unsigned number) {
    lines.emplace_back(text);
    EXPECT_EQ(number, 7178u);
  });
  MapiHost mapi;
  GetWFInfoVersion(services);
  Send(mapi, "the subject", "the text");
  EXPECT_EQ(lines, (std::vector<std::string>{"MAPISendMail64", "Addr = SMTP:a@b.c", "subject=the subject",
                                             "body=the text"}));
  lines.clear();
  MAPILogon(0, nullptr, nullptr, 5, 0, nullptr);
  MAPILogoff(0, 0, 0, 0);
  MAPIFreeBuffer(nullptr);
  EXPECT_EQ(lines, (std::vector<std::string>{"MapiLogon64 flFlags=5", "MapiLogon ret", "MAPILogoff64",
                                             "MAPIFreeBuffer64", "ret"}));
  GetWFInfoVersion(nullptr);
}

// --- Starting the host ---

// A copy of the library with a host beside it that starts as it is told.
class Launch : public testing::Test {
 protected:
  void TearDown() override {
    const HWND frame = FindWindowA("WrenfoldFrame", nullptr);
    if (frame != nullptr) {
      PostMessageA(frame, WM_CLOSE, 0, 0);
      for (int i = 0; i < 100 && IsWindow(frame); ++i) Sleep(20);
    }
    if (library_ != nullptr) FreeLibrary(library_);
  }
  void Prepare(const char* start) {
    const std::filesystem::path built = std::filesystem::current_path();
    std::filesystem::copy_file(built / "WFINFO.dll", folder_.WidePath(L"WFINFO.dll"));
    if (start != nullptr) {
      std::filesystem::copy_file(built / "doubles" / "launched_host.exe", folder_.WidePath(L"wrenfold.exe"));
      folder_.Write("start.txt", start);
    }
    library_ = LoadLibraryW(folder_.WidePath(L"WFINFO.dll").c_str());
    ASSERT_NE(library_, nullptr);
    const unsigned english[] = {8, 1};
    reinterpret_cast<void (*)(const void*)>(Proc("NotifyWrenfoldInfo"))(english);
  }
  void* Proc(const char* name) { return reinterpret_cast<void*>(GetProcAddress(library_, name)); }
  // Logs on and tells how long that took.
  ULONG Logon() {
    const DWORD start = GetTickCount();
    const ULONG code = reinterpret_cast<LPMAPILOGON>(Proc("MAPILogon"))(0, nullptr, nullptr, 0, 0, nullptr);
    elapsed_ms_ = GetTickCount() - start;
    return code;
  }
  TempFolder folder_;
  HMODULE library_ = nullptr;
  DWORD elapsed_ms_ = 0;
};

TEST_F(Launch, AHostThatIsReadyIsUsedAtOnceAndClosedAgain) {
  Prepare("0 1 1");
  EXPECT_EQ(Logon(), 0u);
  EXPECT_LT(elapsed_ms_, 5000u);
  const HWND frame = FindWindowA("WrenfoldFrame", nullptr);
  ASSERT_NE(frame, nullptr);
  reinterpret_cast<LPMAPILOGOFF>(Proc("MAPILogoff"))(0, 0, 0, 0);
  for (int i = 0; i < 100 && IsWindow(frame); ++i) Sleep(20);
  EXPECT_FALSE(IsWindow(frame));
}

TEST_F(Launch, WithoutAHostBesideTheLibraryLogonFails) {
  static std::vector<std::string> lines;
  Prepare(nullptr);
  void* services[33] = {};
  services[32] = reinterpret_cast<void*>(+[](const char* text, unsigned) { lines.emplace_back(text); });
  reinterpret_cast<int (*)(void*)>(Proc("GetWFInfoVersion"))(services);
  EXPECT_EQ(Logon(), 2u);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "ExecWrenfold CreateProcess failed code=2");
}

TEST_F(Launch, AHostThatIsNeverReadyIsTakenAfterThreeSeconds) {
  Prepare("0 1 0");
  EXPECT_EQ(Logon(), 0u);
  EXPECT_GE(elapsed_ms_, 3000u);
  EXPECT_LT(elapsed_ms_, 8000u);
}

TEST_F(Launch, AQuestionOfTheHostKeepsTheWaitAlive) {
  Prepare("11000 1 1");
  BoxCloser closer;
  EXPECT_EQ(Logon(), 0u);
  EXPECT_GE(elapsed_ms_, 11000u);
  EXPECT_TRUE(closer.boxes().empty());
}

TEST_F(Launch, FiveSecondsAfterItsLastWindowAHostWithoutAFrameIsGivenUp) {
  Prepare("1000 0 0");
  BoxCloser closer;
  EXPECT_EQ(Logon(), 2u);
  // One second of a window, five without, three of asking a frame that is not there.
  EXPECT_GE(elapsed_ms_, 8800u);
  EXPECT_LT(elapsed_ms_, 14000u);
  const auto boxes = closer.boxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].text, "Failed to launch TamarinMail.");
}

}  // namespace
}  // namespace wfinfo_test
