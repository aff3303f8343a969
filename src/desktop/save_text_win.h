// Writing a host text to a file in one of four encodings.
#pragma once

namespace wfinfo {

// `encoding` 0 is host text, 2 UTF-8, 3 UTF-8 with a byte-order mark, any other UTF-16; a host text with a
// 0x1A becomes UTF-16. The host converts. False when the file cannot be opened or written, or the host does
// not answer.
bool SaveText(const char* file_name, const char* text, int append, int encoding);

}  // namespace wfinfo
