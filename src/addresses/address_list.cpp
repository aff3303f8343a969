#include "src/addresses/address_list.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "src/text/long_text.h"

namespace wfinfo {

namespace {

constexpr std::size_t kStep = 32;  // of so many entries the place of one is kept

// A list that was read, up to some entry. Stands in front of its places and its copy, in one block.
struct ReadList {
  std::size_t size;
  std::size_t known;  // places that are filled in; at least the first, which is 0

  std::size_t* places() { return reinterpret_cast<std::size_t*>(this + 1); }
  char* copy() { return reinterpret_cast<char*>(places() + Places(size)); }

  // An entry takes a byte at least, its separator, but for the last one.
  static std::size_t Places(std::size_t size) { return size / kStep + 1; }
};

// Nobody's while a thread works with it.
constinit std::atomic<ReadList*> g_list = nullptr;

bool IsCopyOf(ReadList* read, std::string_view list) {
  return read != nullptr && read->size == list.size() && AreSame(read->copy(), list.data(), list.size());
}

// A copy of `list`, of which nothing is read; null without memory.
ReadList* Copied(std::string_view list) {
  void* const block =
      std::malloc(sizeof(ReadList) + ReadList::Places(list.size()) * sizeof(std::size_t) + list.size());
  if (block == nullptr) return nullptr;
  auto* const read = new (block) ReadList{list.size(), 1};
  read->places()[0] = 0;
  list.copy(read->copy(), list.size());
  return read;
}

// Entry `n`, read from the last known place in front of it; what is passed on the way becomes known.
ListedAddress ReadOn(ReadList* read, std::string_view list, std::size_t n) {
  std::size_t at = n / kStep < read->known ? n / kStep : read->known - 1;
  AddressReader reader(list, read->places()[at]);
  for (std::size_t entry = at * kStep;; ++entry) {
    if (entry == read->known * kStep) read->places()[read->known++] = reader.at();
    if (!reader.Read()) return {{}, reader.entry().error};
    if (entry == n) return {reader.entry().text, AddressError::kNone};
  }
}

}  // namespace

AddressCount CountAddresses(std::string_view list) {
  AddressReader reader(list);
  const std::size_t entries = reader.CountRest();
  return {entries, reader.entry().error};
}

ListedAddress NthAddress(std::string_view list, std::size_t n) {
  AddressReader reader(list);
  for (;; --n) {
    if (!reader.Read()) return {{}, reader.entry().error};
    if (n == 0) return {reader.entry().text, AddressError::kNone};
  }
}

ListedAddress NthAddressAgain(std::string_view list, std::size_t n) {
  if (list.size() < kRememberedList || n < kStep) return NthAddress(list, n);
  ReadList* read = g_list.exchange(nullptr);
  if (!IsCopyOf(read, list)) {
    std::free(read);
    read = Copied(list);
  }
  if (read == nullptr) return NthAddress(list, n);
  const ListedAddress entry = ReadOn(read, list, n);
  std::free(g_list.exchange(read));
  return entry;
}

}  // namespace wfinfo
