#include "tests/monkey/host_win.h"

#include <cstring>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/rows.h"
#include "src/commands/account_keys.h"

namespace monkey {
namespace {

constexpr std::size_t kArena = std::size_t{1} << 30;
constexpr std::size_t kPage = 4096;
constexpr std::size_t kTenMegabytes = 10 * 1024 * 1024;
constexpr std::size_t kRecordPages = 2;
constexpr int kDeepest = 3;
static_assert(wfinfo::kAccountRecordSize <= kRecordPages * kPage);

// Codes that exports written by hand ask texts with; those of thin exports stand in their rows.
constexpr int kTexts[] = {1,   2,   19,  47,  81,  86,  87,  111, 113, 114, 115, 134,
                          153, 158, 176, 262, 268, 269, 285, 291, 292, 293, 297};
constexpr int kCurrentHeader = 3;
constexpr int kHeaderCount = 4;
constexpr int kLend = 75;
constexpr int kSave = 76;
constexpr int kRelease = 77;
constexpr int kSpamFilter = 176;  // answers in its block
constexpr int kGrepIsBusy = 256;
constexpr int kFreeList = 74;
constexpr int kLists[] = {143, 144};
constexpr int kWideTexts[] = {290, 313};
constexpr int kUtf8Text = 307;

Host* g_host = nullptr;

LRESULT Address(const void* address) { return reinterpret_cast<LRESULT>(address); }

template <std::size_t kCount>
bool IsOneOf(const int (&codes)[kCount], int code) {
  for (const int each : codes) {
    if (each == code) return true;
  }
  return false;
}

HWND Open(const char* class_name, HWND owner = nullptr) {
  return CreateWindowExA(0, class_name, "monkey", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, owner, nullptr,
                         GetModuleHandleA(nullptr), nullptr);
}

void Register(const char* name, WNDPROC procedure) {
  WNDCLASSA window_class{};
  window_class.lpfnWndProc = procedure;
  window_class.hInstance = GetModuleHandleA(nullptr);
  window_class.lpszClassName = name;
  RegisterClassA(&window_class);
}

// What would have the system wait for the user: menus opened by a key, moving and sizing by the mouse.
bool IsWaitForUser(UINT message) {
  return message == WM_SYSCOMMAND || message == WM_ENTERIDLE || message == WM_CONTEXTMENU ||
         (message >= WM_NCLBUTTONDOWN && message <= WM_NCMBUTTONDBLCLK);
}

LRESULT CALLBACK ReceiveInDialog(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  return IsWaitForUser(message) ? 0 : DefWindowProcA(window, message, wparam, lparam);
}

constexpr char kDialogOfHost[] = "MonkeyDialog";

}  // namespace

Host::Host() {
  g_host = this;
  arena_ = next_ = static_cast<char*>(VirtualAlloc(nullptr, kArena, MEM_RESERVE, PAGE_READWRITE));
  for (const char* name : {wfinfo::kFrameClass, wfinfo::kOuterViewClass, wfinfo::kHtmlViewerClass})
    Register(name, &Receive);
  Register(kDialogOfHost, &ReceiveInDialog);
  for (const int code : kTexts) text_codes_.insert(code);
  for (const wfinfo::catalogue::Row& row : wfinfo::catalogue::Rows()) {
    if (row.kind == wfinfo::catalogue::Kind::kThin && row.result.ends_with("Str"))
      text_codes_.insert(row.code);
  }
  for (Record& record : records_) {
    auto* const pages = static_cast<char*>(
        VirtualAlloc(nullptr, (kRecordPages + 1) * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS));
    record = {pages + kRecordPages * kPage - wfinfo::kAccountRecordSize, false};
  }
}

Host::~Host() {
  for (const HWND window : {dialog_, viewer_, view_, frame_}) DestroyWindow(window);
  VirtualFree(arena_, 0, MEM_RELEASE);
  for (const Record& record : records_) {
    VirtualFree(record.bytes + wfinfo::kAccountRecordSize - kRecordPages * kPage, 0, MEM_RELEASE);
  }
  g_host = nullptr;
}

void Host::Prepare(Dice& dice) {
  if (!IsWindow(frame_)) {
    frame_ = Open(wfinfo::kFrameClass);
    SetMenu(frame_, CreateMenu());
  }
  if (!IsWindow(view_)) view_ = Open(wfinfo::kOuterViewClass);
  if (calm || !dice.OneIn(4)) return;  // the windows stay as they are for a while
  if (IsWindow(viewer_) && dice.OneIn(16)) DestroyWindow(viewer_);
  if (!IsWindow(viewer_) && dice.OneIn(64)) viewer_ = Open(wfinfo::kHtmlViewerClass);
  // The frame is disabled without a dialog, with one, or there is one beside it.
  if (IsWindow(dialog_)) DestroyWindow(dialog_);
  const bool shows_dialog = dice.OneIn(50);
  if (shows_dialog) dialog_ = Open(kDialogOfHost, frame_);
  SetActiveWindow(dice.OneIn(4) ? view_ : frame_);
  if (shows_dialog) SetActiveWindow(dialog_);
  EnableWindow(frame_, !dice.OneIn(shows_dialog ? 2 : 64));
  SetWindowLongPtrA(view_, GWLP_USERDATA, static_cast<LONG_PTR>(dice.Below(2)));
}

void Host::Interrupt() {
  if (dice == nullptr || calm) return;
  if (depth_ < kDeepest && dice->OneIn(24)) {
    ++depth_;
    reenter(*dice);
    --depth_;
  }
  if (dice->OneIn(1000)) DestroyWindow(dice->OneIn(2) ? frame_ : view_);
}

LRESULT CALLBACK Host::Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (IsWaitForUser(message)) return 0;
  if (g_host == nullptr || g_host->dice == nullptr) return DefWindowProcA(window, message, wparam, lparam);
  Dice& dice = *g_host->dice;
  switch (message) {
    case wfinfo::kHostRequest:
      g_host->Interrupt();
      return g_host->Answer(static_cast<int>(wparam), lparam);
    case WM_COMMAND:
      g_host->Interrupt();
      return g_host->AnswerNumber();
    case wfinfo::kHostGetActiveView:
      if (dice.OneIn(8)) g_host->Interrupt();
      return dice.OneIn(16) ? g_host->AnswerWindow(g_host->view_) : 0;
    case wfinfo::kHostGetRequestTarget:
      if (dice.OneIn(8)) g_host->Interrupt();
      return dice.OneIn(32) ? g_host->AnswerWindow(nullptr) : Address(window);
  }
  return DefWindowProcA(window, message, wparam, lparam);
}

// Mostly `usual`; else a number that is no window or stands for all, or a window that goes away.
LRESULT Host::AnswerWindow(HWND usual) {
  switch (dice->Below(10)) {
    case 0:
      return 1;
    case 1:
      return 0x7FFFFFFFFFFFFFFE;
    case 4:
      return 65535;  // to the system every window of every program
    case 5:
      return -1;  // the same to some of its versions
    case 2:
      return Address(viewer_);
    case 3: {
      const HWND gone = Open(wfinfo::kOuterViewClass);
      DestroyWindow(gone);
      return Address(gone);
    }
  }
  return Address(usual);
}

// What was answered before is overwritten, or its pages are taken back.
void Host::Forget() {
  if (answer_ == nullptr) return;
  if (dice->OneIn(2)) {
    std::memset(answer_, 'Z', answer_size_ - 1);
    return;
  }
  VirtualFree(answer_, answer_size_, MEM_DECOMMIT);
  answer_ = nullptr;
}

// `size` bytes of the filling over and over, and four bytes of zero, up to the end of their pages.
LRESULT Host::AnswerBytes(const void* filling, std::size_t filling_size, std::size_t size) {
  constexpr std::size_t kEnd = 4;
  const std::size_t whole = (size + kEnd + kPage - 1) / kPage * kPage;
  if (answer_ != nullptr) VirtualFree(answer_, answer_size_, MEM_DECOMMIT);
  if (next_ + whole + kPage > arena_ + kArena) next_ = arena_;
  answer_ = static_cast<char*>(VirtualAlloc(next_, whole, MEM_COMMIT, PAGE_READWRITE));
  answer_size_ = whole;
  next_ += whole + kPage;  // with a page behind it that cannot be read
  char* const text = answer_ + whole - size - kEnd;
  for (std::size_t at = 0; at < size; ++at) text[at] = static_cast<const char*>(filling)[at % filling_size];
  std::memset(text + size, 0, kEnd);
  return Address(text);
}

LRESULT Host::AnswerText() {
  static constexpr std::string_view kFillings[] = {
      "From: Alice <alice@example.com>\r\nSubject: \x93\xFA\x96{\r\n folded\r\n\r\nbody "
      "\x1A\x81\x82\x84\r\nlines\r\n",
      "From: Alice <alice@example.com>\r\nSubject: \x93\xFA\x96{\r\n folded\r\n\r\nbody "
      "\x1A\x81\x82\x84\r\nlines\r\n",
      "one long line ",
      "\r\n",
      "\x93\xFA\x96{",
      "\x1A\x81\x82\x84",
      "\x1A\x81",
      "a@b.c, \"d\" <e@f>; ",
      "Subject:",
      "\"(<[,;:"};
  static constexpr std::size_t kSizes[] = {0, 1, 5, 100, 127, 128, 1000, 8188, 8190, 8191, 8192, 20000};
  if (dice->OneIn(8)) return 0;
  const std::string_view filling = dice->Of(kFillings);
  return AnswerBytes(filling.data(), filling.size(), dice->OneIn(4000) ? kTenMegabytes : dice->Of(kSizes));
}

LRESULT Host::AnswerOneOf(std::initializer_list<std::string_view> texts) {
  if (dice->OneIn(4)) return 0;
  const std::string_view text = *(texts.begin() + dice->Below(texts.size()));
  return AnswerBytes(text.data(), text.size() > 0 ? text.size() : 1, text.size());
}

LRESULT Host::AnswerNumber() {
  static const LRESULT kNumbers[] = {
      0, 0, 1, 1, 1, -1, 2, 100, 0x4000, 0x7FFFFFFF, static_cast<LRESULT>(0x7FFFFFFFFFFFFFFF)};
  return dice->OneIn(8) ? static_cast<LRESULT>(dice->Next()) : dice->Of(kNumbers);
}

// Code 3: the header's value goes where the block says, cut to its room; the answer is its length.
LRESULT Host::FillHeader(LPARAM block) {
  const auto* const slots = reinterpret_cast<const long long*>(block);
  if (IsBadReadPtr(slots, 3 * sizeof *slots)) return 0;
  auto* const buffer = reinterpret_cast<char*>(slots[1]);
  const auto size = static_cast<std::size_t>(slots[2]);
  if (size == 0 || IsBadWritePtr(buffer, size)) return 0;
  const std::size_t length = dice->Below(2 * size);
  const std::size_t copied = length < size ? length : size - 1;
  std::memset(buffer, dice->OneIn(2) ? 'v' : '\x93', copied);
  buffer[copied] = '\0';
  return static_cast<LRESULT>(length);
}

// One that is not lent, full of zeroes or of anything; 0 when all are.
LRESULT Host::Lend() {
  if (dice->OneIn(4)) return 0;
  for (Record& record : records_) {
    if (record.lent) continue;
    DWORD before;
    VirtualProtect(record.bytes, wfinfo::kAccountRecordSize, PAGE_READWRITE, &before);
    const bool zeroes = dice->OneIn(2);
    for (std::size_t at = 0; at < wfinfo::kAccountRecordSize; ++at)
      record.bytes[at] = zeroes ? '\0' : static_cast<char>(dice->Next());
    record.lent = true;
    return Address(record.bytes);
  }
  return 0;
}

// What was lent cannot be touched any more.
void Host::TakeBack(LPARAM block) {
  const auto* const slots = reinterpret_cast<const long long*>(block);
  if (IsBadReadPtr(slots, sizeof *slots)) return;
  for (Record& record : records_) {
    if (Address(record.bytes) != slots[0] || !record.lent) continue;
    DWORD before;
    VirtualProtect(record.bytes, wfinfo::kAccountRecordSize, PAGE_NOACCESS, &before);
    record.lent = false;
  }
}

// A list is the library's until it is given back, in pages of its own.
LRESULT Host::GiveList() {
  using namespace std::string_view_literals;
  static constexpr std::string_view kSome[] = {"\0"sv, "one\0two\0\0"sv, "\x93\0\x1A\x81\0\0"sv, "one\0\0"sv};
  if (dice->OneIn(4)) return dice->OneIn(2) ? 0 : -1;
  const std::string_view list = dice->Of(kSome);
  auto* const page = static_cast<char*>(VirtualAlloc(nullptr, kPage, MEM_COMMIT, PAGE_READWRITE));
  lists_.insert(Address(page + kPage - list.size()));
  return Address(std::memcpy(page + kPage - list.size(), list.data(), list.size()));
}

void Host::FreeList(LPARAM block) {
  const auto* const slots = reinterpret_cast<const long long*>(block);
  if (IsBadReadPtr(slots, sizeof *slots) || lists_.erase(slots[0]) == 0) return;
  VirtualFree(reinterpret_cast<void*>(slots[0] & ~static_cast<long long>(kPage - 1)), 0, MEM_RELEASE);
}

LRESULT Host::Answer(int code, LPARAM block) {
  Forget();
  if (code == kCurrentHeader) return FillHeader(block);
  if (code == kHeaderCount) return static_cast<LRESULT>(dice->Below(100)) - 1;
  if (code == kGrepIsBusy) return 0;
  if (code == kLend) return Lend();
  if (code == kRelease) TakeBack(block);
  if (code == kSave) {
    const LRESULT saved = AnswerNumber();
    TakeBack(block);
    return saved;
  }
  if (code == kSpamFilter && block != 0) *reinterpret_cast<long long*>(block) = 0;
  using namespace std::string_view_literals;
  if (IsOneOf(kLists, code)) return GiveList();
  if (code == kFreeList) FreeList(block);
  if (IsOneOf(kWideTexts, code))
    return AnswerOneOf({"", "t\0e\0x\0t\0"sv, "\x00\xD8"sv, "\xE5\x65\x00\xDC\x0D\x00"sv});
  if (code == kUtf8Text) return AnswerOneOf({"", "text", "\xE6\x97\xA5", "\xE6\x97", "\xFF\xC0\x80"});
  return text_codes_.count(code) == 0 ? AnswerNumber() : AnswerText();
}

}  // namespace monkey
