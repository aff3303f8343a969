// Slots of argument blocks and answers of the host: an integer widened to 64 bits, or a pointer.
#pragma once

#include <cstdint>

namespace wfinfo {

using Slot = long long;

inline Slot ToSlot(long long value) { return value; }
inline Slot ToSlot(unsigned long long value) { return static_cast<Slot>(value); }
inline Slot ToSlot(int value) { return value; }
inline Slot ToSlot(unsigned value) { return value; }
inline Slot ToSlot(const void* pointer) {
  return static_cast<Slot>(reinterpret_cast<std::intptr_t>(pointer));
}

// The pointer or handle in a slot. Whether it leads anywhere, the slot does not tell.
template <class Pointer>
Pointer FromSlot(Slot slot) {
  return reinterpret_cast<Pointer>(static_cast<std::intptr_t>(slot));
}

}  // namespace wfinfo
