#include "src/csv/csv_kernels.h"

#include "src/csv/csv_kernels_sets.h"
#include "src/text/cpu.h"

namespace wfinfo {
namespace {

constexpr const CsvKernels* kSets[] = {&kByteCsvKernels, &kSse2CsvKernels, &kAvx2CsvKernels};

}  // namespace

std::span<const CsvKernels* const> RunnableCsvKernels() { return RunnableOf(kSets); }

const CsvKernels& BestCsvKernels() { return *RunnableCsvKernels().back(); }

}  // namespace wfinfo
