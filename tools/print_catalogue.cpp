// Prints from the catalogue what must never drift from it: the module-definition file, the public C header,
// and the reference as Markdown and JSON, with the examples of a folder.
//
//   print_catalogue def > file
//   print_catalogue header VERSION > file
//   print_catalogue markdown|json EXAMPLES > file
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/reference.h"
#include "src/catalogue/requests.h"
#include "tools/examples.h"

namespace {

using namespace wfinfo::catalogue;

std::string Prototype(const Row& row) {
  std::string text(ResultTypeOf(row).c_type);
  text.append(" ").append(row.name).append("(");
  bool first = true;
  for (const Parameter& parameter : row.parameters) {
    if (!first) text.append(", ");
    first = false;
    text.append(TypeOf(parameter).c_type);
    if (parameter.type != "Rest") text.append(" ").append(parameter.name);
  }
  return text.append(first ? "void)" : ")");
}

// What a row sends: "code 42 (Host)", "menu command 40002", "code 12 (Frame), command 40024".
std::string SentText(const Row& row) {
  const std::string code = std::to_string(row.code);
  switch (row.kind) {
    case Kind::kMenu:
      return "menu command " + code;
    case Kind::kCommand:
    case Kind::kStart:
      return "code " + code + " (" + std::string(row.dispatcher) + "), command " +
             std::to_string(row.first_slot);
    case Kind::kThin: {
      std::string text = "code " + code + " (" + std::string(row.dispatcher) + ")";
      if (row.first_slot != kNoFirstSlot) text += ", sub-command " + std::to_string(row.first_slot);
      return text;
    }
    case Kind::kHand:
      break;
  }
  return row.requests == kAnyRequest ? "what the called export sends" : std::string(row.requests);
}

void PrintWrapped(std::string_view indent, std::string_view text) {
  constexpr std::size_t kColumns = 100;
  std::size_t column = 0;
  std::printf("%.*s", static_cast<int>(indent.size()), indent.data());
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = text.find(' ', at);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view word = text.substr(at, end - at);
    if (column > 0 && column + 1 + word.size() > kColumns) {
      std::printf("\n%.*s", static_cast<int>(indent.size()), indent.data());
      column = 0;
    }
    std::printf("%s%.*s", column > 0 ? " " : "", static_cast<int>(word.size()), word.data());
    column += word.size() + (column > 0 ? 1 : 0);
    at = end + 1;
  }
  std::printf("\n");
}

int PrintDefinitionFile() {
  std::printf("; Printed from the catalogue; do not edit.\nLIBRARY \"WFINFO.dll\"\nEXPORTS\n");
  for (const Row& row : Rows()) {
    const std::string name(row.name);
    const bool entered = row.kind == Kind::kHand && !IsVariadic(row);  // see src/entry/hand_exports_win.cpp
    std::printf("    %s%s%s\n", name.c_str(), entered ? " = Entered_" : "", entered ? name.c_str() : "");
  }
  return 0;
}

constexpr char kHeaderHead[] =
    R"head(/* wfinfo.h: the exports of WFINFO.dll. Printed from the catalogue; do not edit.
 *
 * Texts are zero-terminated Shift-JIS (code page 932); a character outside it travels as the four-byte escape
 * that begins with 0x1A. A text result stays valid until the next call that returns a text; it is never to be
 * freed, and it is "" (never null) when there is nothing, unless the function says otherwise. An integer
 * result is 0 on failure, unless the function says otherwise.
 *
 * A parameter "(checked)" must be a readable text: otherwise the error is reported to the user and the function
 * returns its failure value without doing anything. Functions that ask the host must be called on the thread of
 * the host's window; elsewhere they find no window and return their failure value.
 *
 * "Refused while a dialog shows" means: while a modal dialog of the host shows, the request is not sent, and the user is
 * told by a message.
 */
#ifndef WFINFO_H
#define WFINFO_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif
)head";

// The one family whose names the system's own header declares too.
constexpr std::string_view kMapiFamily = "Simple MAPI";
constexpr char kMapiGuard[] = R"guard(
/* Define WFINFO_NO_MAPI before including this header together with <mapi.h>, which declares the same functions with
 * the system's own types. */
#ifndef WFINFO_NO_MAPI
)guard";

int PrintHeader(const char* version) {
  std::printf("%s", kHeaderHead);
  std::printf(
      "\n/* Version of this header, and of the library that it belongs to. */\n#define WFINFO_VERSION "
      "\"%s\"\n",
      version);
  std::string_view family;
  for (const Row& row : Rows()) {
    if (row.family != family) {
      if (family == kMapiFamily) std::printf("\n#endif /* WFINFO_NO_MAPI */\n");
      if (row.family == kMapiFamily) std::printf("%s", kMapiGuard);
      family = row.family;
      std::printf("\n/* ---- %.*s ---- */\n", static_cast<int>(family.size()), family.data());
    }
    std::printf("\n/*\n");
    PrintWrapped(" * ", row.doc);
    for (const Parameter& parameter : row.parameters) {
      std::string line(parameter.name);
      line.append(": ").append(TypeOf(parameter).meaning);
      if (!parameter.doc.empty()) line.append("; ").append(parameter.doc);
      PrintWrapped(" *   ", line);
    }
    std::string sent = SentText(row);
    if (!sent.empty()) PrintWrapped(" * ", "Sends " + sent + ". " + DialogSentence(row));
    if (row.inferred) PrintWrapped(" * ", "The parameter list is inferred from the family and the name.");
    std::printf(" */\n%s;\n", Prototype(row).c_str());
  }
  if (family == kMapiFamily) std::printf("\n#endif /* WFINFO_NO_MAPI */\n");
  std::printf("\n#ifdef __cplusplus\n}\n#endif\n\n#endif\n");
  return 0;
}

std::string MarkdownCell(std::string_view text) {
  std::string cell;
  for (const char c : text) {
    if (c == '|') cell += '\\';
    cell += c;
  }
  return cell;
}

// "code 44" as a link to its section in the page for host authors.
std::string LinkTo(const SentRequest& request) {
  const bool command = request.way == 'M' || wfinfo::CarriesCommand(request.code);
  const std::string number = std::to_string(command ? request.first_slot : request.code);
  return std::string("[") + (command ? "menu command " : "code ") + number +
         "](../docs/host-protocol-by-code.md#" + (command ? "menu-command-" : "code-") + number + ")";
}

void PrintRequests(const Row& row) {
  std::string links;
  for (const SentRequest& request : RequestsOf(row)) links += (links.empty() ? "" : ", ") + LinkTo(request);
  if (!links.empty()) std::printf("- Asks the host: %s.\n", links.c_str());
  if (const std::string sentence = DialogSentence(row); !sentence.empty())
    std::printf("- %s\n", sentence.c_str());
}

// The anchor of an export's heading.
std::string Anchor(std::string_view name) {
  std::string anchor(name);
  for (char& c : anchor) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return anchor;
}

void PrintSeeAlso(const Row& row) {
  std::string links;
  for (const std::string_view name : SeeAlso(row)) {
    links.append(links.empty() ? "" : ", ")
        .append("[`")
        .append(name)
        .append("`](#")
        .append(Anchor(name))
        .append(")");
  }
  if (!links.empty()) std::printf("\nSee also: %s.\n", links.c_str());
}

constexpr char kMarkdownHead[] = R"head(# Reference of all exports

Printed from the catalogue. %zu exports.

| it says | it means |
|---|---|
| text (checked) | must be a text. Null or a number is reported to the user, and the function gives its failure value and does nothing, unless its entry says otherwise |
| text or null (checked when given) | may be null, and left out at the end of a call; else as above |
| text (not checked) | nothing is reported; the entry says what counts for null or a number |
| number or text | one or the other, as the entry says; the number reaches the function as it is |
| a short result, a long result | a text that is valid until the next short, or long, result ([all places](../docs/text-results.md)). Macros of the small host hold copies, and need not mind |
| root mail, open mail | the mail that the host shows, or that the mail being written answers or forwards |
| current mail | the mail being written; without one the open mail |
| the host's result | the number that the host answers. What it means is the host's; in brackets stands what the small host answers |
| the small host | `wrenfold.exe` ([its page](../docs/small-host.md)), which answers all requests; another host may do some things in its own way |
| code 44, menu command 40031 | what the host is asked: for those who [write a host](../docs/host-protocol-by-code.md) |
| Refused while a dialog shows | while the host shows a modal dialog nothing is sent: the user is told, and the function gives its failure value |
| The parameter list is inferred | no description of the list was at hand: it follows from family and name |
| `#<`, `#>` | in an example: what the user types, and what is printed |
| Run with: | options that an example needs beside `--mail samples/mails`; FILE is the example itself, also in what it prints |
| Needs: | what must be there beside that: variables that are set before it, programs, servers, keys |
)head";

void PrintExample(const wfinfo::Example& example) {
  std::printf("\n```\n%s```\n", example.text.c_str());
  if (const std::string command = example.needs.Command(); !command.empty())
    std::printf("\nRun with: `%s`\n", command.c_str());
  if (!example.needs.things().empty()) std::printf("\nNeeds: %s.\n", example.needs.things().c_str());
}

int PrintMarkdown(const wfinfo::Examples& examples) {
  std::printf(kMarkdownHead, Rows().size());
  std::string_view family;
  for (const Row& row : Rows()) {
    if (row.family != family) {
      family = row.family;
      std::printf("\n## %.*s\n", static_cast<int>(family.size()), family.data());
    }
    std::printf("\n### `%.*s`\n\n```c\n%s;\n```\n\n%s\n\n", static_cast<int>(row.name.size()),
                row.name.data(), Prototype(row).c_str(), DocOf(row).c_str());
    if (!row.parameters.empty()) {
      std::printf("| parameter | type | meaning |\n|---|---|---|\n");
      for (const Parameter& parameter : row.parameters) {
        std::printf("| `%s` | %s | %s |\n", std::string(parameter.name).c_str(),
                    std::string(TypeOf(parameter).meaning).c_str(), MarkdownCell(parameter.doc).c_str());
      }
      std::printf("\n");
    }
    std::printf("- Result: %s.\n", std::string(ResultTypeOf(row).meaning).c_str());
    PrintRequests(row);
    if (row.inferred) std::printf("- The parameter list is inferred.\n");
    if (const auto example = examples.find(row.name); example != examples.end())
      PrintExample(example->second);
    PrintSeeAlso(row);
  }
  return 0;
}

std::string JsonText(std::string_view text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') json += '\\';
    if (c == '\n') {
      json += "\\n";
    } else if (static_cast<unsigned char>(c) < 0x20) {
      // An example may print any control character: a folded header holds tabs.
      char escape[7];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned char>(c));
      json += escape;
    } else {
      json += c;
    }
  }
  return json += '"';
}

std::string JsonNames(const std::vector<std::string_view>& names) {
  std::string json;
  for (const std::string_view name : names) json += (json.empty() ? "" : ", ") + JsonText(name);
  return "[" + json + "]";
}

std::string JsonRequests(const Row& row) {
  std::string json;
  for (const SentRequest& request : RequestsOf(row)) {
    json += json.empty() ? "" : ", ";
    json +=
        "{\"code\": " + std::to_string(request.code) + ", \"dispatcher\": " + JsonText(DispatcherOf(request));
    if (request.first_slot != kNoFirstSlot) json += ", \"first_slot\": " + std::to_string(request.first_slot);
    json +=
        std::string(", \"refused_during_dialog\": ") + (IsRefusedDuringDialog(request) ? "true}" : "false}");
  }
  return "[" + json + "]";
}

int PrintJson(const wfinfo::Examples& examples) {
  std::printf("[\n");
  bool first_row = true;
  for (const Row& row : Rows()) {
    std::printf("%s  {\"family\": %s, \"name\": %s, \"result\": %s, \"result_type\": %s, \"parameters\": [",
                first_row ? "" : ",\n", JsonText(row.family).c_str(), JsonText(row.name).c_str(),
                JsonText(ResultTypeOf(row).c_type).c_str(), JsonText(row.result).c_str());
    first_row = false;
    bool first = true;
    for (const Parameter& parameter : row.parameters) {
      std::printf("%s{\"name\": %s, \"type\": %s, \"c_type\": %s, \"doc\": %s}", first ? "" : ", ",
                  JsonText(parameter.name).c_str(), JsonText(parameter.type).c_str(),
                  JsonText(TypeOf(parameter).c_type).c_str(), JsonText(parameter.doc).c_str());
      first = false;
    }
    const auto found = examples.find(row.name);
    const wfinfo::Example example = found == examples.end() ? wfinfo::Example() : found->second;
    std::printf(
        "], \"requests\": %s, \"during_dialog\": %s, \"inferred\": %s, \"doc\": %s, \"see_also\": %s, "
        "\"example\": %s, \"run_with\": %s, \"needs\": %s}",
        JsonRequests(row).c_str(), JsonText(DialogSentence(row)).c_str(), row.inferred ? "true" : "false",
        JsonText(DocOf(row)).c_str(), JsonNames(SeeAlso(row)).c_str(), JsonText(example.text).c_str(),
        JsonText(example.needs.Command()).c_str(), JsonText(example.needs.things()).c_str());
  }
  std::printf("\n]\n");
  return 0;
}

}  // namespace

int main(int argument_count, char** arguments) {
  const std::string_view form = argument_count > 1 ? arguments[1] : "";
  if (argument_count == 2 && form == "def") return PrintDefinitionFile();
  if (argument_count == 3 && form == "header") return PrintHeader(arguments[2]);
  if (argument_count == 3 && form == "markdown") return PrintMarkdown(wfinfo::ReadExamples(arguments[2]));
  if (argument_count == 3 && form == "json") return PrintJson(wfinfo::ReadExamples(arguments[2]));
  std::fprintf(stderr,
               "usage: print_catalogue def > file\n"
               "       print_catalogue header VERSION > file\n"
               "       print_catalogue markdown|json EXAMPLES > file\n");
  return 2;
}
