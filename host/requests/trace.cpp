#include "host/requests/trace.h"

#include "host/base/ascii.h"
#include "host/charset/charsets.h"
#include "host/library/secrets.h"
#include "host/terminal/shown_host_text.h"

namespace wrenfold {
namespace {

std::string JsonText(std::string_view utf8) {
  std::string text = "\"";
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      text.append("\\").append(1, c);
    } else if (byte < 0x20) {
      text += "\\u00" + Lower(HexOf(c));
    } else {
      text += c;
    }
  }
  return text += '"';
}

std::string JsonValue(const macro::Value& value) {
  return value.IsText() ? JsonText(SystemCharsets().HostToUtf8(value.Text())) : value.Printed();
}

std::string JsonList(std::span<const macro::Value> values) {
  std::string list;
  for (const macro::Value& value : values) list += (list.empty() ? "" : ",") + JsonValue(value);
  return "[" + list + "]";
}

std::string JsonRequest(const TracedRequest& request) {
  return "{\"request\":" + JsonText(request.names) + ",\"code\":" + std::to_string(request.key.code) +
         ",\"command\":" + std::to_string(request.key.command) + ",\"slots\":" + JsonList(request.values) +
         ",\"answer\":" + JsonValue(request.answered) + ",\"served\":" + (request.served ? "true" : "false") +
         ",\"reason\":" + JsonText(request.reason) + "}";
}

std::string JsonPlace(const std::optional<macro::Location>& at) {
  if (!at) return "";
  return ",\"file\":" + JsonText(at->file) + ",\"line\":" + std::to_string(at->place.line) +
         ",\"column\":" + std::to_string(at->place.column);
}

std::string_view FateWord(BoxFate fate) {
  switch (fate) {
    case BoxFate::kPressed:
      return "pressed";
    case BoxFate::kClosed:
      return "closed";
    default:
      return "waits";
  }
}

std::string JsonBox(const TracedBox& shown) {
  return "{\"box\":" + JsonText(shown.box.caption) + ",\"text\":" + JsonText(shown.box.text) +
         ",\"button\":" + JsonText(shown.box.button) + ",\"fate\":" + JsonText(FateWord(shown.fate)) +
         ",\"call\":" + JsonText(shown.name) + JsonPlace(shown.at) + "}";
}

std::string JsonCall(const TracedCall& call) {
  const std::string text = "{\"call\":" + JsonText(call.name) + JsonPlace(call.at);
  return text + ",\"parameters\":" + JsonList(WithoutSecrets(call.name, call.parameters)) +
         ",\"result\":" + JsonValue(call.result) + ",\"reason\":" + JsonText(call.reason) + "}";
}

std::string TextRequest(const TracedRequest& request) {
  const std::string title = RequestTitle(request.key);
  if (!request.served) return "not served: " + title + " (" + request.names + ") -> 0";
  const std::string reason = request.reason.empty() ? "" : " (" + request.reason + ")";
  return request.names + ": " + title + request.slots + " -> " + request.answer + reason;
}

}  // namespace

bool Trace::Request(std::string_view calling, const TracedRequest& request) const {
  const bool shown = Shows(calling) || Shows(std::to_string(request.key.code)) ||
                     (request.key.command != 0 && Shows(std::to_string(request.key.command)));
  if (!shown) return false;
  if (text_) text_("trace: " + TextRequest(request) + "\n");
  if (json_) json_(JsonRequest(request) + "\n");
  return true;
}

void Trace::Call(const TracedCall& call, bool by_request) const {
  if (!by_request && !Shows(call.name)) return;
  const std::string reason = call.reason.empty() ? "" : " (" + std::string(call.reason) + ")";
  if (text_) {
    text_("trace: " + ShownLocation(call.at) + ShownCall(call.name, call.parameters) + " -> " +
          ShownValue(call.result) + reason + "\n");
  }
  if (json_) json_(JsonCall(call) + "\n");
}

void Trace::Message(std::string_view name, std::string_view text) const {
  if (json_ && Shows(name)) json_("{\"message\":" + JsonText(text) + ",\"call\":" + JsonText(name) + "}\n");
}

void Trace::Box(const TracedBox& shown) const {
  if (json_ && Shows(shown.name)) json_(JsonBox(shown) + "\n");
}

void Trace::Stopped(std::string_view why) const {
  if (json_) json_("{\"stopped\":" + JsonText(why) + "}\n");
}

std::string ShownValue(const macro::Value& value) {
  return value.IsText() ? QuotedHostText(value.Text()) : value.Printed();
}

std::string ShownCall(std::string_view name, std::span<const macro::Value> parameters) {
  std::string text(name);
  const char* before = "(";
  for (const macro::Value& parameter : WithoutSecrets(name, parameters)) {
    text += before + ShownValue(parameter);
    before = ", ";
  }
  return text + (parameters.empty() ? "()" : ")");
}

std::string ShownLocation(const std::optional<macro::Location>& at) {
  if (!at || at->file.empty()) return "";
  return std::string(at->file) + ":" + std::to_string(at->place.line) + ":" +
         std::to_string(at->place.column) + ": ";
}

}  // namespace wrenfold
