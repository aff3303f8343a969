// UTF-8, which the kit works with, and UTF-16, which Windows does; files and folders by such names.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace kit {

std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view wide);
// With '/' as it stands in the plan: with '\'.
std::wstring WidePath(std::string_view path);

std::optional<std::string> ReadFileAt(const std::wstring& path);
bool WriteFileAt(const std::wstring& path, std::string_view contents);
// Makes the folder, and those above it.
bool MakeFolder(const std::wstring& path);
// A file or a whole folder; copies are not read-only.
bool CopyTree(const std::wstring& from, const std::wstring& to);
bool RemoveTree(const std::wstring& path);

}  // namespace kit
