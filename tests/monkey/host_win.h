// A host that answers at random, forgets every answer, calls the library back and loses its windows.
#pragma once

#include <windows.h>

#include <functional>
#include <set>
#include <string_view>
#include <vector>

#include "tests/monkey/dice.h"

namespace monkey {

class Host {
 public:
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Makes the windows ready for a call: those that went away are opened again.
  void Prepare(Dice& dice);
  std::vector<HWND> Windows() const { return {frame_, view_, viewer_, dialog_, GetDesktopWindow()}; }
  // Calls back, and loses a window, as the host may whenever it has the word. Also from its message function.
  void Interrupt();
  // The dice of the call at hand, with which requests are answered; null between calls.
  Dice* dice = nullptr;
  // Neither calls back nor loses windows, so that all that grows is the library's.
  bool calm = false;
  // Calls an export from inside a request.
  std::function<void(Dice&)> reenter;

 private:
  static constexpr int kRecords = 4;
  struct Record {
    char* bytes;  // up to a page end
    bool lent;
  };

  static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT Answer(int code, LPARAM block);
  LRESULT AnswerBytes(const void* filling, std::size_t filling_size, std::size_t size);
  LRESULT AnswerText();
  LRESULT AnswerOneOf(std::initializer_list<std::string_view> texts);
  LRESULT AnswerNumber();
  LRESULT AnswerWindow(HWND usual);
  LRESULT FillHeader(LPARAM block);
  LRESULT Lend();
  void TakeBack(LPARAM block);
  LRESULT GiveList();
  void FreeList(LPARAM block);
  void Forget();

  std::set<int> text_codes_;
  char* arena_;
  char* next_;
  char* answer_ = nullptr;
  std::size_t answer_size_ = 0;
  std::set<LRESULT> lists_;  // lent
  Record records_[kRecords];
  HWND frame_ = nullptr;
  HWND view_ = nullptr;
  HWND viewer_ = nullptr;
  HWND dialog_ = nullptr;  // owned by the frame
  int depth_ = 0;
};

}  // namespace monkey
