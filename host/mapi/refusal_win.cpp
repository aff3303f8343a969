#include "host/mapi/refusal_win.h"

#include <cstring>
#include <string_view>

#include "host/charset/charsets.h"
#include "host/mapi/handed_block_win.h"
#include "host/mapi/mail_command.h"
#include "host/mapi/store.h"
#include "src/base/unique_win.h"
#include "src/bridge/host_protocol.h"
#include "src/mapi/host_blocks.h"

namespace wrenfold {
namespace {

using namespace wfinfo::mapi;

constexpr std::string_view kWhy = ": this host runs macros and serves no other program; ";

// "a mail of another program", with subject and recipients as far as they can be read.
std::string Described(HANDLE mapping) {
  const std::string nameless = "a mail of another program";
  const HandedBlock block(mapping);
  if (block.bytes() == nullptr || block.size() <= kCommandLineAt) return nameless;
  const char* const line = block.bytes() + kCommandLineAt;
  const auto request = ParseMailCommand({line, strnlen(line, block.size() - kCommandLineAt)});
  if (!request) return nameless;
  std::string text = nameless + " (\"" + SystemCharsets().HostToUtf8(request->subject.value_or("")) + "\"";
  if (!request->to.empty()) text += " to " + SystemCharsets().ForeignToUtf8(request->to);
  return text + ")";
}

// A caller waits for the event, and then asks its user to wait on.
void AnswerStoreRequest(HANDLE mapping) {
  const HandedBlock block(mapping);
  if (block.bytes() == nullptr || block.size() < sizeof(StoreHead)) return;
  auto& head = *reinterpret_cast<StoreHead*>(block.bytes());
  head.result = static_cast<std::uint32_t>(MapiResult::kFailure);
  const wfinfo::UniqueHandle event(reinterpret_cast<HANDLE>(head.event));
  SetEvent(event.get());
}

}  // namespace

std::optional<LRESULT> RefuseOtherProgram(UINT message, WPARAM wparam, LPARAM lparam,
                                          void (*complain)(const std::string& line)) {
  switch (message) {
    case wfinfo::kHostPassCommandLine:
      complain(Described(reinterpret_cast<HANDLE>(wparam)) + " was refused" + std::string(kWhy) +
               "send it again when this host has ended");
      return 0;
    case wfinfo::kHostStoreRequest:
      AnswerStoreRequest(reinterpret_cast<HANDLE>(lparam));
      complain("another program's wish to read mails was refused" + std::string(kWhy) +
               "let it try again when this host has ended");
      return 0;
    default:
      return std::nullopt;
  }
}

}  // namespace wrenfold
