#include "host/terminal/host_text.h"

#include "host/charset/charsets.h"
#include "host/terminal/terminal_text.h"

namespace wrenfold {

std::string ShownHostText(std::string_view host_text) {
  return Printable(SystemCharsets().HostToUtf8(host_text));
}

}  // namespace wrenfold
