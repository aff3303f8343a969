#include "src/text/long_text.h"

#include <gtest/gtest.h>

#include <vector>

namespace wfinfo {
namespace {

TEST(LongText, EndsAtTheFirstZeroOrAtTheLimit) {
  for (std::size_t limit = 0; limit < 200; ++limit) {
    std::vector<char> text(limit, 'x');  // of its own size, so that a read behind it is seen
    EXPECT_EQ(LengthWithin(text.data(), limit), limit);
    for (std::size_t zero = 0; zero < limit; ++zero) {
      text.assign(limit, '\x80');
      text[zero] = text[limit - 1] = '\0';
      ASSERT_EQ(LengthWithin(text.data(), limit), zero) << limit;
    }
  }
}

TEST(LongText, EveryDifferentByteIsSeen) {
  for (std::size_t size = 0; size < 200; ++size) {
    std::vector<char> a(size, 'x'), b(size, 'x');
    EXPECT_TRUE(AreSame(a.data(), b.data(), size));
    for (std::size_t at = 0; at < size; ++at) {
      b[at] = static_cast<char>('x' ^ (1 << at % 8));
      ASSERT_FALSE(AreSame(a.data(), b.data(), size)) << size << " " << at;
      b[at] = 'x';
    }
  }
}

}  // namespace
}  // namespace wfinfo
