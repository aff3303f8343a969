// The small host's own version.
#pragma once

namespace wrenfold {

inline constexpr char kHostVersion[] = "1.0.0";
inline constexpr int kHostVersionNumber = 100;  // answered for code 48: hundredths

}  // namespace wrenfold
