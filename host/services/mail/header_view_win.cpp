// Which headers of the current mail show.
#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

Answer HeaderView(Request& request) { return Request::AnswerNumber(request.state.view.header_view); }

template <int kView>
Answer SetHeaderView(Request& request) {
  request.state.view.header_view = kView;
  return Request::Done(true);
}

// The header block that the window shows, as `state.view` says.
std::string ShownHeaders(Request& request) {
  switch (request.state.view.header_view) {
    case 0:
      return DisplayedHeaders(request.state.CurrentText());
    case 1:
      return std::string(SplitMail(request.state.CurrentText()).headers);
    default:
      return "";
  }
}

Answer HeaderCount(Request& request) {
  const std::string headers = ShownHeaders(request);
  Slot count = 0;
  for (std::size_t at = 0; const auto field = FieldAt(headers, at); ++count) at += field->lines.size();
  return Request::AnswerNumber(count);
}

Answer HeaderLineCount(Request& request) {
  const std::string headers = ShownHeaders(request);
  Slot count = 0;
  for (std::string_view rest = headers; !rest.empty(); ++count) rest.remove_prefix(FirstLine(rest).with_end);
  return Request::AnswerNumber(count);
}

constexpr Service kServices[] = {
    {40, nullptr, HeaderView, "number of the header view, 0 at first"},
    {220, nullptr, WithCurrent<HeaderCount>, "headers that the header view shows"},
    {221, nullptr, WithCurrent<HeaderLineCount>, "their lines, folded ones counted each"},
};

constexpr Command kCommands[] = {
    {40044, SetHeaderView<0>, "the usual headers"},
    {40045, SetHeaderView<1>, "all headers"},
    {40046, SetHeaderView<2>, "no headers"},
};

}  // namespace

const ServiceFamily kHeaderViewServices = {kServices, kCommands};

}  // namespace wrenfold
