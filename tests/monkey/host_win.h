// A host that answers at random, forgets every answer, calls the library back and loses its windows.
#pragma once

#include <windows.h>

#include <functional>
#include <set>
#include <string>

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
  // The dice of the call at hand, with which requests are answered; null between calls.
  Dice* dice = nullptr;
  // Calls an export from inside a request.
  std::function<void(Dice&)> reenter;

 private:
  static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  LRESULT Answer(int code, LPARAM block);
  LRESULT AnswerTextOf(std::size_t size);
  LRESULT AnswerNumber();
  LRESULT FillHeader(LPARAM block);
  void Forget();

  std::set<int> text_codes_;
  char* arena_;
  char* next_;
  char* answer_ = nullptr;
  std::size_t answer_size_ = 0;
  alignas(16) char record_[8192];
  HWND frame_ = nullptr;
  HWND view_ = nullptr;
  int depth_ = 0;
};

}  // namespace monkey
