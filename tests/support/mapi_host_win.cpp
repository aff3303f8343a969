#include "tests/support/mapi_host_win.h"

#include <cstring>
#include <mutex>

#include "src/bridge/host_protocol.h"

namespace wfinfo_test {

using namespace wfinfo::mapi;

namespace {

std::mutex g_linesLock;
std::vector<std::string> g_lines;

void CollectLine(const char* text, unsigned number) {
  EXPECT_EQ(number, 7178u) << text;
  const std::lock_guard lock(g_linesLock);
  g_lines.emplace_back(text);
}

}  // namespace

MapiHost::MapiHost() {
  host.hook = [this](HWND, UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
    return Receive(message, wparam, lparam, result);
  };
}

bool MapiHost::Receive(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
  if (message == wfinfo::kHostQueryReady) {
    ++readiness_queries;
  } else if (message == wfinfo::kHostPassCommandLine) {
    EXPECT_EQ(lparam, 1);
    TakeCommandLine(reinterpret_cast<HANDLE>(wparam));
    *result = 1;
  } else if (message == wfinfo::kHostStoreRequest) {
    TakeStoreRequest(static_cast<unsigned>(wparam), reinterpret_cast<HANDLE>(lparam));
  } else if (message == kClosePopup) {
    EnableWindow(host.frame(), TRUE);
    DestroyWindow(GetLastActivePopup(host.frame()));
  } else if (message == kOpenPopup) {
    host.OpenDialog(host.frame(), true);
  } else {
    return false;
  }
  return true;
}

void MapiHost::TakeCommandLine(HANDLE mapping) {
  const Block block(mapping);
  EXPECT_EQ(*reinterpret_cast<std::uint64_t*>(block.bytes()), 0u);
  lines.emplace_back(block.bytes() + 8);
  if (see_line) see_line(block);
  if (window != nullptr) *reinterpret_cast<HWND*>(block.bytes()) = window;
}

void MapiHost::TakeStoreRequest(unsigned kind, HANDLE mapping) {
  const Block block(mapping);
  EXPECT_EQ(block.as<StoreHead>().reserved, 0u);
  kinds.push_back(kind);
  event = reinterpret_cast<HANDLE>(block.as<StoreHead>().event);
  if (answer) answer(block);
  if (answers) Signal();
}

void MapiHost::Signal() {
  SetEvent(event);
  CloseHandle(event);
  event = nullptr;
}

int OpenHandles() {
  constexpr ULONG_PTR kLast = 0x8000;  // handles are multiples of 4, the smallest free one is given out first
  int count = 0;
  for (ULONG_PTR handle = 4; handle < kLast; handle += 4) {
    DWORD flags = 0;
    if (GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags)) ++count;
  }
  return count;
}

LogLines::LogLines() {
  Take();
  GetWFInfoVersion(Services());
}

LogLines::~LogLines() { GetWFInfoVersion(nullptr); }

std::vector<std::string> LogLines::Take() const {
  const std::lock_guard lock(g_linesLock);
  return std::exchange(g_lines, {});
}

void* LogLines::Services() {
  static void* services[33];
  services[32] = reinterpret_cast<void*>(&CollectLine);
  return services;
}

void Mapi::Set(const char* name, DWORD type, const void* data, std::size_t size) {
  RegSetKeyValueA(HKEY_CURRENT_USER, kConfig, name, type, data, static_cast<DWORD>(size));
}

std::string Mapi::Send(MapiHost& mapi, const char* subject, const char* note, FLAGS flags) {
  char address[] = "SMTP:a@b.c";
  MapiRecipDesc recipient{};
  recipient.ulRecipClass = MAPI_TO;
  recipient.lpszAddress = address;
  MapiMessage message{};
  message.lpszSubject = Mutable(subject);
  message.lpszNoteText = Mutable(note);
  message.nRecipCount = 1;
  message.lpRecips = &recipient;
  mapi.lines.clear();
  EXPECT_EQ(MAPISendMail(0, 0, &message, flags, 0), 0u);
  EXPECT_EQ(mapi.lines.size(), 1u);
  return mapi.lines.empty() ? "" : mapi.lines[0];
}

ULONG Mapi::Delete(HWND parent) {
  ULONG code = 99;
  OnOtherThread([&] { code = MAPIDeleteMail(0, reinterpret_cast<ULONG_PTR>(parent), Mutable("id"), 0, 0); });
  return code;
}

void AnswerWithImage(const Block& block, const std::string& bytes, std::uint32_t size) {
  auto& request = block.as<ReadBlock>();
  EXPECT_EQ(request.caller_process, GetCurrentProcessId());
  EXPECT_EQ(request.image, 0u);
  const HANDLE image = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, nullptr);
  void* const view = MapViewOfFile(image, FILE_MAP_ALL_ACCESS, 0, 0, 0);
  std::memcpy(view, bytes.data(), bytes.size());
  UnmapViewOfFile(view);
  request.image = reinterpret_cast<std::uint64_t>(image);
  request.image_size = size;
}

}  // namespace wfinfo_test
