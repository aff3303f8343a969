#include "host/mime/file_types.h"

#include <string>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

struct FileType {
  std::string_view extension;
  std::string_view type;
};

constexpr FileType kFileTypes[] = {
    {".txt", "text/plain"},      {".csv", "text/csv"},        {".html", "text/html"},
    {".htm", "text/html"},       {".ics", "text/calendar"},   {".png", "image/png"},
    {".jpg", "image/jpeg"},      {".jpeg", "image/jpeg"},     {".gif", "image/gif"},
    {".zip", "application/zip"}, {".pdf", "application/pdf"}, {".eml", "message/rfc822"},
};

}  // namespace

std::string_view TypeOfFile(std::string_view name) {
  const std::string lower = Lower(name);
  for (const FileType& row : kFileTypes) {
    if (lower.ends_with(row.extension)) return row.type;
  }
  return "application/octet-stream";
}

}  // namespace wrenfold
