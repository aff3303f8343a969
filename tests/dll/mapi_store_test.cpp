// Simple MAPI: finding, reading and deleting mails of the host's store.
#include <cstring>

#include "tests/support/import_patch_win.h"
#include "tests/support/mapi_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::mapi;

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
  const LogLines log;
  char found[512];
  lpMapiMessage message = nullptr;
  EXPECT_EQ(MAPIFindNext(0, 0, nullptr, nullptr, 0, 0, found), 2u);
  EXPECT_EQ(MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message), 2u);
  EXPECT_EQ(MAPIDeleteMail(0, 0, Mutable("id"), 0, 0), 2u);
  EXPECT_EQ(log.Take(),
            (std::vector<std::string>{"MAPIFindNext64", "Wrenfold not found.", "MAPIReadMail64",
                                      "Wrenfold not found.", "MAPIDeleteMail64", "Wrenfold not found."}));
}

TEST_F(Mapi, NoHandleIsLeftBehind) {
  MapiHost mapi;
  const auto round = [&] {
    Send(mapi, "s", "n");
    MAPISendDocuments(0, nullptr, Mutable("p"), nullptr, 0);
    mapi.answer = [](const Block& block) { block.as<StoreHead>().result = 16; };
    char found[512];
    OnOtherThread([&] { MAPIFindNext(0, 0, nullptr, nullptr, 0, 0, found); });
    Delete();
    mapi.answer = [](const Block& block) { AnswerWithImage(block, "", sizeof(MapiMessage)); };
    lpMapiMessage message = nullptr;
    OnOtherThread([&] { MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message); });
    MAPIFreeBuffer(message);
    mapi.answer = [](const Block& block) { AnswerWithImage(block, "", 0x7FFFFFFF); };
    OnOtherThread([&] { MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message); });
  };
  round();
  const int before = OpenHandles();
  for (int i = 0; i < 20; ++i) round();
  EXPECT_LE(OpenHandles(), before + 2);
}

template <class Value>
Value At(const Block& block, std::size_t offset) {
  Value value;
  std::memcpy(&value, block.bytes() + offset, sizeof value);
  return value;
}

// Numbers, not the library's own records: what hosts read.
TEST_F(Mapi, TheBlocksLieAsHostsReadThem) {
  MapiHost mapi;
  mapi.answer = [](const Block& block) {
    EXPECT_EQ(At<std::uint32_t>(block, 4), 0u);
    EXPECT_NE(At<std::uint64_t>(block, 8), 0u);
    EXPECT_EQ(At<std::uint32_t>(block, 16), 1u);
    EXPECT_STREQ(block.bytes() + 20, "seed");
    std::memcpy(block.bytes() + 276, "found", 6);
    std::memcpy(block.bytes(), "\x10\0\0\0", 4);
  };
  char found[512];
  ULONG code = 99;
  OnOtherThread([&] { code = MAPIFindNext(0, 0, nullptr, Mutable("seed"), MAPI_UNREAD_ONLY, 0, found); });
  EXPECT_EQ(code, 16u);
  EXPECT_STREQ(found, "found");

  mapi.answer = [](const Block& block) {
    EXPECT_NE(At<std::uint64_t>(block, 8), 0u);
    EXPECT_STREQ(block.bytes() + 16, "id");
    EXPECT_EQ(At<std::uint32_t>(block, 272), GetCurrentProcessId());
    EXPECT_EQ(At<std::uint32_t>(block, 276), 0x12345678u);
    EXPECT_EQ(At<std::uint64_t>(block, 280), 0u);
    const HANDLE image = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, nullptr);
    auto* const view = static_cast<char*>(MapViewOfFile(image, FILE_MAP_ALL_ACCESS, 0, 0, 0));
    view[8] = 100;  // the subject's offset
    std::memcpy(view + 100, "Hi", 3);
    UnmapViewOfFile(view);
    std::memcpy(block.bytes() + 280, &image, 8);
    block.bytes()[288] = 103;
  };
  lpMapiMessage message = nullptr;
  OnOtherThread([&] { code = MAPIReadMail(0, 0, Mutable("id"), 0x12345678, 0, &message); });
  EXPECT_EQ(code, 0u);
  ASSERT_NE(message, nullptr);
  EXPECT_STREQ(message->lpszSubject, "Hi");
  MAPIFreeBuffer(message);

  mapi.answer = [](const Block& block) {
    EXPECT_STREQ(block.bytes() + 16, "id");
    block.bytes()[0] = 26;
  };
  EXPECT_EQ(Delete(), 26u);
  EXPECT_EQ(mapi.kinds, (std::vector<unsigned>{0, 1, 2}));
}

TEST_F(Mapi, ResultsGoIntoTheCallersMemoryAndNotBeyond) {
  MapiHost mapi;
  mapi.answer = [](const Block& block) { std::memset(block.as<FindNextBlock>().found, 'f', 260); };
  const Guarded found(260);
  ULONG code = 99;
  OnOtherThread([&] { code = MAPIFindNext(0, 0, nullptr, nullptr, 0, 0, found.get()); });
  EXPECT_EQ(code, 0u);
  EXPECT_EQ(found.get(), std::string(259, 'f')) << "terminated for a host that forgot it";
}

TEST_F(Mapi, WhereNothingCanBeWrittenNothingIs) {
  MapiHost mapi;
  void* const nowhere = Mutable(kNumberForText);
  ULONG code = 99;
  OnOtherThread([&] { code = MAPIFindNext(0, 0, nullptr, nullptr, 0, 0, static_cast<char*>(nowhere)); });
  EXPECT_EQ(code, 0u);
  mapi.answer = [](const Block& block) { AnswerWithImage(block, "", sizeof(MapiMessage)); };
  for (void* const where : {nowhere, static_cast<void*>(nullptr)}) {
    OnOtherThread(
        [&] { code = MAPIReadMail(0, 0, Mutable("id"), 0, 0, static_cast<lpMapiMessage*>(where)); });
    EXPECT_EQ(code, 0u);
  }
  EXPECT_EQ(MAPIResolveName(0, 0, Mutable("a@b"), 0, 0, static_cast<lpMapiRecipDesc*>(nowhere)), 14u);
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, 0, 0, static_cast<LPLHANDLE>(nowhere)), 0u);
}

TEST_F(Mapi, TheLogTellsWhatWasReadAndFound) {
  MapiHost mapi;
  const LogLines log;
  mapi.answer = [](const Block& block) { block.as<StoreHead>().result = 16; };
  char found[512];
  OnOtherThread([&] { MAPIFindNext(0, 0, nullptr, nullptr, MAPI_GUARANTEE_FIFO, 0, found); });
  EXPECT_EQ(log.Take(),
            (std::vector<std::string>{"MAPIFindNext64", "MAPI_GUARANTEE_FIFO", "MAPIFindNext code = 16"}));
  for (const ULONG files : {2u, 0u}) {
    mapi.answer = [files](const Block& block) {
      struct {
        MapiMessage message;
        MapiFileDesc files[2];
        char texts[16];
      } image{};
      const auto text = [](std::size_t at) { return reinterpret_cast<LPSTR>(sizeof image - 16 + at); };
      std::memcpy(image.texts, "subj\0p1\0p2", 11);
      image.message.lpszSubject = text(0);
      image.message.nFileCount = files;
      image.message.lpFiles = reinterpret_cast<lpMapiFileDesc>(sizeof image.message);
      image.files[0].lpszPathName = text(5);
      image.files[1].lpszPathName = text(8);
      AnswerWithImage(block, {reinterpret_cast<const char*>(&image), sizeof image}, sizeof image);
    };
    lpMapiMessage message = nullptr;
    OnOtherThread([&] { MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message); });
    MAPIFreeBuffer(message);
    const std::string last = "MAPIReadMail: xx Converted. Subject=subj, cb=192";
    const std::vector<std::string> with = {"MAPIReadMail64",
                                           "MAPIReadMail: attach files exist.",
                                           "MAPIReadMail: file count=2",
                                           "p1",
                                           "p2",
                                           last,
                                           "MAPIFreeBuffer64",
                                           "ret"};
    const std::vector<std::string> without = {"MAPIReadMail64", "MAPIReadMail: no attach files.", last,
                                              "MAPIFreeBuffer64", "ret"};
    EXPECT_EQ(log.Take(), files > 0 ? with : without);
  }
}

// --- System calls that fail ---

BOOL WINAPI PostFails(HWND, UINT, WPARAM, LPARAM) { return FALSE; }
DWORD WINAPI WaitEndsOddly(HANDLE, DWORD) { return WAIT_ABANDONED; }
HLOCAL WINAPI NoMemory(UINT, SIZE_T) { return nullptr; }

TEST_F(Mapi, ARequestThatCannotBePostedFails) {
  MapiHost mapi;
  const LogLines log;
  const ImportPatch patch("USER32.dll", "PostMessageA", &PostFails);
  EXPECT_EQ(Delete(), 2u);
  EXPECT_EQ(log.Take(), (std::vector<std::string>{"MAPIDeleteMail64", "PostMessage failed."}));
}

TEST_F(Mapi, AWaitThatEndsOddlyFails) {
  MapiHost mapi;
  const LogLines log;
  const ImportPatch patch("KERNEL32.dll", "WaitForSingleObject", &WaitEndsOddly);
  EXPECT_EQ(Delete(), 2u);
  EXPECT_EQ(log.Take(), (std::vector<std::string>{"MAPIDeleteMail64", "WaitForSingleObject code = 128"}));
}

TEST_F(Mapi, WithoutMemoryForItNoMessageIsHandedOut) {
  MapiHost mapi;
  mapi.answer = [](const Block& block) { AnswerWithImage(block, "", sizeof(MapiMessage)); };
  const ImportPatch patch("KERNEL32.dll", "LocalAlloc", &NoMemory);
  lpMapiMessage message = nullptr;
  ULONG code = 99;
  OnOtherThread([&] { code = MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message); });
  EXPECT_EQ(code, 2u);
  EXPECT_EQ(message, nullptr);
  lpMapiRecipDesc recipient = nullptr;
  EXPECT_EQ(MAPIResolveName(0, 0, Mutable("a@b"), 0, 0, &recipient), 14u);
  EXPECT_EQ(recipient, nullptr);
}

}  // namespace
}  // namespace wfinfo_test
