// Simple MAPI: every byte of what leaves the library. Foreign programs and the host see what they are meant
// to see and zeros, never what lay on a stack or in a heap.
#include <cstring>

#include "tests/support/mapi_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::mapi;

constexpr char kDirt = '\xA5';

// Leaves dirt where the next call has its locals.
__attribute__((noinline)) void DirtyStack() {
  volatile char dirt[65536];
  for (volatile char& byte : dirt) byte = kDirt;
}

// A call on a thread of its own, as callers of the host are, with a dirty stack.
template <class Call>
ULONG Code(Call call) {
  ULONG code = 99;
  OnOtherThread([&] {
    DirtyStack();
    code = call();
  });
  return code;
}

// Bytes that are written down member by member; all others are zero.
class Expected {
 public:
  explicit Expected(std::size_t size) : bytes_(size, '\0') {}
  Expected& Text(std::size_t at, std::string_view text) {
    bytes_.replace(at, text.size(), text);
    return *this;
  }
  template <class Number>
  Expected& Put(std::size_t at, Number number) {
    std::memcpy(bytes_.data() + at, &number, sizeof number);
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

// Where two blocks differ first; "" when they are alike.
std::string Difference(std::string_view found, std::string_view expected) {
  if (found.size() != expected.size()) {
    return std::to_string(found.size()) + " bytes, not " + std::to_string(expected.size());
  }
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (found[i] != expected[i]) {
      return "byte " + std::to_string(i) + " is " + std::to_string(static_cast<unsigned char>(found[i]));
    }
  }
  return "";
}

std::string_view BytesOf(void* record) { return {static_cast<char*>(record), LocalSize(record)}; }

TEST_F(Mapi, AResolvedNameHoldsItsTextsAndNothingElse) {
  const struct {
    std::string text;
    std::string name;
    std::string address;
  } cases[] = {{"jo@x.jp", "", "jo@x.jp"},
               {"Jo <jo@x.jp>", "Jo", "jo@x.jp"},
               {"'Doe, John' <j@x.jp>", "\"Doe, John\"", "j@x.jp"},
               {"\"\"\"Jo\"\"\" <j@x.jp>", "\"Jo\"", "j@x.jp"},
               {std::string(511, 'n') + " <a@x.jp>", std::string(511, 'n'), "a@x.jp"},
               {std::string(511, 'a'), "", std::string(511, 'a')}};
  for (const auto& row : cases) {
    lpMapiRecipDesc recipient = nullptr;
    DirtyStack();
    ASSERT_EQ(MAPIResolveName(0, 0, Mutable(row.text.c_str()), 0, 0, &recipient), 0u) << row.text;
    char* const start = reinterpret_cast<char*>(recipient);
    const Expected expected = Expected(1064)
                                  .Put(4, std::uint32_t{MAPI_TO})
                                  .Put(8, start + 40)
                                  .Put(16, start + 552)
                                  .Put(24, static_cast<std::uint32_t>(row.address.size()))
                                  .Put(32, start + 552)
                                  .Text(40, row.name)
                                  .Text(552, row.address);
    EXPECT_EQ(Difference(BytesOf(recipient), expected.bytes()), "") << row.text;
    MAPIFreeBuffer(recipient);
  }
}

TEST_F(Mapi, StoreRequestsHoldTheirFieldsAndNothingElse) {
  MapiHost mapi;
  const std::string long_text(300, 's');
  mapi.answer = [&](const Block& block) {
    const std::string all = block.All();
    const auto expected = Expected(all.size())
                              .Put(8, block.as<StoreHead>().event)
                              .Put(16, std::uint32_t{1})
                              .Text(20, long_text.substr(0, 255));
    EXPECT_EQ(Difference(all, expected.bytes()), "") << "find";
    std::memcpy(block.as<FindNextBlock>().found, "found", 6);
  };
  char found[512];
  std::memset(found, kDirt, sizeof found);
  EXPECT_EQ(Code([&] {
              return MAPIFindNext(0, 0, nullptr, Mutable(long_text.c_str()), MAPI_UNREAD_ONLY, 0, found);
            }),
            0u);
  EXPECT_EQ(Difference({found, sizeof found}, std::string("found\0", 6) + std::string(506, kDirt)), "")
      << "of the caller's buffer the identifier alone is written";

  mapi.answer = [&](const Block& block) {
    const std::string all = block.All();
    const auto expected = Expected(all.size())
                              .Put(8, block.as<StoreHead>().event)
                              .Text(16, "id")
                              .Put(272, std::uint32_t{GetCurrentProcessId()})
                              .Put(276, std::uint32_t{0x12345678});
    EXPECT_EQ(Difference(all, expected.bytes()), "") << "read";
  };
  lpMapiMessage message = nullptr;
  EXPECT_EQ(Code([&] { return MAPIReadMail(0, 0, Mutable("id"), 0x12345678, 0, &message); }), 0u);
  EXPECT_EQ(message, nullptr);

  mapi.answer = [&](const Block& block) {
    const std::string all = block.All();
    const auto expected = Expected(all.size()).Put(8, block.as<StoreHead>().event).Text(16, "id");
    EXPECT_EQ(Difference(all, expected.bytes()), "") << "delete";
  };
  EXPECT_EQ(Code([] { return MAPIDeleteMail(0, 0, Mutable("id"), 0, 0); }), 0u);
}

TEST_F(Mapi, AReadMessageHoldsTheHostsImageAndNothingElse) {
  MapiHost mapi;
  // A subject behind the record, one recipient without an address, a file outside the image.
  const std::string image = Expected(160)
                                .Put(8, std::uint64_t{136})
                                .Put(64, std::uint32_t{1})
                                .Put(72, std::uint64_t{96})
                                .Put(80, std::uint32_t{1})
                                .Put(88, std::uint64_t{5000})
                                .Put(104, std::uint64_t{144})
                                .Text(136, "subject")
                                .Text(144, "name")
                                .bytes();
  mapi.answer = [&](const Block& block) {
    AnswerWithImage(block, image, static_cast<std::uint32_t>(image.size()));
  };
  lpMapiMessage message = nullptr;
  EXPECT_EQ(Code([&] { return MAPIReadMail(0, 0, Mutable("id"), 0, 0, &message); }), 0u);
  ASSERT_NE(message, nullptr);
  char* const start = reinterpret_cast<char*>(message);
  const Expected expected = Expected(161)
                                .Put(8, start + 136)
                                .Put(64, std::uint32_t{1})
                                .Put(72, start + 96)
                                .Put(104, start + 144)
                                .Text(136, "subject")
                                .Text(144, "name");
  EXPECT_EQ(Difference(BytesOf(message), expected.bytes()), "");
  MAPIFreeBuffer(message);
}

TEST_F(Mapi, CommandLineBlocksHoldTheLineAndNothingElse) {
  MapiHost mapi;
  int blocks = 0;
  std::string line;
  mapi.see_line = [&](const Block& block) {
    const std::string all = block.All();
    EXPECT_EQ(Difference(all, Expected(all.size()).Text(8, line).bytes()), "") << line;
    ++blocks;
  };
  MapiRecipDesc recipients[] = {{0, MAPI_TO, Mutable("Jo (x)"), Mutable("SMTP:x"), 0, nullptr},
                                {0, MAPI_CC, Mutable("Al"), nullptr, 0, nullptr}};
  MapiFileDesc file{0, 0, 0, Mutable("C:\\a"), Mutable("b"), nullptr};
  MapiMessage message{};
  message.lpszSubject = Mutable("\xC3\xA9");  // UTF-8, converted on the way
  message.lpszNoteText = Mutable("n");
  message.nRecipCount = 2;
  message.lpRecips = recipients;
  message.nFileCount = 1;
  message.lpFiles = &file;
  line = "newmail Subject=\x1A\xE9\x80\x85 body=n To=%22Jo%20%28x%29%22%20%3Cx%3E Cc=Al Attach=C%3A\\a*b";
  DirtyStack();
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  line = "newmail attach=\"a\" attach=\"b\" template=1 sign=1";
  DirtyStack();
  EXPECT_EQ(MAPISendDocuments(0, Mutable(";"), Mutable("a;b"), nullptr, 0), 0u);
  EXPECT_EQ(blocks, 2);
}

TEST_F(Mapi, ALogonWritesTheSessionAndNothingElse) {
  MapiHost mapi;
  ULONG_PTR sessions[] = {0, ~ULONG_PTR{0}, 0};
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, 0, 0, &sessions[1]), 0u);
  EXPECT_EQ(sessions[0], 0u);
  EXPECT_EQ(sessions[1], reinterpret_cast<ULONG_PTR>(mapi.host.frame()));
  EXPECT_EQ(sessions[2], 0u);
}

}  // namespace
}  // namespace wfinfo_test
