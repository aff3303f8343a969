// Host text to UTF-16 and back: nothing leaves its room, units stay whole, and what went through once stays
// the same.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/text/host_text.h"
#include "src/text/wide_text.h"
#include "tests/support/iconv_code_page.h"

namespace {

std::u16string Wide(std::string_view host) {
  const std::unique_ptr<char16_t[]> units(new char16_t[host.size()]);
  const std::size_t count = wfinfo::HostToWide(host, units.get(), wfinfo_test::IconvCodePage());
  Demand(count <= host.size());
  return {units.get(), count};
}

std::string Host(std::u16string_view wide) {
  const std::unique_ptr<char[]> bytes(new char[4 * wide.size()]);
  const std::size_t count = wfinfo::WideToHost(wide, bytes.get(), wfinfo_test::IconvCodePage());
  Demand(count >= wide.size() && count <= 4 * wide.size());
  return {bytes.get(), count};
}

// Each unit by itself gives the same as the whole.
void CheckUnits(std::string_view host, const std::u16string& wide) {
  std::u16string joined;
  while (!host.empty()) {
    // A lead byte before a zero stands alone here.
    std::size_t length = wfinfo::UnitLength(host);
    if (length == 2 && host[1] == '\0') length = 1;
    joined += Wide(host.substr(0, length));
    host.remove_prefix(length);
  }
  Demand(joined == wide);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view host(reinterpret_cast<const char*>(data), size);
  const std::u16string wide = Wide(host);
  CheckUnits(host, wide);
  // The way back need not give the same bytes (some characters have two codes), but it must be stable.
  const std::string once = Host(wide);
  Demand(Host(Wide(once)) == once);
  // Any UTF-16: escapes carry what the code page cannot hold.
  std::u16string any(size / 2, u'\0');
  for (std::size_t i = 0; i < any.size(); ++i)
    any[i] = static_cast<char16_t>(data[2 * i] | data[2 * i + 1] << 8);
  const std::string text = Host(any);
  Demand(Host(Wide(text)) == text);
  return 0;
}
