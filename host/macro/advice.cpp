#include "host/macro/advice.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "host/base/ascii.h"
#include "host/macro/tokens.h"

namespace wrenfold::macro {
namespace {

struct Advice {
  std::string_view foreign;  // small letters
  std::string_view text;
};

constexpr std::string_view kElseIf = "write else if";
constexpr std::string_view kEnd = "write end, alone on its line";
constexpr std::string_view kNothingBefore =
    "leave it out: what follows stands on lines of its own, up to end";
constexpr std::string_view kNoDeclaration = "a variable needs no word before it: name = value";
constexpr std::string_view kFunction = "write function name(a, b), and return value";
constexpr std::string_view kNull = "write null";
constexpr std::string_view kNoExceptions =
    "a call that fails gives 0, \"\" or null, and HostReason() tells why; --strict stops the macro there";
constexpr std::string_view kPrint = "write print expression, ...";
constexpr std::string_view kForIn =
    "write for name in list; a number counts from 0: for i in 4 gives 0, 1, 2, 3";
constexpr std::string_view kIfElse = "write if, else if, else, end";
constexpr std::string_view kLeave = "return leaves a function, and a macro ends with its last line";

constexpr Advice kWords[] = {
    {"begin", kNothingBefore},
    {"case", kIfElse},
    {"catch", kNoExceptions},
    {"const", kNoDeclaration},
    {"def", kFunction},
    {"dim", kNoDeclaration},
    {"do", kNothingBefore},
    {"done", kEnd},
    {"echo", kPrint},
    {"elif", kElseIf},
    {"elseif", kElseIf},
    {"elsif", kElseIf},
    {"endfor", kEnd},
    {"endfunction", kEnd},
    {"endif", kEnd},
    {"endwhile", kEnd},
    {"eq", "write =="},
    {"except", kNoExceptions},
    {"exit", kLeave},
    {"false", "write 0; \"\" and null are false too"},
    {"fi", kEnd},
    {"finally", kNoExceptions},
    {"foreach", kForIn},
    {"func", kFunction},
    {"is", "write =="},
    {"let", kNoDeclaration},
    {"local", kNoDeclaration},
    {"mod", "write %"},
    {"ne", "write !="},
    {"next", kEnd},
    {"nil", kNull},
    {"none", kNull},
    {"printf", kPrint},
    {"puts", kPrint},
    {"quit", kLeave},
    {"raise", kNoExceptions},
    {"repeat", "write while condition ... end"},
    {"select", kIfElse},
    {"set", kNoDeclaration},
    {"sub", kFunction},
    {"switch", kIfElse},
    {"then", kNothingBefore},
    {"throw", kNoExceptions},
    {"to", kForIn},
    {"true", "write 1; 0, \"\" and null are false, all else is true"},
    {"try", kNoExceptions},
    {"undefined", kNull},
    {"unless", "write if not condition"},
    {"until", "write while not condition"},
    {"var", kNoDeclaration},
    {"wend", kEnd},
    {"xor", "write a != b for two that are 0 or 1"},
};

constexpr std::string_view kForeignStatements[] = {"elif",        "elseif", "elsif",   "endfor",
                                                   "endfunction", "endif",  "endwhile"};

// Of two that begin alike the longer one stands first.
constexpr Advice kForeignSigns[] = {
    {"&&", "write and"},
    {"||", "write or"},
    {"!", "write not"},
    {"&", "+ joins texts, and combines conditions"},
    {"|", "write or"},
    {";", "each statement stands on its own line, and nothing ends it"},
    {".", "+ joins texts; a call stands alone: Name(...)"},
    {"?", "write if condition ... else ... end"},
    {"\xE3\x80\x80", "it is a wide blank; write a plain one"},
};

constexpr std::string_view kTexts = "texts stand in double quotes: \"...\"";

// U+FF01 to U+FF5E, wide forms of ASCII.
bool IsWideAscii(std::string_view source) {
  return source.starts_with("\xEF\xBC") || (source.starts_with("\xEF\xBD") && source.size() > 2 &&
                                            static_cast<unsigned char>(source[2]) <= 0x9E);
}

}  // namespace

std::string_view AdviceForWord(std::string_view word) {
  const std::string lower = Lower(word);
  for (const Advice& advice : kWords) {
    if (advice.foreign == lower) return advice.text;
  }
  const bool keyword = std::find(std::begin(kKeywords), std::end(kKeywords), lower) != std::end(kKeywords);
  return keyword && lower != word ? "write it in small letters" : "";
}

bool IsForeignStatement(std::string_view word) {
  return std::find(std::begin(kForeignStatements), std::end(kForeignStatements), Lower(word)) !=
         std::end(kForeignStatements);
}

std::string_view AdviceForSign(std::string_view source, std::size_t& length) {
  for (const Advice& advice : kForeignSigns) {
    if (!source.starts_with(advice.foreign)) continue;
    length = advice.foreign.size();
    return advice.text;
  }
  return IsWideAscii(source) ? "write the plain letter or sign, not the wide one" : kTexts;
}

}  // namespace wrenfold::macro
