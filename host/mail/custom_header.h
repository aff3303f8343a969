// Which headers of a mail are shown, and how, by a text of names.
//
//   From, To, Subject              these, in this order
//   Subject=Betreff, Date          with another name in front
//   From, *, -Received, -DKIM-*    then all others but those with a minus;
//                                  a "*" at the end of a name: any ending
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// The headers of `block`, each as it stands there, with a line end. A name that the block does not hold shows
// nothing; "" shows From, To, Cc, Subject and Date.
std::string CustomHeaders(std::string_view spec, std::string_view block);

}  // namespace wrenfold
