// Writing mail: headers and MIME parts as RFC 5322, 2047 and 2231 have them, UTF-8 where ASCII does not do.
// What comes in is UTF-8; control characters in header values become blanks, so that none ends its header.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

std::string Base64(std::string_view bytes);
// In lines of 76 digits, each with its line end.
std::string Base64Lines(std::string_view bytes);

// "=?UTF-8?B?...?=" words, one a line, each of whole characters.
std::string EncodedWords(std::string_view utf8);

// A header's text without structure, as it stands when a reader takes it so.
std::string UnstructuredValue(std::string_view utf8);

// A list of mailboxes as a header's value, one a line. A recipient with neither an "@" nor brackets is a name
// that no address is known of: it is written as an empty group, "name:;". Such a piece in front of a
// bracketed address belongs to its name ("Doe, John <j@x>").
std::string AddressListValue(std::string_view list);

// Pieces of a list between its commas; those in quotes and in brackets separate nothing.
std::vector<std::string_view> AddressPieces(std::string_view list);

// `parameter`="a b.txt", or `parameter`*=UTF-8''%E3... for what ASCII cannot say.
std::string NameParameter(std::string_view parameter, std::string_view utf8);

// Every kind of line end as CR LF; the last line gets one too.
std::string WithCrLf(std::string_view text);

// True for ASCII in lines that every server passes on.
bool FitsSevenBits(std::string_view text);

// Header and content of a part of a mail.
std::string TextPart(std::string_view bytes, std::string_view type = "text/plain",
                     std::string_view charset = "UTF-8");
// An attached file. A mail goes along as it is, as no mail may be encoded, when its lines allow it.
std::string FilePart(std::string_view name, std::string_view bytes,
                     std::string_view type = "application/octet-stream");

// The parts, each a part's header and content, as a part of their own: "multipart/`subtype`". `boundary` is
// lengthened until it stands in none of them.
std::string MultiPart(std::string_view subtype, std::string boundary, const std::vector<std::string>& parts);

}  // namespace wrenfold
