// The validators behind IsWellFormedUtf8, one for each kind of vector unit.
#pragma once

#include "src/text/utf8_text.h"

namespace wfinfo {

extern const Utf8Validator kSse2Utf8Validator;
extern const Utf8Validator kAvx2Utf8Validator;

}  // namespace wfinfo
