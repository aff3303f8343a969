// Every set of line kernels against the slow reference, on texts that lie anywhere in memory and end at a
// page's end.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <utility>

#include "src/message/line_scan.h"
#include "src/text/cpu.h"
#include "tests/message/line_reference.h"

namespace wfinfo {
namespace {

constexpr std::size_t kPage = 4096;

// A text whose terminator is the last byte before an unreadable page, or stands `slack` bytes before it.
class GuardedText {
 public:
  GuardedText(std::string_view text, std::size_t slack) {
    size_ = (text.size() + 1 + slack + kPage - 1) / kPage * kPage + 2 * kPage;
    memory_ =
        static_cast<char*>(mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    // What stands around the text must not count: half an escape before it, line ends behind it.
    std::memset(memory_, '\x80', size_);
    text_ = memory_ + size_ - kPage - slack - text.size() - 1;
    text_[-3] = '\x1A';
    std::memcpy(text_, text.data(), text.size());
    text_[text.size()] = '\0';
    std::memset(text_ + text.size() + 1, '\n', slack);
    mprotect(memory_, first_page(), PROT_NONE);
    mprotect(memory_ + size_ - kPage, kPage, PROT_NONE);
  }
  ~GuardedText() { munmap(memory_, size_); }
  GuardedText(const GuardedText&) = delete;
  GuardedText& operator=(const GuardedText&) = delete;
  const char* get() const { return text_; }

 private:
  // Whole pages before the page that the text begins in.
  std::size_t first_page() const { return static_cast<std::size_t>(text_ - memory_) / kPage * kPage; }
  char* memory_;
  std::size_t size_;
  char* text_;
};

// Room for a result, behind which no byte may be written.
class GuardedRoom {
 public:
  explicit GuardedRoom(std::size_t size) : whole_((size + kPage - 1) / kPage * kPage + kPage) {
    memory_ =
        static_cast<char*>(mmap(nullptr, whole_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    mprotect(end(), kPage, PROT_NONE);
  }
  ~GuardedRoom() { munmap(memory_, whole_); }
  GuardedRoom(const GuardedRoom&) = delete;
  GuardedRoom& operator=(const GuardedRoom&) = delete;
  char* end() const { return memory_ + whole_ - kPage; }

 private:
  std::size_t whole_;
  char* memory_;
};

std::string Shown(std::string_view text) {
  std::string shown;
  char digits[4];
  for (const char byte : text) {
    std::snprintf(digits, sizeof digits, "%02X ", static_cast<unsigned char>(byte));
    shown += digits;
  }
  return shown;
}

// Checks all kernels of one set on one text.
void CheckKernels(const LineKernels& kernels, std::string_view text, std::size_t slack) {
  SCOPED_TRACE(std::string(kernels.name) + ", slack " + std::to_string(slack) + ": " + Shown(text));
  const GuardedText guarded(text, slack);
  const char* const p = guarded.get();

  // Lines, their count and stepping over them.
  std::vector<std::size_t> starts = {0};
  std::size_t ends = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = reference::LineEndAt(text, at);
    ASSERT_EQ(kernels.find_line_end(p + at), p + end);
    at = reference::BehindLineEnd(text, end);
    if (at != end) {
      ++ends;
      starts.push_back(at);
    }
  }
  const LineTally tally = kernels.count_ends(p);
  ASSERT_EQ(tally.ends, ends);
  ASSERT_EQ(tally.end, p + text.size());
  for (std::size_t n = 0; n < starts.size(); n += 1 + n / 3)
    ASSERT_EQ(kernels.skip_lines(p, n), p + starts[n]);
  ASSERT_EQ(kernels.skip_lines(p, ends), p + starts[ends]);
  ASSERT_EQ(kernels.skip_lines(p, ends + 1), nullptr);

  // Headers.
  const reference::Message message = reference::Read(text);
  for (const std::string_view name : {"a:", "A:", "aa:", ":", " a:", "\x80:", "\r:", "\x1A\x80\x81\r:"}) {
    const std::size_t count = reference::Values(message, name).size();
    const HeaderHit none = kernels.find_header(p, name, count);
    ASSERT_EQ(none.line, nullptr) << name;
    ASSERT_EQ(none.matches, count) << name;
    std::size_t behind = static_cast<std::size_t>(none.header_end - p);
    ASSERT_EQ(reference::BehindLineEnd(text, behind), message.body) << name;
    ASSERT_EQ(count == 0, kernels.find_header(p, name, count - 1).line == nullptr) << name;
  }
  ASSERT_EQ(
      reference::BehindLineEnd(text, static_cast<std::size_t>(kernels.find_header(p, {}, 0).header_end - p)),
      message.body);

  // Folding.
  for (const LineEnd form : {LineEnd::kCrLf, LineEnd::kCrCrLf}) {
    const std::string_view form_text = form == LineEnd::kCrLf ? "\r\n" : "\r\r\n";
    const std::string folded = reference::Fold(text, form_text);
    const FoldSize size = kernels.measure_folded(p, form);
    ASSERT_EQ(size.output, folded.size());
    ASSERT_EQ(size.input, text.size());
    ASSERT_LE(size.right, text.size());
    ASSERT_EQ(folded.substr(0, size.right), text.substr(0, size.right));
    ASSERT_EQ(folded == text, size.right == text.size());
    for (const std::size_t from : {std::size_t{0}, size.right}) {
      const GuardedRoom room(size.output - from);
      char* const out = room.end() - (size.output - from);
      const char* const end = kernels.write_folded(p, p + from, p + text.size(), out, room.end(), form);
      ASSERT_EQ(end, room.end());
      ASSERT_EQ(Shown({out, size.output - from}), Shown(std::string_view(folded).substr(from)));
    }
  }
}

class EveryKernel : public testing::TestWithParam<const LineKernels*> {};
INSTANTIATE_TEST_SUITE_P(Sets, EveryKernel,
                         testing::ValuesIn(RunnableLineKernels().begin(), RunnableLineKernels().end()),
                         [](const auto& set) { return set.param->name; });

TEST_P(EveryKernel, AgreesWithTheReferenceOnAllShortTextsOfTroublesomeBytes) {
  static constexpr char kBytes[] = {'\x1A', '\x80', '\r', '\n', 'a', ':'};
  for (std::size_t length = 0; length <= 5; ++length) {
    std::size_t texts = 1;
    for (std::size_t i = 0; i < length; ++i) texts *= std::size(kBytes);
    for (std::size_t number = 0; number < texts; number += length == 5 ? 7 : 1) {
      std::string text;
      for (std::size_t i = 0, rest = number; i < length; ++i, rest /= std::size(kBytes)) {
        text += kBytes[rest % std::size(kBytes)];
      }
      CheckKernels(*GetParam(), text, number % 3 * 20);
      if (HasFatalFailure()) return;
    }
  }
}

TEST_P(EveryKernel, AgreesWithTheReferenceOnHostileTexts) {
  std::mt19937 random(20240601);
  for (int round = 0; round < 3000; ++round) {
    const std::size_t length = random() % (round % 10 == 0 ? 1500 : 200);
    CheckKernels(*GetParam(), reference::HostileText(random, length), random() % 80);
    if (HasFatalFailure()) return;
  }
}

TEST_P(EveryKernel, AgreesWithTheReferenceOnLongTexts) {
  std::mt19937 random(7);
  for (int round = 0; round < 40; ++round) {
    CheckKernels(*GetParam(), reference::HostileText(random, 3000 + random() % 9000), random() % 200);
    if (HasFatalFailure()) return;
  }
}

TEST_P(EveryKernel, LeavesAnEscapeThatEndsInCrWhole) {
  CheckKernels(*GetParam(), "\x1A\x80\x80\r\n\x1A\x80\x80\r\r\nb", 0);
  CheckKernels(*GetParam(), std::string(61, 'x') + "\x1A\x80\x80\r\nA: b\r\n", 0);
  for (std::size_t before = 0; before < 140; ++before) {
    CheckKernels(*GetParam(), std::string(before, 'x') + "\x1A\x80\x80\r" + std::string(70, 'y'), before);
    CheckKernels(*GetParam(), std::string(before, 'x') + "\x1A\x80\x70\r" + std::string(70, 'y'), before);
  }
}

TEST_P(EveryKernel, SeesALineEndWhole) {
  // Wherever it lies in the blocks that are read: also with its first bytes in one and the rest in the next.
  for (std::size_t before = 0; before < 140; ++before) {
    for (const std::string end : {"\r\r\n", "\r\n", "\r\r", "\r", "\n", "\r\r\r\n"}) {
      const std::string line = std::string(before, 'x') + end;
      CheckKernels(*GetParam(), line, before);
      CheckKernels(*GetParam(), line + "y" + end, before);
      CheckKernels(*GetParam(), std::string(600, 'x') + line, before);
      if (HasFatalFailure()) return;
    }
  }
}

// Lines are counted in bytes, one for each place of a block, which hold 255.
TEST_P(EveryKernel, CountsMoreLinesThanAByteHolds) {
  for (const std::string end : {"\n", "\r", "\r\n", "\x1A\x80\x80\r", "\x1A\x80\x80\r\n"}) {
    std::string text(1, 'x');
    while (text.size() < 70 * 256) text += end;
    CheckKernels(*GetParam(), text, 0);
    if (HasFatalFailure()) return;
  }
}

// Nothing but line ends in one block, and what is left of the room behind them.
TEST_P(EveryKernel, WritesNoByteBehindTheRoom) {
  for (const std::size_t ends : {63, 64, 65, 128}) {
    for (std::size_t rest = 0; rest < 140; ++rest) {
      CheckKernels(*GetParam(), std::string(ends, '\n') + std::string(rest, 'x'), rest);
      CheckKernels(*GetParam(), std::string(ends, '\n') + std::string(rest, 'x'), 63);
      if (HasFatalFailure()) return;
    }
  }
}

// Much room and little text: what is copied may be more than the line, but ends with the text.
TEST_P(EveryKernel, ReadsNoByteBehindTheText) {
  for (std::size_t ends = 1; ends < 200; ++ends) {
    CheckKernels(*GetParam(), std::string(ends, '\n'), 0);
    if (HasFatalFailure()) return;
  }
}

TEST(LineKernels, ThereIsAChoiceForEveryProcessor) {
  EXPECT_EQ(&Lines(), RunnableLineKernels().back());
  EXPECT_STREQ(RunnableLineKernels().front()->name, "portable");
  const std::pair<Vectors, const char*> widest[] = {
      {Vectors::kSse2, "SSE2"}, {Vectors::kAvx2, "AVX2"}, {Vectors::kAvx512, "AVX512"}};
  for (const auto& [vectors, name] : widest) {
    g_vectors.store(vectors);
    EXPECT_STREQ(Lines().name, name);
    EXPECT_EQ(&Lines(), RunnableLineKernels().back());
  }
  AskForVectors();
}

}  // namespace
}  // namespace wfinfo
