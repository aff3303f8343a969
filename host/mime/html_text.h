// Text of an HTML mail that has no plain part: tags dropped, the common entities resolved, lines at
// block tags.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

std::u16string TextOfHtml(std::u16string_view html);

}  // namespace wrenfold
