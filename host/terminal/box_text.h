// What is told of a box that shows while nobody may be there to press its buttons.
#pragma once

#include <string>

namespace wrenfold {

struct ShownBox {
  std::string caption;
  std::string text;
  std::string button;  // label of its default one, "" when it has none that can be pressed
};

enum class BoxFate : unsigned char {
  kWaits,    // for a user
  kStands,   // for long, until something ends that it waits for itself
  kPressed,  // its default button
  kClosed,   // as Esc does it: it has no default button, or stayed when that was pressed
};

// `the box "Error" waits: certificate missing; ...`, on one line, UTF-8.
std::string BoxLine(const ShownBox& box, BoxFate fate);

}  // namespace wrenfold
