#include "host/session/macro_files.h"

#include <utility>

#include "host/base/whole_file.h"
#include "host/charset/charsets.h"
#include "host/mail/mail_store.h"

namespace wrenfold {

std::string MacroTextToHost(std::string_view utf8) { return SystemCharsets().Utf8ToHost(utf8); }

std::string Located(const std::string& file, const macro::Problem& problem) {
  return file + ":" + std::to_string(problem.place.line) + ":" + std::to_string(problem.place.column) + ": " +
         problem.text;
}

MacroOrReason ReadMacro(const std::string& file, const std::string& source, macro::CallCheck check,
                        bool bare_expressions) {
  auto parsed = macro::Parse(source, {MacroTextToHost, bare_expressions});
  if (const auto* problem = std::get_if<macro::Problem>(&parsed)) return Located(file, *problem);
  auto program = std::get<macro::Program>(std::move(parsed));
  if (const auto problem = macro::CheckCalls(program, check)) return Located(file, *problem);
  return LoadedMacro{file, std::move(program)};
}

MacroOrReason LoadMacro(const std::string& file, macro::CallCheck check) {
  const auto source = ReadWholeFile(PathFromUtf8(file));
  if (!source) return "cannot read the macro " + file;
  return ReadMacro(file, *source, check, false);
}

}  // namespace wrenfold
