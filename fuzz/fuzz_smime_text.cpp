// Names and addresses of strangers' certificates in reports: a cleaned name holds no control character and no
// mark; a report never leaves its buffer nor ends in half a character; the items of a recipient list joined
// again are the list; the signer's address lies inside its report; mail names lie inside their extension.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/smime/address_words.h"
#include "src/smime/mail_names.h"
#include "src/smime/report_writer.h"
#include "src/text/host_text.h"

using namespace wfinfo;
using namespace wfinfo::smime;

namespace {

void CheckName(std::string name, bool was_cut) {
  const std::size_t before = name.size();
  CleanName(name.data(), was_cut);
  const std::string_view shown = name.c_str();
  Demand(shown.size() <= before);
  for (const char byte : shown) Demand(static_cast<unsigned char>(byte) >= 0x20 && byte != 0x7F);
  for (const char* const mark : {kGoodMark, kUnsureMark, kProblemMark}) Demand(!HoldsMark(shown, mark));
}

// The bytes of `text` that were written are whole characters of it.
void CheckCut(std::string_view written, std::string_view text, std::size_t room) {
  Demand(written.size() < room && text.starts_with(written));
  std::size_t at = 0;
  while (at < written.size()) at += UnitLength(text.substr(at));
  Demand(at == written.size());
}

void CheckReport(const std::string& text, std::size_t room) {
  const auto buffer = std::make_unique<char[]>(room);  // of exactly this size: the sanitizer sees a byte more
  ReportWriter report(buffer.get(), room);
  report.Add(text);
  Demand(std::strlen(report.text()) == report.view().size());
  CheckCut(report.view(), text, room);
  if (text.find('\x1A') != text.npos) return;  // names and addresses come without
  ReportWriter formatted(buffer.get(), room);
  formatted.AddFormat("%s", text.c_str());
  CheckCut(formatted.view(), text, room);
}

void CheckLists(const std::string& text, std::size_t capacity) {
  std::string joined;
  const std::size_t count = CountRecipients(text);
  const auto buffer = std::make_unique<char[]>(capacity);
  AddressListWriter list(buffer.get(), capacity);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view item = RecipientAt(text, i);
    Demand(item.find(' ') == item.npos);
    if (i != 0) joined += ' ';
    joined += item;
    list.Add(item);
  }
  Demand(joined == text);
  const std::string_view written = buffer.get();
  Demand(written.size() < capacity);
  Demand(static_cast<std::size_t>(std::count(written.begin(), written.end(), ',')) < count);
}

void CheckMailNames(std::string_view encoded) {
  MailNames names(encoded);
  std::size_t before = 0;
  while (const auto name = names.Next()) {
    const auto at = static_cast<std::size_t>(name->data() - encoded.data());
    Demand(at > before && at + name->size() <= encoded.size());
    before = at;
  }
}

void CheckSigner(std::string_view report, std::string_view label) {
  const std::string_view address = SignerAddressIn(report, label);
  Demand(address.size() < 128);
  Demand(std::all_of(address.begin(), address.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) > ' '; }));
  if (address.empty()) return;
  Demand(address.data() >= report.data() && address.data() + address.size() <= report.data() + report.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t room = 8 + data[0] % 64;
  std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  CheckMailNames(text);
  text.resize(std::min(text.size(), text.find('\0')));
  CheckName(text, false);
  CheckName(text, true);
  CheckReport(text, room);
  CheckLists(text, room);
  CheckSigner(text, "Signer email address: ");
  CheckSigner(text, "L");
  return 0;
}
