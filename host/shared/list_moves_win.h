// Opening the mails of the list one after another.
#pragma once

#include <cstddef>

#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"

namespace wrenfold {

// Opens a mail of the list; its line is spoken when speech is on.
Answer OpenInList(Request& request, std::size_t mail);

// Opens the nearest mail that shows in the list and that `wanted` takes, behind the open one or before it,
// which need not show itself. False when there is none.
template <class Wanted>
bool MoveInList(Request& request, bool forwards, Wanted wanted) {
  HostState& state = request.state;
  const std::vector<std::size_t> ordered = OrderedMails(state, state.folder());
  const std::vector<std::size_t> shown = ShownMails(state, state.folder());
  const auto here = PlaceIn(ordered, state.root());
  if (!here) return false;
  // Stepping back from 0 wraps to a place behind the list.
  const std::size_t step = forwards ? 1 : static_cast<std::size_t>(-1);
  for (std::size_t place = *here + step; place < ordered.size(); place += step) {
    if (!PlaceIn(shown, ordered[place]) || !wanted(ordered[place])) continue;
    return OpenInList(request, ordered[place]).value != 0;
  }
  return false;
}

}  // namespace wrenfold
