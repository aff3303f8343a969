// Files and folders under names in host text, for macros. The system's answer is returned as it is; the
// thread's last error stays that of the wrapped call.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <string_view>

#include "src/base/unique_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/wide_text_win.h"
#include "src/catalogue/declarations.h"
#include "src/desktop/save_text_win.h"

namespace {

using wfinfo::IsText;
using wfinfo::IsTextOrNull;
using wfinfo::ToSlot;
using wfinfo::WIDETEXT;

constexpr int kCodeOpenFileName = 292;
constexpr int kCodeSaveFileName = 293;
constexpr wfinfo::Slot kLoadLimit = 65536;  // bytes that LoadStringFromFile asks for

// Calls `function` with the wide form of a checked name; 0 without one.
template <class Function>
long long WithName(const char* name, Function function) {
  if (!IsText(name)) return 0;
  const WIDETEXT wide(name);
  return wide.Failed() ? 0 : function(wide.Text());
}

template <class Function>
long long WithTwoNames(const char* from, const char* to, Function function) {
  if (!IsText(from) || !IsText(to)) return 0;
  const WIDETEXT wide_from(from);
  const WIDETEXT wide_to(to);
  return wide_from.Failed() || wide_to.Failed() ? 0 : function(wide_from.Text(), wide_to.Text());
}

}  // namespace

long long Bypass_DeleteFile(const char* name) noexcept { return WithName(name, &DeleteFileW); }

long long Bypass_MoveFile(const char* from, const char* to) noexcept {
  return WithTwoNames(from, to, &MoveFileW);
}

long long Bypass_CopyFile(const char* from, const char* to, int fail_if_exists) noexcept {
  return WithTwoNames(from, to, [fail_if_exists](const wchar_t* source, const wchar_t* target) {
    return CopyFileW(source, target, fail_if_exists);
  });
}

long long Bypass_RemoveDirectory(const char* name) noexcept { return WithName(name, &RemoveDirectoryW); }

long long Bypass_CreateDirectory(const char* name) noexcept {
  return WithName(name, [](const wchar_t* wide) { return CreateDirectoryW(wide, nullptr); });
}

long long Bypass_GetFileSize(const char* name) noexcept {
  return WithName(name, [](const wchar_t* wide) -> long long {
    const wfinfo::UniqueFile file(CreateFileW(wide, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                              OPEN_EXISTING, 0, nullptr));
    if (!file) return -1;
    // The low 32 bits with their sign: kept, although files of 2 GiB and more come out negative.
    return static_cast<std::int32_t>(GetFileSize(file.get(), nullptr));
  });
}

long long Bypass_SetFileAttributes(const char* name, unsigned attributes) noexcept {
  return WithName(name, [attributes](const wchar_t* wide) { return SetFileAttributesW(wide, attributes); });
}

long long Bypass_GetFileAttributes(const char* name) noexcept {
  return WithName(name, [](const wchar_t* wide) -> long long { return GetFileAttributesW(wide); });
}

long long Bypass_GetLastError() noexcept { return GetLastError(); }

const char* Bypass_SearchPath(const char* name) noexcept {
  constexpr DWORD kRoom = 260;
  if (!IsText(name)) return nullptr;
  char* file_part = nullptr;
  const DWORD length = SearchPathA(nullptr, name, nullptr, kRoom, wfinfo::g_resultText, &file_part);
  // A path that does not fit is only measured.
  return length > 0 && length < kRoom ? wfinfo::g_resultText : wfinfo::kNoText;
}

const char* Bypass_GetOpenFileName(const char* first, const char* second, const char* third) noexcept {
  if (!IsTextOrNull(first) || !IsTextOrNull(second) || !IsTextOrNull(third)) {
    wfinfo::ReportError(
        {"Invalid Bypass_GetOpenFileName parameter.", "Bypass_GetOpenFileNameのパラメータがおかしいです。"});
    return nullptr;
  }
  wfinfo::Slot block[] = {ToSlot(first), ToSlot(second), ToSlot(third)};
  return wfinfo::SendHostRequestStr(kCodeOpenFileName, block);
}

const char* Bypass_GetSaveFileName(const char* first, const char* second, const char* third,
                                   const char* fourth) noexcept {
  if (!IsTextOrNull(first) || !IsTextOrNull(second) || !IsTextOrNull(third) || !IsTextOrNull(fourth)) {
    wfinfo::ReportError(
        {"Invalid Bypass_GetSaveFileName parameter.", "Bypass_GetSaveFileNameのパラメータがおかしいです。"});
    return nullptr;
  }
  wfinfo::Slot block[] = {ToSlot(first), ToSlot(second), ToSlot(third), ToSlot(fourth)};
  return wfinfo::SendHostRequestStr(kCodeSaveFileName, block);
}

const char* LoadStringFromFile(const char* file_name) noexcept {
  if (!IsText(file_name)) return wfinfo::kNoText;
  wfinfo::Slot block[] = {ToSlot(file_name), kLoadLimit};
  return wfinfo::SendHostRequestStr(wfinfo::kCodeLoadText, block);
}

long long SaveStringToFile(const char* file_name, const char* text, int append, int encoding) noexcept {
  return wfinfo::SaveText(file_name, text, append, encoding) ? 1 : 0;
}
