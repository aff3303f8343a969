#include "tests/monkey/host_win.h"

#include <cstring>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/rows.h"

namespace monkey {
namespace {

constexpr std::size_t kArena = std::size_t{1} << 30;
constexpr std::size_t kPage = 4096;
constexpr std::size_t kTenMegabytes = 10 * 1024 * 1024;
constexpr int kDeepest = 3;

// Codes that exports written by hand ask texts with; those of thin exports stand in their rows.
constexpr int kTexts[] = {1,   2,   19,  47,  81,  86,  87,  111, 113, 114, 115, 134,
                          153, 158, 176, 262, 268, 269, 285, 291, 292, 293, 297};
constexpr int kCurrentHeader = 3;
constexpr int kHeaderCount = 4;  // each is asked for: 2^63 of them would be, too
constexpr int kLendAccount = 75;
constexpr int kSpamFilter = 176;  // answers in its block
constexpr int kLists[] = {143, 144};
constexpr int kWideTexts[] = {290, 313};
constexpr int kUtf8Text = 307;
constexpr int kGrepIsBusy = 256;  // waited for

Host* g_host = nullptr;

LRESULT Address(const void* address) { return reinterpret_cast<LRESULT>(address); }

template <std::size_t kCount>
bool IsOneOf(const int (&codes)[kCount], int code) {
  for (const int each : codes) {
    if (each == code) return true;
  }
  return false;
}

HWND Open(const char* class_name) {
  const HWND window = CreateWindowExA(0, class_name, "", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr,
                                      nullptr, GetModuleHandleA(nullptr), nullptr);
  return window;
}

}  // namespace

Host::Host() {
  g_host = this;
  arena_ = next_ = static_cast<char*>(VirtualAlloc(nullptr, kArena, MEM_RESERVE, PAGE_READWRITE));
  for (const char* name : {wfinfo::kFrameClass, wfinfo::kOuterViewClass}) {
    WNDCLASSA window_class{};
    window_class.lpfnWndProc = &Receive;
    window_class.hInstance = GetModuleHandleA(nullptr);
    window_class.lpszClassName = name;
    RegisterClassA(&window_class);
  }
  for (const int code : kTexts) text_codes_.insert(code);
  for (const wfinfo::catalogue::Row& row : wfinfo::catalogue::Rows()) {
    if (row.kind == wfinfo::catalogue::Kind::kThin && row.result.ends_with("Str"))
      text_codes_.insert(row.code);
  }
  std::memset(record_, 0, sizeof record_);
}

Host::~Host() {
  DestroyWindow(view_);
  DestroyWindow(frame_);
  VirtualFree(arena_, 0, MEM_RELEASE);
  g_host = nullptr;
}

void Host::Prepare(Dice& dice) {
  if (!IsWindow(frame_)) {
    frame_ = Open(wfinfo::kFrameClass);
    SetMenu(frame_, CreateMenu());
  }
  if (!IsWindow(view_)) view_ = Open(wfinfo::kOuterViewClass);
  EnableWindow(frame_, !dice.OneIn(64));  // disabled: as while a dialog shows
  SetWindowLongPtrA(view_, GWLP_USERDATA, static_cast<LONG_PTR>(dice.Below(2)));
  SetActiveWindow(dice.OneIn(4) ? view_ : frame_);
}

LRESULT CALLBACK Host::Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (g_host == nullptr || g_host->dice == nullptr) return DefWindowProcA(window, message, wparam, lparam);
  Dice& dice = *g_host->dice;
  switch (message) {
    case wfinfo::kHostRequest:
      return g_host->Answer(static_cast<int>(wparam), lparam);
    case WM_COMMAND:
      return static_cast<LRESULT>(dice.Below(3));
    case wfinfo::kHostGetActiveView:
      return dice.OneIn(16) ? Address(g_host->view_) : 0;
    case wfinfo::kHostGetRequestTarget:
      return dice.OneIn(32) ? 0 : Address(window);
  }
  return DefWindowProcA(window, message, wparam, lparam);
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

LRESULT Host::AnswerTextOf(std::size_t size) {
  const std::size_t whole = (size + kPage) / kPage * kPage;
  if (answer_ != nullptr) VirtualFree(answer_, answer_size_, MEM_DECOMMIT);
  if (next_ + whole > arena_ + kArena) next_ = arena_;
  answer_ = static_cast<char*>(VirtualAlloc(next_, whole, MEM_COMMIT, PAGE_READWRITE));
  answer_size_ = whole;
  next_ += whole;
  // At the end of its pages.
  char* const text = answer_ + whole - size - 1;
  static const char kMail[] =
      "From: Alice <alice@example.com>\r\nSubject: \x93\xFA\x96{\r\n folded\r\n\r\nbody "
      "\x1A\x81\x82\x83\r\nlines\r\n";
  for (std::size_t at = 0; at < size; ++at) text[at] = kMail[at % (sizeof kMail - 1)];
  text[size] = '\0';
  return Address(text);
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
  std::memset(buffer, 'v', copied);
  buffer[copied] = '\0';
  return static_cast<LRESULT>(length);
}

LRESULT Host::Answer(int code, LPARAM block) {
  if (depth_ < kDeepest && dice->OneIn(24)) {
    ++depth_;
    reenter(*dice);
    --depth_;
  }
  if (dice->OneIn(2000)) DestroyWindow(frame_);
  Forget();
  if (code == kCurrentHeader) return FillHeader(block);
  if (code == kHeaderCount) return static_cast<LRESULT>(dice->Below(100)) - 1;
  if (code == kGrepIsBusy) return 0;
  if (code == kLendAccount) return dice->OneIn(4) ? 0 : Address(record_);
  if (code == kSpamFilter && block != 0) *reinterpret_cast<long long*>(block) = 0;
  if (IsOneOf(kLists, code)) return dice->OneIn(4) ? 0 : Address("one\0two\0");
  if (IsOneOf(kWideTexts, code)) return dice->OneIn(4) ? 0 : Address(L"text");
  if (code == kUtf8Text) return dice->OneIn(4) ? 0 : Address("text");
  if (text_codes_.count(code) == 0) return AnswerNumber();
  if (dice->OneIn(8)) return 0;
  if (dice->OneIn(4000)) return AnswerTextOf(kTenMegabytes);
  static const std::size_t kSizes[] = {0, 1, 5, 100, 127, 128, 1000, 8190, 8191, 8192, 20000};
  return AnswerTextOf(dice->Of(kSizes));
}

}  // namespace monkey
