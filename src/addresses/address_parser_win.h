// The address parser for callers that hold plain zero-terminated texts and show its diagnostics.
#pragma once

namespace wfinfo {

// Reads one entry off the front of the address list `text`. Returns where the next entry begins, or null when
// the list holds no further entry or the entry is malformed. Writes no byte of `text`.
//   address_out  512 bytes: the address without brackets
//   name_out     512 bytes or null: the display name as QuoteDisplayName leaves it, "" when there is none
//   error_out    256 bytes or null: what is wrong with the entry, in the language in use; "" otherwise
//   flags_out, extra_out  or null: set to 0; nothing else is told through them
//   code_page    932, or 65001 for UTF-8
//   reserved     not looked at
//   decode_words when non-zero, MIME encoded words are units and folds are left out of the parts
const char* ParseAddressEntry(const char* text, char* address_out, char* name_out, char* error_out,
                              int* flags_out, int* extra_out, unsigned code_page, int reserved,
                              int decode_words);

}  // namespace wfinfo
