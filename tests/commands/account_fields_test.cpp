#include "src/commands/account_fields.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace wfinfo {
namespace {

struct GoldenKey {
  std::string_view word;
  std::size_t offset;
  std::size_t width;
  char holds;
  unsigned mask;
  char access;
};
constexpr GoldenKey kGolden[] = {
#include "tests/golden/account_keys.inc"
};

// A record with a guard behind it.
class Record {
 public:
  explicit Record(char fill = 0) : bytes_(kAccountRecordSize + kGuard, fill) {
    std::fill_n(bytes_.begin() + kAccountRecordSize, kGuard, '\x5A');
  }
  ~Record() {
    for (std::size_t i = kAccountRecordSize; i < bytes_.size(); ++i)
      EXPECT_EQ(bytes_[i], '\x5A') << "overrun at " << i;
  }
  char* data() { return bytes_.data(); }
  unsigned char at(std::size_t offset) const { return static_cast<unsigned char>(bytes_[offset]); }
  // Offsets of the bytes that differ.
  std::set<std::size_t> DifferentFrom(const Record& other) const {
    std::set<std::size_t> offsets;
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
      if (bytes_[i] != other.bytes_[i]) offsets.insert(i);
    }
    return offsets;
  }

 private:
  static constexpr std::size_t kGuard = 64;
  std::vector<char> bytes_;
};

const AccountKey& Key(std::string_view word) {
  const AccountKey* const key = FindAccountKey(word);
  EXPECT_NE(key, nullptr) << word;
  return *key;
}

const SplitText& Split(std::string_view word) {
  const SplitText* const split = FindSplitText(word);
  EXPECT_NE(split, nullptr) << word;
  return *split;
}

TEST(AccountKeys, AreThoseOfTheIndependentList) {
  EXPECT_EQ(AccountKeys().size(), std::size(kGolden));
  for (const GoldenKey& golden : kGolden) {
    const AccountKey& key = Key(golden.word);
    EXPECT_EQ(key.word, golden.word);
    EXPECT_EQ(key.offset, golden.offset) << golden.word;
    EXPECT_EQ(key.kind, golden.width) << golden.word;
    EXPECT_EQ(key.mask, golden.mask) << golden.word;
    EXPECT_EQ(key.IsText(), golden.holds == 't') << golden.word;
    EXPECT_EQ(key.IsFlag(), golden.holds == 'f') << golden.word;
    EXPECT_EQ(key.mark == KeyMark::kSigned, golden.holds == 's') << golden.word;
    EXPECT_EQ(key.mark == KeyMark::kReadOnly, golden.access == 'r') << golden.word;
    EXPECT_EQ(key.mark == KeyMark::kSecret, golden.access == 'p') << golden.word;
  }
}

TEST(AccountKeys, AreFoundInAnyLetterCaseAndOnlyWhole) {
  EXPECT_EQ(FindAccountKey("SZPOP3PASSWORD"), &Key("szPop3Password"));
  EXPECT_EQ(FindAccountKey("fimapsync"), &Key("fImapSync"));
  for (const char* word : {"", "fImap", "fImapSyncX", "szEmailAlias", "szSignature", " fImapSync"}) {
    EXPECT_EQ(FindAccountKey(word), nullptr) << word;
  }
}

TEST(AccountKeys, TextKeysAreNumberedInOrder) {
  EXPECT_EQ(FindAccountText("szNewTemplate"), 0);
  EXPECT_EQ(FindAccountText("SZREPLYTEMPLATE"), 1);
  EXPECT_EQ(FindAccountText("szforwardtemplate"), 2);
  EXPECT_EQ(FindAccountText("szSignature"), 3);
  EXPECT_EQ(FindAccountText("szSignature2"), kNoAccountText);
  EXPECT_EQ(FindAccountText(""), kNoAccountText);
}

// What occupies the bits of the record, each named once.
std::vector<std::vector<std::string_view>> Occupants() {
  std::vector<std::vector<std::string_view>> bits(kAccountRecordSize * 8);
  const auto occupy = [&](std::string_view word, std::size_t offset, std::size_t width, unsigned mask) {
    ASSERT_LE(offset + width, kAccountRecordSize) << word << " reaches behind the record";
    for (std::size_t bit = offset * 8; bit < (offset + width) * 8; ++bit) {
      if (mask == 0 || ((mask >> (bit % 8)) & 1) != 0) bits[bit].push_back(word);
    }
  };
  for (const AccountKey& key : AccountKeys()) occupy(key.word, key.offset, key.kind, key.mask);
  for (const SplitText& split : SplitTexts()) {
    if (FindAccountKey(split.word) == nullptr) occupy(split.word, split.offset, split.room, 0);
    occupy(split.word, split.overflow_offset, split.overflow_room, 0);
  }
  return bits;
}

TEST(AccountKeys, LieInsideTheRecordAndOverlapOnlyWhereTheHostSaysSo) {
  const auto bits = Occupants();
  for (std::size_t bit = 0; bit < bits.size(); ++bit) {
    if (bits[bit].size() < 2) continue;
    EXPECT_EQ(bit, 3622u * 8 + 4);
    EXPECT_EQ(bits[bit], (std::vector<std::string_view>{"fNotSSL20", "fTLS12"}));
  }
}

TEST(AccountKeys, TheLastFieldEndsTheRecord) {
  const AccountKey& last = Key("szImapSyncDraft");
  EXPECT_EQ(last.offset + last.kind, static_cast<int>(kAccountRecordSize));
}

TEST(AccountKeys, SplitTextsShareTheirFirstPlaceWithTheirKey) {
  for (const SplitText& split : SplitTexts()) {
    const AccountKey* const key = FindAccountKey(split.word);
    if (key == nullptr) continue;
    EXPECT_EQ(key->offset, split.offset) << split.word;
    EXPECT_EQ(key->kind, split.room) << split.word;
  }
  EXPECT_EQ(Split("szPop3Password").Limit(), 206u);
  EXPECT_EQ(Split("szBccEmail").Limit(), 158u);
  EXPECT_EQ(Split("szEmailAlias").Limit(), 1022u);
}

// The host reads both places too: that a text comes back from where it was put is not enough.
TEST(AccountKeys, SplitTextsGoOnAtTheHostsPlaces) {
  const struct {
    std::string_view word;
    std::size_t offset, room, overflow_offset, overflow_room, dropped;
  } cases[] = {
      {"szPop3Password", 560, 80, 4520, 128, 0},
      {"szBccEmail", 1976, 80, 4776, 80, 0},
      {"szEmailAlias", 1476, 256, 3752, 767, 1},
  };
  EXPECT_EQ(SplitTexts().size(), std::size(cases));
  for (const auto& c : cases) {
    const SplitText& split = Split(c.word);
    EXPECT_EQ(split.offset, c.offset) << c.word;
    EXPECT_EQ(split.room, c.room) << c.word;
    EXPECT_EQ(split.overflow_offset, c.overflow_offset) << c.word;
    EXPECT_EQ(split.overflow_room, c.overflow_room) << c.word;
    EXPECT_EQ(split.dropped, c.dropped) << c.word;
  }
}

TEST(AccountKeys, ProvisionalOnesEndTheTable) {
  ASSERT_GT(AccountKeys().size(), 6u);
  const auto provisional = AccountKeys().last(6);
  EXPECT_EQ(provisional[0].word, "szBccEmail");
  EXPECT_EQ(provisional[5].word, "nProjType");
}

TEST(AccountKeys, AreDocumentedWithTheirPlaces) {
  std::ifstream file(WFINFO_SOURCE_DIR "/docs/account-record.md");
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  for (const AccountKey& key : AccountKeys()) {
    char row[80];
    std::snprintf(row, sizeof row, key.mask == 0 ? "| `%s` | %u |" : "| `%s` | %u:0x%02X |", key.word.data(),
                  static_cast<unsigned>(key.offset), static_cast<unsigned>(key.mask));
    EXPECT_NE(text.find(row), std::string::npos) << row;
  }
}

TEST(AccountFields, EveryMaskedFlagChangesItsOwnBitsOnly) {
  for (const AccountKey& key : AccountKeys()) {
    if (key.mask == 0 || key.offset == 1386) continue;
    for (const char fill : {'\0', '\xFF'}) {
      Record record(fill);
      const unsigned before = record.at(key.offset);
      StoreAccountNumber(key, 1, record.data());
      EXPECT_EQ(record.at(key.offset), before | key.mask) << key.word;
      EXPECT_EQ(AccountNumber(key, record.data()), 1) << key.word;
      StoreAccountNumber(key, 0, record.data());
      EXPECT_EQ(record.at(key.offset), before & ~static_cast<unsigned>(key.mask) & 0xFF) << key.word;
      EXPECT_EQ(AccountNumber(key, record.data()), 0) << key.word;
    }
  }
}

TEST(AccountFields, AnyBitOfAMaskReadsAsOn) {
  Record record;
  StoreAccountNumber(Key("fTLS12"), 1, record.data());
  EXPECT_EQ(AccountNumber(Key("fNotSSL20"), record.data()), 1);
  StoreAccountNumber(Key("fNotSSL20"), 0, record.data());
  EXPECT_EQ(AccountNumber(Key("fTLS12"), record.data()), 0);
  StoreAccountNumber(Key("fNotSSL20"), 1, record.data());
  EXPECT_EQ(record.at(3622), 0x30);
}

TEST(AccountFields, SavingUidlsStaysOnWhileSynchronisingNeedsIt) {
  const AccountKey& save = Key("fSaveUidlInMail");
  const char* const needing[] = {"fDeleteRemoteSync", "fImapSync",          "fImapSyncMoveCopy",
                                 "fImapSyncTrash",    "fDeleteReverseSync", "fImapSyncDontDeleteFolder",
                                 "fImapSyncDraft"};
  unsigned mask = 2;
  for (const char* word : needing) {
    Record record;
    StoreAccountNumber(Key(word), 1, record.data());
    EXPECT_EQ(record.at(1386), mask | 1) << word;
    StoreAccountNumber(save, 0, record.data());
    EXPECT_EQ(AccountNumber(save, record.data()), 1) << word;
    StoreAccountNumber(Key(word), 0, record.data());
    EXPECT_EQ(record.at(1386), 1) << word << ": it stays on by itself";
    StoreAccountNumber(save, 0, record.data());
    EXPECT_EQ(record.at(1386), 0) << word;
    mask <<= 1;
  }
}

TEST(AccountFields, NumbersOfEveryWidthAreCutAndReadBack) {
  const AccountKey byte{"nByte", 100, kByteKind};
  const AccountKey signed_byte{"nSigned", 100, kByteKind, 0, KeyMark::kSigned};
  const AccountKey word{"nWord", 100, kWordKind};
  const AccountKey number{"nNumber", 100, kNumberKind};
  const struct {
    const AccountKey& key;
    long long stored, read;
    const char* why;
  } cases[] = {
      {byte, 255, 255, "the largest"},
      {byte, 300, 44, "the low eight bits"},
      {byte, -1, 255, "no sign"},
      {signed_byte, 255, -1, "a sign"},
      {signed_byte, 127, 127, "the largest"},
      {signed_byte, 128, -128, "the smallest"},
      {word, 65535, 65535, "the largest"},
      {word, -1, 65535, "no sign"},
      {word, 0x12345, 0x2345, "the low sixteen bits"},
      {number, -2, -2, "a sign"},
      {number, 0x80000000LL, -0x80000000LL, "the smallest"},
      {number, 0x123456789LL, 0x23456789LL, "the low thirty-two bits"},
  };
  for (const auto& c : cases) {
    Record before('\x33');
    Record record('\x33');
    StoreAccountNumber(c.key, c.stored, record.data());
    EXPECT_EQ(AccountNumber(c.key, record.data()), c.read) << c.key.word << ": " << c.why;
    for (const std::size_t offset : record.DifferentFrom(before)) {
      EXPECT_GE(offset, 100u) << c.why;
      EXPECT_LT(offset, 100u + c.key.kind) << c.why;
    }
  }
}

TEST(AccountFields, ATextMustLeaveRoomForItsEnd) {
  for (const AccountKey& key : AccountKeys()) {
    if (!key.IsText()) continue;
    Record before('\x33');
    Record record('\x33');
    EXPECT_FALSE(StoreAccountText(key, std::string(key.kind, 'x'), record.data())) << key.word;
    EXPECT_TRUE(record.DifferentFrom(before).empty()) << key.word;
    const std::string longest(key.kind - 1u, 'x');
    EXPECT_TRUE(StoreAccountText(key, longest, record.data())) << key.word;
    EXPECT_EQ(FieldText(record.data(), key.offset, key.kind), longest) << key.word;
    const auto changed = record.DifferentFrom(before);
    EXPECT_EQ(*changed.begin(), key.offset) << key.word;
    EXPECT_EQ(*changed.rbegin(), key.offset + key.kind - 1u) << key.word;
    EXPECT_TRUE(StoreAccountText(key, "", record.data()));
    EXPECT_EQ(FieldText(record.data(), key.offset, key.kind), "") << key.word;
  }
}

std::string Letters(std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('a' + i % 23);
  return text;
}

std::string Joined(const SplitText& split, const char* record) {
  std::string text(split.Limit() + 1, '\x7F');
  const std::size_t length = JoinSplitText(split, record, text.data());
  EXPECT_EQ(text[length], '\0');
  text.resize(length);
  return text;
}

TEST(AccountFields, SplitTextsOfEveryLengthComeBack) {
  for (const SplitText& split : SplitTexts()) {
    Record record('\x33');
    for (std::size_t length = 0; length <= split.Limit() + 3; ++length) {
      const std::string text = Letters(length);
      const std::string before = Joined(split, record.data());
      if (length > split.Limit()) {
        EXPECT_FALSE(StoreSplitText(split, text, record.data())) << split.word << " " << length;
        EXPECT_EQ(Joined(split, record.data()), before);
        continue;
      }
      ASSERT_TRUE(StoreSplitText(split, text, record.data())) << split.word << " " << length;
      std::string expected = text;
      if (length >= split.room) expected.erase(split.room - 1u, split.dropped);
      EXPECT_EQ(Joined(split, record.data()), expected) << split.word << " " << length;
      EXPECT_EQ(record.at(split.overflow_offset) == 0, expected.size() < split.room)
          << split.word << " " << length;
    }
  }
}

TEST(AccountFields, ALongAliasLosesOneByte) {
  Record record;
  const std::string text = Letters(300);
  ASSERT_TRUE(StoreSplitText(Split("szEmailAlias"), text, record.data()));
  EXPECT_EQ(Joined(Split("szEmailAlias"), record.data()), text.substr(0, 255) + text.substr(256));
}

TEST(AccountFields, AFieldWithoutAnEndIsReadToItsLastByte) {
  Record record('\x33');
  EXPECT_EQ(FieldText(record.data(), 3419, 80).size(), 80u);
  for (const SplitText& split : SplitTexts()) {
    EXPECT_EQ(Joined(split, record.data()).size(), split.room + split.overflow_room - 2u) << split.word;
  }
}

TEST(AccountFields, AValueMayLieInTheRecordItself) {
  Record record;
  const SplitText& split = Split("szBccEmail");
  const std::string text = Letters(70);
  ASSERT_TRUE(StoreSplitText(split, text, record.data()));
  ASSERT_TRUE(StoreSplitText(split, FieldText(record.data(), split.offset + 5u, 70), record.data()));
  EXPECT_EQ(Joined(split, record.data()), text.substr(5));
}

TEST(AccountFields, RandomUseStaysInsideTheRecord) {
  std::mt19937 random(7);
  Record record;
  for (int round = 0; round < 20000; ++round) {
    const AccountKey& key = AccountKeys()[random() % AccountKeys().size()];
    const std::string text = Letters(random() % 300);
    const SplitText* const split = FindSplitText(key.word);
    if (split != nullptr) {
      StoreSplitText(*split, text, record.data());
    } else if (key.IsText()) {
      StoreAccountText(key, text, record.data());
    } else {
      StoreAccountNumber(key, static_cast<long long>(random()) - 0x7FFFFFFF, record.data());
    }
    // The texts next to each other stay ended.
    if (round % 100 != 0) continue;
    for (const AccountKey& each : AccountKeys()) {
      if (!each.IsText()) continue;
      EXPECT_LT(FieldText(record.data(), each.offset, each.kind).size(), each.kind) << each.word;
    }
  }
}

}  // namespace
}  // namespace wfinfo
