// HTML made of plain text, quoted HTML, and the HTML of a mail as it came.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/mime/message.h"
#include "host/mime/sections.h"

namespace wrenfold {

// Lines end in <br>; blanks at the beginning of a line and behind another blank do not break. TextOfHtml
// gives the text back, but for blanks at the end of a line.
std::u16string HtmlOfText(std::u16string_view text);

// What stands in the body, or all without one, in a <blockquote>.
std::u16string QuotedHtml(std::u16string_view html);

// The first text/html part that is not attached; nullopt when the mail has none.
std::optional<std::u16string> HtmlOfMail(const MessageParts& message,
                                         const Charsets& charsets = SystemCharsets());

// The charset that the text of a mail names, "" for none: of its first plain text that is not attached, else
// of its HTML.
std::string CharsetOfShownText(const MessageParts& message, const Charsets& charsets = SystemCharsets());

}  // namespace wrenfold
