// What tools/mutants.py writes around the places of a file that can be changed: each is a mutant with a number, and of
// all of them the one is alive that the test program names (tests/support/mutant_listener.cpp).
#pragma once

extern "C" int g_mutant;
extern "C" unsigned char g_mutants_met[];

namespace mutants {

inline bool IsAlive(int number) {
  g_mutants_met[number] = 1;
  return g_mutant == number;
}

template <typename T>
inline T Constant(int number, T value) {  // two mutants
  if (IsAlive(number)) return static_cast<T>(value + 1);
  return IsAlive(number + 1) ? T{} : value;
}

inline bool Condition(int number, bool value) { return IsAlive(number) != value; }

template <typename Right>
inline bool And(int number, bool left, Right right) {
  return IsAlive(number) ? left || right() : left && right();
}
template <typename Right>
inline bool Or(int number, bool left, Right right) {
  return IsAlive(number) ? left && right() : left || right();
}

#define WFINFO_COMPARISON(name, right_one, wrong_one)       \
  template <typename A, typename B>                         \
  inline bool name(int number, const A& a, const B& b) {    \
    return IsAlive(number) ? a wrong_one b : a right_one b; \
  }
WFINFO_COMPARISON(Less, <, <=)
WFINFO_COMPARISON(LessOrEqual, <=, <)
WFINFO_COMPARISON(More, >, >=)
WFINFO_COMPARISON(MoreOrEqual, >=, >)
WFINFO_COMPARISON(Equal, ==, !=)
WFINFO_COMPARISON(Unequal, !=, ==)
#undef WFINFO_COMPARISON

}  // namespace mutants
