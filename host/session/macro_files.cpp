#include "host/session/macro_files.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/base/utf8_mark.h"
#include "host/charset/charsets.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"

namespace wrenfold {
namespace {

// With its mark, or without: a macro has ASCII in it, whose other halves are zero bytes, which no text has.
bool IsUtf16(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return true;
  const std::string_view first = bytes.substr(0, 2);
  return first.size() == 2 && (first[0] == '\0') != (first[1] == '\0');
}

std::string WhatToDo(const std::string& file) {
  std::error_code error;
  const bool is_folder = std::filesystem::is_directory(PathFromUtf8(file), error);
  return is_folder ? "; name the macros in it one by one" : "";
}

}  // namespace

std::string MacroTextToHost(std::string_view utf8) { return SystemCharsets().Utf8ToHost(utf8); }

std::string Located(const std::string& file, const macro::Problem& problem) {
  return (problem.file.empty() ? file : problem.file) + ":" + std::to_string(problem.place.line) + ":" +
         std::to_string(problem.place.column) + ": " + problem.text;
}

MacroOrReason ReadMacro(const std::string& file, const std::string& source, const macro::HostNames& host,
                        macro::KnownNames& known, bool bare_expressions) {
  auto parsed = macro::Parse(source, {MacroTextToHost, bare_expressions, file});
  if (const auto* problem = std::get_if<macro::Problem>(&parsed)) return Located(file, *problem);
  auto program = std::get<macro::Program>(std::move(parsed));
  if (const auto problem = macro::CheckProgram(program, host, known)) return Located(file, *problem);
  return LoadedMacro{file, std::move(program)};
}

MacroOrReason LoadMacro(const std::string& file, const macro::HostNames& host, macro::KnownNames& known,
                        bool bare_expressions) {
  const auto source = ReadWholeFile(PathFromUtf8(file));
  if (!source)
    return "cannot read the macro " + file + ": " + ReasonUnreadable(PathFromUtf8(file)) + WhatToDo(file);
  if (Trim(WithoutUtf8Mark(*source)).empty())
    return "the macro " + file + " is empty: write its statements into it";
  if (IsUtf16(*source)) return "the macro " + file + " is UTF-16: save it as UTF-8";
  return ReadMacro(file, *source, host, known, bare_expressions);
}

}  // namespace wrenfold
