#include "src/catalogue/requests.h"

#include <charconv>

namespace wfinfo::catalogue {
namespace {

constexpr ParameterType kParameterTypes[] = {
    // A number for a checked text is let through to the library, which reports it.
    {"Text", "const char*", "text (checked)", "text", 'T', true, false, true, true},
    {"OptText", "const char*", "text or null (checked when given)", "text or null", 'T', true, true, true,
     true},
    {"RawText", "const char*", "text (not checked)", "text", 'T', false, false, true, false},
    {"WideText", "const wchar_t*", "UTF-16 text (not checked)", "text", 'W', false, false, true, false},
    {"Value", "long long", "number or text", "number or text", 'I', false, false, true, true},
    {"Int64", "long long", "64-bit value, passed as it lies", "number or text", 'I', false, false, true,
     true},
    {"Int32", "int", "32-bit integer", "number", 'I', false, false, false, true},
    {"UInt32", "unsigned int", "32-bit unsigned integer", "number", 'I', false, false, false, true},
    {"Handle", "void*", "handle", "handle", 'A', false, false, false, true},
    {"Bytes", "const void*", "address of bytes", "text, or the address of bytes", 'A', false, false, true,
     true},
    {"Record", "void*", "address of a record", "address of a record", 'A', false, false, true, true},
    {"Rest", "...", "further 64-bit values", "further numbers or texts", '\0', false, true, true, true},
};
constexpr std::size_t kPlainValue = 5;  // Int64

// What stands for a failure differs from export to export: the row's text tells it.
constexpr ResultType kResultTypes[] = {
    {"Int", "long long", "integer", "a number"},
    {"Int32", "int", "32-bit integer", "a number"},
    {"UInt32", "unsigned int", "32-bit unsigned integer", "a number"},
    {"Str", "const char*", "text, never null", "a text"},
    {"OptStr", "const char*", "text, or null as described", "a text, or 0"},
    {"Handle", "void*", "handle", "a handle"},
    {"Void", "void", "nothing", "nothing"},
};

// The number at the front of `text`, taken off it; false when there is none.
template <class Number>
bool TakeNumber(std::string_view* text, Number* number) {
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), *number);
  if (error != std::errc{}) return false;
  text->remove_prefix(static_cast<std::size_t>(end - text->data()));
  return true;
}

// False for a word that is no request.
bool ParseWord(std::string_view word, SentRequest* request) {
  if (word.empty() || std::string_view("HFVM").find(word[0]) == std::string_view::npos) return false;
  *request = {word[0], 0, kNoFirstSlot};
  word.remove_prefix(1);
  if (request->way == 'M') return TakeNumber(&word, &request->first_slot) && word.empty();
  if (!TakeNumber(&word, &request->code)) return false;
  if (word.empty()) return true;
  if (word[0] != ':') return false;
  word.remove_prefix(1);
  return TakeNumber(&word, &request->first_slot) && word.empty();
}

}  // namespace

std::vector<SentRequest> RequestsOf(const Row& row) {
  if (row.kind == Kind::kMenu) return {{'M', 0, row.code}};
  if (row.kind != Kind::kHand) return {{row.dispatcher[0], row.code, row.first_slot}};
  std::vector<SentRequest> requests;
  for (std::string_view rest = row.requests; !rest.empty();) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    SentRequest request;
    if (ParseWord(word, &request)) requests.push_back(request);
    rest.remove_prefix(word.size() < rest.size() ? word.size() + 1 : word.size());
  }
  return requests;
}

std::string WordOf(const SentRequest& request) {
  std::string word(1, request.way);
  if (request.way != 'M') word.append(std::to_string(request.code));
  if (request.first_slot == kNoFirstSlot) return word;
  if (request.way != 'M') word.append(1, ':');
  return word.append(std::to_string(request.first_slot));
}

std::string_view DispatcherOf(const SentRequest& request) {
  switch (request.way) {
    case 'H':
      return "Host";
    case 'F':
      return "Frame";
    case 'V':
      return "View";
  }
  return "";
}

const ParameterType& TypeOf(const Parameter& parameter) {
  for (const ParameterType& type : kParameterTypes) {
    if (type.name == parameter.type) return type;
  }
  return kParameterTypes[kPlainValue];
}

const ResultType& ResultTypeOf(const Row& row) {
  for (const ResultType& type : kResultTypes) {
    if (type.name == row.result) return type;
  }
  return kResultTypes[0];
}

}  // namespace wfinfo::catalogue
