#include "host/terminal/shown_host_text.h"

#include <cstddef>

#include "host/charset/charsets.h"
#include "host/terminal/terminal_text.h"
#include "src/text/host_text.h"

namespace wrenfold {

std::string ShownHostText(std::string_view host_text) {
  return Printable(SystemCharsets().HostToUtf8(host_text));
}

std::string QuotedHostText(std::string_view host_text) {
  constexpr std::size_t kMost = 60;  // characters
  // Only the beginning is converted; a mail can be large.
  const std::string_view beginning = host_text.substr(0, wfinfo::CutLength(host_text, 8 * kMost));
  std::string shown = Quoted(SystemCharsets().HostToUtf8(beginning), kMost);
  if (shown.ends_with("...")) shown += " (" + std::to_string(host_text.size()) + " bytes)";
  return shown;
}

}  // namespace wrenfold
