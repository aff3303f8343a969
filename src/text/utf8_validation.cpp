#include "src/text/cpu.h"
#include "src/text/utf8_validation_sets.h"

namespace wfinfo {
namespace {

constexpr const Utf8Validator* kSets[] = {&kSse2Utf8Validator, &kAvx2Utf8Validator};

}  // namespace

std::span<const Utf8Validator* const> RunnableUtf8Validators() { return RunnableOf(kSets); }

bool IsWellFormedUtf8(std::string_view text) { return RunnableUtf8Validators().back()->is_well_formed(text); }

}  // namespace wfinfo
