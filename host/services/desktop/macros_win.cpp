// Macros run in another window, and commands posted to the host.
#include <windows.h>

#include <string>
#include <vector>

#include "host/charset/charsets.h"
#include "host/library/export_caller_win.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/inner_macros_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {

namespace {

constexpr std::size_t kMostParameters = 9;

// The slots behind the macro. How many there are nobody knows; those left out are 0.
std::vector<macro::Value> Parameters(const Request& request) {
  std::vector<macro::Value> parameters;
  for (std::size_t slot = 1; slot <= kMostParameters; ++slot) {
    const Slot value = request.Number(slot);
    if (IsPassedText(value)) {
      parameters.emplace_back(std::string(request.Text(slot)));
    } else {
      parameters.emplace_back(value);
    }
  }
  return parameters;
}

std::int64_t NumberOf(const macro::Value& value) { return value.IsNumber() ? value.Number() : 1; }

Answer RunIn(HWND window, Request& request) {
  if (!request.state.run_macro) return request.Fail("nobody runs macros here");
  const MacroInMacro inner;
  if (inner.IsTooDeep())
    return request.Fail("macros stand at most " + std::to_string(kMostDepth) + " deep in one another");
  const Windows::Acting acting(window);
  const std::string macro(request.Text(0));
  const auto value = request.state.run_macro(macro, Parameters(request));
  if (!value) return request.Fail(std::string(request.state.failure));
  return Request::AnswerNumber(NumberOf(*value));
}

Answer RunHere(Request& request) { return RunIn(Windows::Receiver(), request); }
Answer RunInMain(Request& request) { return RunIn(Windows::Frame(), request); }

// Nothing has to be done before or after a macro waits for another window.
Answer NothingWanted(Request&) { return Request::AnswerNumber(0); }

Answer CarryOutPosted(Request&) {
  Windows::Pump();
  return Request::AnswerNumber(1);
}

constexpr Service kServices[] = {
    {45, "T", RunHere, "[runs the macro](#macros-in-other-windows) in the window asked"},
    {160, "T", RunInMain, "[runs the macro](#macros-in-other-windows) in the frame"},
    {278, "", NothingWanted, "0: nothing is to be done before a macro waits for another window"},
    {279, "", NothingWanted, "0: nothing is to be done after a macro waited for another window"},
    {319, "", CarryOutPosted, "carries out what waits in the message queue: 1"},
};

}  // namespace

const ServiceFamily kMacrosServices = {kServices, {}};

}  // namespace wrenfold
