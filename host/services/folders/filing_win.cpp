// Filing: the selected mails to other folders, for good.
#include <algorithm>

#include "host/requests/request_server_win.h"
#include "host/services/folders/folder_lookup_win.h"
#include "host/services/list/selection_win.h"
#include "host/services/services_win.h"
#include "host/writing/missing_mails.h"

namespace wrenfold {
namespace {

Answer DoneUnless(Request& request, std::string failure) {
  return failure.empty() ? Request::Done(true) : request.Fail(std::move(failure));
}

Answer Delete(Request& request) {
  const std::vector<std::size_t> mails = SelectedMails(request);
  if (mails.empty()) return request.Fail(kNoMailSelected);
  return DoneUnless(request, request.state.DeleteMails(mails));
}

// Sub-commands of code 14. Attached files are part of a mail's own file here, so both copies are the same.
enum MoveCommand : Slot { kMove = 0, kCopy = 1, kCopyWithAttachments = 2 };

// sub-command, folder pair
Answer MoveOrCopy(Request& request) {
  const Slot command = request.Number(0);
  if (command < kMove || command > kCopyWithAttachments) return request.Fail("no such form of code 14");
  if (NameOfPair(request, 1).empty()) return request.Fail("no folder is named");
  const auto target = FolderOfPair(request, 1);
  if (!target) return NoFolder(request);
  const std::vector<std::size_t> mails = SelectedMails(request);
  if (mails.empty()) return request.Fail(kNoMailSelected);
  const bool all_there = std::all_of(mails.begin(), mails.end(), [&](std::size_t mail) {
    return request.state.Mail(mail).folder == *target;
  });
  // A loop that moves what it finds would find these again and again.
  if (command == kMove && all_there) {
    return request.Fail("what is selected lies in " + request.state.folders()[*target].name + " already");
  }
  return DoneUnless(request, command == kMove ? request.state.MoveMails(mails, *target)
                                              : request.state.CopyMails(mails, *target));
}

constexpr Service kServices[] = {
    {13, nullptr, Delete,
     "moves the selected mails to the [trash](#folders-and-filing); those in it are removed for good"},
    {14, nullptr, MoveOrCopy,
     "[files](#folders-and-filing) the selected mails in the folder; attachments are part of a mail here, so "
     "both "
     "copies are the same"},
};

}  // namespace

const ServiceFamily kFilingServices = {kServices, {}};

}  // namespace wrenfold
