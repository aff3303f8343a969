// Settings that the small host has no use for but keeps, so that a macro reads back what it set: one code
// sets, one asks.
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

// The number is kept under the code that asks for it.
template <int kAskingCode>
Answer Keep(Request& request) {
  request.state.Setting(kAskingCode) = request.Number(0);
  return Request::AnswerNumber(1);
}

template <int kAskingCode>
Answer Kept(Request& request) {
  return Request::AnswerNumber(request.state.Setting(kAskingCode));
}

// There is one account.
Answer Account(Request& request) { return request.AnswerText("local"); }

constexpr int kThreadView = 25;
constexpr int kSortMethod = 26;
constexpr int kViewArea = 28;
constexpr int kPane = 89;

constexpr Service kServices[] = {
    {5, nullptr, Account, "\"local\": there is one account"},
    {6, nullptr, Account, "\"local\": there is one account"},
    {18, nullptr, Keep<kPane>, "keeps the number of the pane: 1"},
    {24, nullptr, Keep<kThreadView>, "keeps the number of the thread view: 1"},
    {kThreadView, nullptr, Kept<kThreadView>, "the thread view that was set, 0 at first"},
    {kSortMethod, nullptr, Kept<kSortMethod>, "the sort method that was set, 0 at first"},
    {27, nullptr, Keep<kSortMethod>, "keeps the number of the sort method: 1"},
    {kViewArea, nullptr, Kept<kViewArea>, "the view area that was set, 0 at first"},
    {29, nullptr, Keep<kViewArea>, "keeps the number of the view area: 1"},
    {kPane, nullptr, Kept<kPane>, "the pane that was set, 0 at first"},
    {225, nullptr, Kept<kPane>, "the pane that was set, 0 at first"},
};

}  // namespace

const ServiceFamily kSettingsServices = {kServices, {}};

}  // namespace wrenfold
