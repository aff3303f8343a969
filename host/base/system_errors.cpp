#include "host/base/system_errors.h"

namespace wrenfold {
namespace {

struct Meaning {
  unsigned long number;
  const char* text;
};

// The system's own texts are in the user's language, and WinINet has its own in another place; these are what
// calls of macros meet. https://learn.microsoft.com/windows/win32/debug/system-error-codes
constexpr Meaning kMeanings[] = {
    {2, "no such file"},
    {3, "no such folder"},
    {5, "access denied"},
    {6, "no such handle"},
    {17, "it lies on another disk"},
    {19, "the disk is write-protected"},
    {21, "the disk is not ready"},
    {32, "another program uses it"},
    {33, "another program has locked it"},
    {53, "no such server"},
    {80, "it exists already"},
    {87, "a value that the system does not take"},
    {109, "nobody is at the other end"},
    {112, "no room is left"},
    {123, "no file can have this name"},
    {126, "no such library, or it needs one that is missing"},
    {127, "a library that it needs lacks a function"},
    {145, "the folder is not empty"},
    {183, "it exists already"},
    {193, "it is no library for 64-bit programs"},
    {206, "the name is too long"},
    {232, "nobody is at the other end"},
    {267, "it is no folder"},
    {1400, "no such window"},
    {10054, "the server broke the connection"},
    {10060, "no answer in time"},
    {10061, "the server refuses the connection"},
    {10065, "there is no way to the server"},
    {11001, "no such server"},
    {11002, "the server that knows names does not answer"},
    {11004, "the server has no address"},
    {12002, "no answer in time"},
    {12005, "it is no URL"},
    {12006, "a URL begins with http:// or https://"},
    {12007, "no such server"},
    {12029, "no connection to the server"},
    {12030, "the server broke the connection"},
    {12031, "the server broke the connection"},
    {12037, "the server's certificate has run out"},
    {12038, "the server's certificate is for another name"},
    {12045, "nobody trusted vouches for the server's certificate"},
    {12152, "the server's answer is not HTTP"},
    {12157, "no encryption that both sides know"},
};

}  // namespace

std::string SystemReason(unsigned long number) {
  const std::string error = "system error " + std::to_string(number);
  for (const Meaning& row : kMeanings) {
    if (row.number == number) return std::string(row.text) + " (" + error + ")";
  }
  return error;
}

}  // namespace wrenfold
