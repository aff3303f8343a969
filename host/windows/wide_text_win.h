// Host text for the wide functions of Windows.
#pragma once

#include <string>
#include <string_view>

#include "host/charset/charsets.h"

namespace wrenfold {

inline std::wstring WideText(std::string_view host) {
  const std::u16string wide = SystemCharsets().FromHostText(host);
  return {wide.begin(), wide.end()};
}

}  // namespace wrenfold
