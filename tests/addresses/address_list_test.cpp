// Entries by number, which are found again in a list that was read before, against reading from the start.
#include "src/addresses/address_list.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>
#include <vector>

namespace wfinfo {
namespace {

std::string List(std::size_t entries, std::uint32_t seed = 0) {
  static constexpr const char* kForms[] = {"t%@x", "\"D, J %\" <j%@x>", "(a, b) c%@x", " \t<%@y>",
                                           "",     "\x83\x5C <k%@x>",   "a%@b\r\n (c)"};
  std::mt19937 random(seed);
  std::string list;
  for (std::size_t i = 0; i < entries; ++i) {
    std::string entry = kForms[random() % std::size(kForms)];
    if (const auto place = entry.find('%'); place != entry.npos) entry.replace(place, 1, std::to_string(i));
    list += entry + (random() % 2 == 0 ? "," : "; ");
  }
  return list + "end@x";
}

void ExpectAsFromTheStart(std::string_view list, std::size_t n) {
  const ListedAddress quick = NthAddressAgain(list, n), slow = NthAddress(list, n);
  ASSERT_EQ(quick.error, slow.error) << n;
  ASSERT_EQ(quick.text, slow.text) << n;
  ASSERT_EQ(quick.text.data(), slow.text.data()) << "a view into the caller's own list";
}

TEST(AddressList, EntriesByNumberAreThoseFromTheStart) {
  const std::string list = List(500);
  ASSERT_GT(list.size(), kRememberedList);
  for (std::size_t n = 0; n < 503; ++n) ExpectAsFromTheStart(list, n);
  for (std::size_t n = 503; n-- > 0;) ExpectAsFromTheStart(list, n);
  std::mt19937 random(1);
  for (int round = 0; round < 500; ++round) ExpectAsFromTheStart(list, random() % 600);
}

TEST(AddressList, AShortListIsReadFromTheStart) {
  const std::string list = List(60);
  ASSERT_LT(list.size(), kRememberedList);
  for (std::size_t n = 0; n < 63; ++n) ExpectAsFromTheStart(list, n);
}

TEST(AddressList, AListThatChangedWhereItStandsIsReadAnew) {
  std::string list = List(500);
  for (std::size_t n = 0; n < 500; ++n) ExpectAsFromTheStart(list, n);
  // One byte in front of what is asked for, the length as it was.
  const std::size_t comma = list.find(',');
  list[comma] = '.';
  for (const std::size_t n : {400, 401, 33, 499}) ExpectAsFromTheStart(list, n);
  list[comma] = ';';
  for (const std::size_t n : {400, 401, 33, 499}) ExpectAsFromTheStart(list, n);
  list[list.size() - 1] = ',';
  ExpectAsFromTheStart(list, 500);
  list += ", f@g";
  for (const std::size_t n : {500, 501, 502, 503}) ExpectAsFromTheStart(list, n);
  list.resize(list.size() / 2);
  for (const std::size_t n : {40, 200, 300}) ExpectAsFromTheStart(list, n);
}

TEST(AddressList, TheSameListElsewhereGivesItsOwnViews) {
  const std::string one = List(500), two = one;
  for (const std::size_t n : {100, 200, 300}) {
    ExpectAsFromTheStart(one, n);
    ExpectAsFromTheStart(two, n);
  }
}

TEST(AddressList, AMalformedEntryIsToldEachTime) {
  const std::string list = List(200) + ", <a@b> c, d@e";
  for (int round = 0; round < 3; ++round) {
    for (const std::size_t n : {199, 200, 201, 202, 260, 5000, 40}) ExpectAsFromTheStart(list, n);
  }
  EXPECT_EQ(NthAddressAgain(list, 202).error, AddressError::kNoComma);
}

TEST(AddressListProperty, ManyListsInTurnAreReadRight) {
  std::mt19937 random(2);
  std::vector<std::string> lists;
  for (std::uint32_t seed = 0; seed < 6; ++seed) lists.push_back(List(random() % 400, seed));
  lists.push_back(std::string(9000, ','));
  lists.push_back(std::string(9000, ' ') + "a@b");
  for (int round = 0; round < 3000; ++round) {
    std::string& list = lists[random() % lists.size()];
    if (random() % 8 == 0) list[random() % list.size()] = ",;a\"(<\x81\n"[random() % 8];
    ExpectAsFromTheStart(list, random() % 450);
  }
}

TEST(AddressList, AListOfSeparatorsAloneHasRoomForAllItsPlaces) {
  const std::string list(4096, ',');
  for (std::size_t n = 0; n < 4100; n += 41) ExpectAsFromTheStart(list, n);
}

TEST(AddressList, ThreadsMayAskAtOnce) {
  const std::string one = List(400, 7), two = List(400, 8);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      for (std::size_t round = 0; round < 400; ++round) {
        const std::string& list = (round / 16 + static_cast<std::size_t>(i)) % 2 == 0 ? one : two;
        ExpectAsFromTheStart(list, round);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace wfinfo
