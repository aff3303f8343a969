// Settings that the small host has no use for but keeps, so that a macro reads back what it set: one code
// sets, one asks.
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/services/transmission_win.h"

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

// The first account is the current one.
Answer Account(Request& request) { return request.AnswerText(AccountNames(request.state)[0]); }

constexpr int kThreadView = 25;
constexpr int kSortMethod = 26;
constexpr int kViewArea = 28;
constexpr int kPane = 89;

constexpr Service kServices[] = {
    {5, nullptr, Account, "name of the first account; `local` without one"},
    {6, nullptr, Account, "as 5"},
    {18, nullptr, Keep<kPane>},
    {24, nullptr, Keep<kThreadView>},
    {kThreadView, nullptr, Kept<kThreadView>},
    {kSortMethod, nullptr, Kept<kSortMethod>},
    {27, nullptr, Keep<kSortMethod>},
    {kViewArea, nullptr, Kept<kViewArea>},
    {29, nullptr, Keep<kViewArea>},
    {kPane, nullptr, Kept<kPane>},
    {225, nullptr, Kept<kPane>},
};

}  // namespace

const ServiceFamily kSettingsServices = {kServices, {}};

}  // namespace wrenfold
