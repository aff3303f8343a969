#include "host/terminal/box_text.h"

#include <cstddef>

#include "host/terminal/terminal_text.h"

namespace wrenfold {
namespace {

constexpr std::size_t kMostText = 1000;  // characters
constexpr std::size_t kMostLabel = 100;

}  // namespace

std::string BoxLine(const ShownBox& box, BoxFate fate) {
  const bool is_there = fate == BoxFate::kWaits || fate == BoxFate::kStands;
  std::string line = "the box " + Quoted(box.caption, kMostLabel) + (is_there ? " waits" : " showed");
  if (!box.text.empty()) line += ": " + OnOneLine(box.text, kMostText);
  const std::string button = Quoted(box.button, kMostLabel);
  switch (fate) {
    case BoxFate::kWaits:
      return line + "; press a button, or start again with --yes, which " +
             (box.button.empty() ? "closes it" : "presses its default one, " + button);
    case BoxFate::kStands:
      return line + "; it goes when what it waits for has ended";
    case BoxFate::kPressed:
      return line + "; --yes pressed " + button;
    case BoxFate::kClosed:
      return line + "; --yes closed it";
  }
  return line;
}

}  // namespace wrenfold
