#include "src/commands/account_fields.h"

#include <algorithm>
#include <cstring>

namespace wfinfo {
namespace {

// The byte whose lowest bit is `fSaveUidlInMail`, and whose other bits need that one.
constexpr std::size_t kSynchronisingByte = 1386;
constexpr unsigned kSaveUidlBit = 0x01;
constexpr unsigned kNeedsUidlBits = 0xFE;

unsigned ByteAt(const char* record, std::size_t offset) { return static_cast<unsigned char>(record[offset]); }

template <class Number>
Number Load(const char* field) {
  Number number;
  std::memcpy(&number, field, sizeof number);
  return number;
}

template <class Number>
void Store(char* field, long long value) {
  const auto number = static_cast<Number>(value);
  std::memcpy(field, &number, sizeof number);
}

void StoreBits(const AccountKey& key, bool on, char* record) {
  unsigned byte = ByteAt(record, key.offset);
  byte = on ? byte | key.mask : byte & ~static_cast<unsigned>(key.mask);
  if (key.offset == kSynchronisingByte && (byte & kNeedsUidlBits) != 0) byte |= kSaveUidlBit;
  record[key.offset] = static_cast<char>(byte);
}

void StoreTerminated(char* field, std::string_view value) {
  std::memmove(field, value.data(), value.size());
  field[value.size()] = '\0';
}

}  // namespace

long long AccountNumber(const AccountKey& key, const char* record) {
  const char* const field = record + key.offset;
  if (key.kind == kWordKind) return Load<std::uint16_t>(field);
  if (key.kind == kNumberKind) return Load<std::int32_t>(field);
  if (key.mask != 0) return (ByteAt(record, key.offset) & key.mask) != 0 ? 1 : 0;
  if (key.mark == KeyMark::kSigned) return Load<std::int8_t>(field);
  return Load<std::uint8_t>(field);
}

void StoreAccountNumber(const AccountKey& key, long long value, char* record) {
  char* const field = record + key.offset;
  if (key.kind == kWordKind) return Store<std::uint16_t>(field, value);
  if (key.kind == kNumberKind) return Store<std::int32_t>(field, value);
  if (key.mask != 0) return StoreBits(key, value != 0, record);
  Store<std::uint8_t>(field, value);
}

bool StoreAccountText(const AccountKey& key, std::string_view value, char* record) {
  if (value.size() >= key.kind) return false;
  StoreTerminated(record + key.offset, value);
  return true;
}

bool StoreSplitText(const SplitText& split, std::string_view value, char* record) {
  if (value.size() > split.Limit()) return false;
  const std::size_t kept = std::min<std::size_t>(value.size(), split.room - 1u);
  const std::size_t behind = std::min<std::size_t>(value.size(), kept + split.dropped);
  // The second place first: the value may lie in the first one.
  StoreTerminated(record + split.overflow_offset, value.substr(behind));
  StoreTerminated(record + split.offset, value.substr(0, kept));
  return true;
}

std::size_t JoinSplitText(const SplitText& split, const char* record, char* destination) {
  const std::string_view first = FieldText(record, split.offset, split.room - 1u);
  const std::string_view second = FieldText(record, split.overflow_offset, split.overflow_room - 1u);
  std::memcpy(destination, first.data(), first.size());
  StoreTerminated(destination + first.size(), second);
  return first.size() + second.size();
}

std::string_view FieldText(const char* record, std::size_t offset, std::size_t room) {
  const char* const field = record + offset;
  const void* const end = std::memchr(field, '\0', room);
  return {field, end == nullptr ? room : static_cast<std::size_t>(static_cast<const char*>(end) - field)};
}

}  // namespace wfinfo
