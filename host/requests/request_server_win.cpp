#include "host/requests/request_server_win.h"

#include "host/library/request_names.h"
#include "host/terminal/shown_host_text.h"
#include "host/terminal/terminal_text.h"
#include "src/bridge/host_protocol.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

constexpr std::size_t kLongestReason = 500;           // characters
constexpr UINT_PTR kLongestText = UINT_PTR{1} << 30;  // bytes; a longer one is no text

// The text at an address that a macro may have made up; nullptr when none is readable there.
const char* ReadableText(Slot address) {
  const auto* text = reinterpret_cast<const char*>(address);
  return IsBadStringPtrA(text, kLongestText) ? nullptr : text;
}

std::string TracedAddress(Slot value) {
  char text[24];
  wsprintfA(text, "0x%I64X", value);
  return text;
}

std::string TracedSlot(Slot value, char shape) {
  if (shape == 'I') return std::to_string(value);
  if (value == 0) return "null";
  const char* text = shape == 'T' ? ReadableText(value) : nullptr;
  return text != nullptr ? QuotedHostText(text) : TracedAddress(value);
}

macro::Value ValueOfSlot(Slot value, char shape) {
  if (shape == 'I') return value;
  if (value == 0) return {};
  const char* text = shape == 'T' ? ReadableText(value) : nullptr;
  return std::string(text != nullptr ? text : TracedAddress(value));
}

struct Traced {
  std::string text;  // " (1, \"text\")"
  std::vector<macro::Value> values;
};

Traced TracedSlots(LPARAM block, std::string_view shapes) {
  if (block == 0) return {};
  if (shapes == "P") return {" (" + TracedSlot(block, 'T') + ")", {ValueOfSlot(block, 'T')}};
  const auto* slots = reinterpret_cast<const Slot*>(block);
  if (IsBadReadPtr(slots, shapes.size() * sizeof(Slot)))
    return {" (" + TracedAddress(block) + ")", {macro::Value(TracedAddress(block))}};
  Traced traced{" (", {}};
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    if (i > 0) traced.text += ", ";
    traced.text += TracedSlot(slots[i], shapes[i]);
    traced.values.push_back(ValueOfSlot(slots[i], shapes[i]));
  }
  traced.text += ")";
  return traced;
}

// Menu command in the first slot of the codes that carry one.
long long CarriedCommand(int code, LPARAM block) {
  if (!wfinfo::CarriesCommand(code)) return 0;
  const auto* slots = reinterpret_cast<const Slot*>(block);
  return IsBadReadPtr(slots, sizeof(Slot)) ? 0 : slots[0];
}

}  // namespace

// --- Requests ---

Slot Request::Number(std::size_t slot) const {
  return block_ == nullptr || IsBadReadPtr(block_ + slot, sizeof(Slot)) ? 0 : block_[slot];
}

bool Request::HasText(std::size_t slot) const { return ReadableText(Number(slot)) != nullptr; }

std::string_view Request::Text(std::size_t slot) const {
  const char* text = ReadableText(Number(slot));
  return text == nullptr ? "" : text;
}

void Request::FillBuffer(std::size_t address_slot, std::size_t size_slot, std::string_view text) const {
  auto* buffer = reinterpret_cast<char*>(Number(address_slot));
  const Slot size = Number(size_slot);
  if (size <= 0 || IsBadWritePtr(buffer, static_cast<UINT_PTR>(size))) return;
  wfinfo::CopyWithinLimit(buffer, text, static_cast<std::size_t>(size));
}

void Request::SetLowNumber(std::size_t slot, std::uint32_t value) const {
  if (block_ == nullptr || IsBadWritePtr(block_ + slot, sizeof(Slot))) return;
  auto bits = static_cast<std::uint64_t>(block_[slot]);
  bits = (bits & ~std::uint64_t{0xFFFFFFFF}) | value;
  block_[slot] = static_cast<Slot>(bits);
}

std::string_view Request::WholeText() const {
  const char* text = ReadableText(reinterpret_cast<Slot>(block_));
  return text == nullptr ? "" : text;
}

Answer Request::AnswerText(std::string text) const {
  return AnswerKept(server_.Keep(code_, std::move(text)));
}

Answer Request::AnswerKept(const std::string& text) {
  return {reinterpret_cast<Slot>(text.c_str()), true, true};
}

Answer Request::Fail(std::string_view why) const {
  server_.NoteFailure();
  return None(why);
}

Answer Request::None(std::string_view why) const {
  state.failure = OnOneLine(why, kLongestReason);
  return {.explained = true};
}

// --- Tables ---

const Service* RequestServer::FindService(int code) const {
  for (const ServiceFamily* family : families_) {
    for (const Service& service : family->services) {
      if (service.code == code) return &service;
    }
  }
  return nullptr;
}

const Command* RequestServer::FindCommand(long long id) const {
  for (const ServiceFamily* family : families_) {
    for (const Command& command : family->commands) {
      if (command.id == id) return &command;
    }
  }
  return nullptr;
}

// --- Server ---

CallUnderWay RequestServer::BeginCall(std::string name) {
  state_.failure.clear();
  return std::exchange(call_, {std::move(name), ""});
}

Slot RequestServer::Serve(int code, LPARAM block) {
  ++requests_;
  const RequestKey key{code, CarriedCommand(code, block)};
  const Service* service = FindService(code);
  const Command* command = key.command != 0 ? FindCommand(key.command) : nullptr;
  const Handler handler = service != nullptr   ? service->handler
                          : command != nullptr ? command->handler
                                               : nullptr;
  Traced slots;
  if (trace_.IsOn()) {
    const std::string shapes =
        service != nullptr && service->shapes != nullptr ? service->shapes : SlotShapes(key, call_.name);
    slots = TracedSlots(block, shapes);  // before the handler writes to them
  }
  Request request(*this, state_, code, reinterpret_cast<Slot*>(block));
  const Answer answer = handler != nullptr ? handler(request) : Request::NotServed();
  if (!answer.served) {
    NoteUnserved(key);
    return 0;
  }
  if (trace_.IsOn()) Show(key, std::move(slots.text), std::move(slots.values), answer);
  return answer.value;
}

Slot RequestServer::ServeCommand(int id) {
  ++requests_;
  const RequestKey key{0, id};
  const Command* command = FindCommand(id);
  if (command == nullptr) {
    NoteUnserved(key);
    return 0;
  }
  Request request(*this, state_, 0, nullptr);
  const Answer answer = command->handler(request);
  if (trace_.IsOn()) Show(key, "", {}, answer);
  return answer.value;
}

void RequestServer::Show(const RequestKey& key, std::string slots, std::vector<macro::Value> values,
                         Answer answer) {
  const bool is_text = answer.is_text && answer.value != 0;
  const macro::Value answered =
      is_text ? macro::Value(std::string(reinterpret_cast<const char*>(answer.value))) : answer.value;
  Note({RequestNames(key, call_.name), key, std::move(slots), std::move(values), ShownValue(answered),
        answered, answer.explained ? state_.failure : ""});
}

void RequestServer::Note(const TracedRequest& request) {
  if (!trace_.Request(call_.name, request)) return;
  call_.traced = true;
  ++shown_;
}

void RequestServer::NoteUnserved(const RequestKey& key) {
  const std::string title = RequestTitle(key);
  if (call_.unserved.empty()) call_.unserved = title;
  Unserved& unserved = unserved_[title];
  if (++unserved.count > 1) return;
  const std::string names = RequestNames(key, call_.name);
  unserved.title = title + " (" + names + ")";
  if (trace_.IsOn()) Note({names, key, "", {}, "0", macro::Value(0), "", false});
}

std::uint64_t RequestServer::not_served() const {
  std::uint64_t count = 0;
  for (const auto& entry : unserved_) count += entry.second.count;
  return count;
}

std::string RequestServer::Summary() const {
  const std::string shown = trace_.IsLimited() ? std::to_string(shown_) + " shown of " : "";
  std::string text = shown + std::to_string(requests_) + (requests_ == 1 ? " request, " : " requests, ") +
                     std::to_string(not_served()) + " not served";
  const char* before = ": ";
  for (const auto& entry : unserved_) {
    text += before + entry.second.title;
    if (entry.second.count > 1) text += " " + std::to_string(entry.second.count) + " times";
    before = ", ";
  }
  return text;
}

}  // namespace wrenfold
