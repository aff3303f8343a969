#include "src/addresses/address_quick.h"

#include "src/addresses/address_quick_sets.h"
#include "src/text/cpu.h"

namespace wfinfo {
namespace {

bool RefuseAll(std::string_view, QuickAddress*) { return false; }
std::size_t CountNone(std::string_view, std::size_t*) { return 0; }

// Leaves everything to the scanner.
constexpr AddressKernels kNoAddressKernels = {"scanner", RefuseAll, CountNone};

constexpr const AddressKernels* kSets[] = {&kNoAddressKernels, &kSse2AddressKernels, &kAvx2AddressKernels};

}  // namespace

std::span<const AddressKernels* const> RunnableAddressKernels() { return RunnableOf(kSets); }

const AddressKernels& BestAddressKernels() { return *RunnableAddressKernels().back(); }

}  // namespace wfinfo
