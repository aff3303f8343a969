// Who is to get a mail, as its headers name them. Lists are UTF-8 or the bytes of a mail file.
#pragma once

#include <string_view>

namespace wrenfold {

// The first entry of a header of recipients that names no address, "" for none: `nobody`, `<broken`, `a@b@c`,
// `a b@c`, `a@b (c`, one that is not ASCII, which no header can hold; not `Doe` in "Doe, John
// <j@example.com>" and no empty group.
std::string_view UnreadableRecipient(std::string_view list);

// Whether some entry names an address; an empty group does not.
bool NamesRecipient(std::string_view list);

}  // namespace wrenfold
