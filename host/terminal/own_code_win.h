// Whether the host's own code runs. What it keeps is touched by the thread that runs it alone; while that
// one waits for input or for a call of the library, which may never come back, another thread may take
// its place.
#pragma once

namespace wrenfold {

// Our own code; scopes of one thread nest. Waits while another thread has taken the place.
class OwnCode {
 public:
  OwnCode();
  ~OwnCode();
  OwnCode(const OwnCode&) = delete;
  OwnCode& operator=(const OwnCode&) = delete;

 private:
  bool entered_;
};

// Code of others that own code calls and that may hang, and waiting. Own code that it calls back enters anew.
class ForeignCode {
 public:
  ForeignCode();
  ~ForeignCode();
  ForeignCode(const ForeignCode&) = delete;
  ForeignCode& operator=(const ForeignCode&) = delete;

 private:
  bool left_;
};

// Takes the place for good. False when own code was running for all of the time.
bool TakePlaceOfOwnCode(unsigned long most_ms);

}  // namespace wrenfold
