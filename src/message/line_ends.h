// Line ends that steer folding: CR LF is an ordinary line end; CR CR LF tells the host not to fold the line.
//
// Read here, a line end is LF, CR, CR LF, CR CR or CR CR LF. Every line gets the wanted one, the last line
// too, even when the text did not end with one. Text is zero-terminated host text; an escape's last byte is
// no CR.
#pragma once

#include <cstddef>

#include "src/message/line_scan.h"

namespace wfinfo {

// Measures the rewriting of `text`; the result's `output` is what WriteLineEnds will write.
inline FoldSize MeasureLineEnds(const char* text, LineEnd form) { return Lines().measure_folded(text, form); }

// Writes `text` with all line ends rewritten to `out`, which has room for size.output bytes, as
// MeasureLineEnds told for the same text and form. No terminator is written. `out` overlaps nothing of
// the text.
void WriteLineEnds(const char* text, LineEnd form, const FoldSize& size, char* out);

}  // namespace wfinfo
