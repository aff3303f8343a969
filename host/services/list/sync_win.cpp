// The list follows the open mail, and goes back.
#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"
#include "host/services/services_win.h"
#include "host/windows/list_window_win.h"

namespace wrenfold {
namespace {

// Shows the open mail in its list, whatever hid it.
Answer Sync(Request& request) {
  HostState& state = request.state;
  state.list.before_sync = {state.list.area, state.list.found_only, state.root(),
                            static_cast<std::size_t>(TitleListTop(state))};
  if (!PlaceIn(ShownMails(state, state.folder()), state.root())) {
    state.list.area = ViewArea::kAll;
    state.list.found_only = false;
    state.list.turned.clear();
    if (state.list.threads == ThreadView::kFolded) state.list.threads = ThreadView::kOn;
    RemakeLists(state);
  }
  const auto place = PlaceIn(ShownMails(state, state.folder()), state.root());
  if (!place) return request.Fail("the open mail is in no list");
  const auto top = static_cast<std::size_t>(TitleListTop(state));
  if (*place < top || *place >= top + kTitleListLines) ScrollTitleList(state, *place);
  return Request::Done(true);
}

Answer BackSync(Request& request) {
  HostState& state = request.state;
  if (!state.list.before_sync) return request.Fail("nothing was shown with Sync");
  const ListView::Place before = *state.list.before_sync;
  state.list.before_sync.reset();
  state.list.area = before.area;
  state.list.found_only = before.found_only;
  RemakeLists(state);
  state.Open(before.mail);
  ScrollTitleList(state, before.top);
  return Request::Done(true);
}

Answer SyncFound(Request& request) {
  const std::vector<std::size_t>& found = request.state.commands.found;
  if (!PlaceIn(found, request.state.root())) return request.Fail("the open mail is none that a search found");
  return Sync(request);
}

constexpr Command kCommands[] = {
    {40095, WithRoot<Sync>,
     "shows the open mail in the list, for which the view area becomes 0 and threads unfold when they hide "
     "it"},
    {40096, WithRoot<BackSync>, "back to the view area, the place in the list and the mail before `Sync`"},
    {40202, WithRoot<SyncFound>, "as `Sync`, for a mail that a search found"},
};

}  // namespace

const ServiceFamily kSyncServices = {{}, kCommands};

}  // namespace wrenfold
