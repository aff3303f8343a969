#include "smime/message_store_win.h"

#include <utility>

namespace wfinfo::smime {
namespace {
HCERTSTORE g_messageStore = nullptr;
}

void KeepMessageStore(HCERTSTORE store) {
  const HCERTSTORE before = std::exchange(g_messageStore, store);
  if (before != nullptr) CloseStore(before);
}

HCERTSTORE MessageStore() { return g_messageStore; }

HCERTSTORE TakeMessageStore() { return std::exchange(g_messageStore, nullptr); }

}  // namespace wfinfo::smime
