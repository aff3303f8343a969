#include "src/message/line_scan.h"

#include "src/message/line_scan_sets.h"
#include "src/text/cpu.h"

namespace wfinfo {

const LineKernels& Lines() {
  if (HasAvx512()) return kAvx512LineKernels;
  return HasAvx2() ? kAvx2LineKernels : kSse2LineKernels;
}

}  // namespace wfinfo
