// A folder of the test's own, with its files, that goes away with it.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace wfinfo_test {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // Full path of `name` in the folder, narrow (for ASCII names) and wide.
  std::string Path(std::string_view name) const;
  std::wstring WidePath(std::wstring_view name) const;
  // Writes a file and returns its path.
  std::string Write(std::string_view name, std::string_view contents) const;
  // The whole contents of a file of the folder; "(no file)" when there is none.
  std::string Read(std::string_view name) const;
  std::string Read(std::wstring_view name) const;
  bool Has(std::string_view name) const;
  // Whether files of this name can exist here: under Wine the Unix locale decides.
  bool CanHold(std::wstring_view name) const;

 private:
  std::wstring folder_;
};

}  // namespace wfinfo_test
