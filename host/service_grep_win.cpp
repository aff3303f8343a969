// Windows with search results: they open and close as a macro asks. What is searched for belongs to the real
// host; here every mail is a result.
#include <windows.h>

#include "frame_win.h"
#include "request_server_win.h"

namespace wrenfold {
namespace {

enum GrepQuestion : Slot { kWhichWindow = 0, kIsBrowseMode = 1 };

Answer GrepWindow(Request& request) {
  if (request.Number(0) != kWhichWindow) return {};
  return Request::AnswerNumber(reinterpret_cast<Slot>(Windows::GrepWindow()));
}

Answer Search(Request&) { return Request::AnswerNumber(Windows::OpenGrepWindow() ? 1 : 0); }

Answer AddToSearch(Request& request) {
  return Windows::GrepWindow() != nullptr ? Request::AnswerNumber(1) : Search(request);
}

// The search goes on until the host's messages have been handled once.
Answer StartSearch(Request& request) {
  const Answer answer = Search(request);
  if (answer.value != 0) Windows::BeginSearch();
  return answer;
}

Answer StartAddToSearch(Request& request) {
  const Answer answer = AddToSearch(request);
  if (answer.value != 0) Windows::BeginSearch();
  return answer;
}

Answer IsSearching(Request&) { return Request::AnswerNumber(Windows::IsSearching() ? 1 : 0); }

Answer StopSearch(Request&) {
  const bool searching = Windows::IsSearching();
  Windows::EndSearch();
  return Request::AnswerNumber(searching ? 1 : 0);
}

// The frame has raised the window already.
Answer GrepRaised(Request&) { return Request::AnswerNumber(Windows::GrepWindow() != nullptr ? 1 : 0); }

constexpr Service kServices[] = {
    {83, nullptr, Search},       {129, nullptr, GrepWindow},       {199, nullptr, StartSearch},
    {217, nullptr, AddToSearch}, {218, nullptr, StartAddToSearch}, {256, nullptr, IsSearching},
    {257, nullptr, StopSearch},  {264, nullptr, GrepRaised},
};

const ServiceFamily kFamily(kServices, {});

}  // namespace
}  // namespace wrenfold
