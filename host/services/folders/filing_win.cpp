// Filing: the selected mails to other folders, for good.
#include <vector>

#include "host/mail/missing_mail.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"
#include "host/shared/selection_win.h"

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
  std::vector<std::size_t> mails = SelectedMails(request);
  if (mails.empty()) return request.Fail(kNoMailSelected);
  // A loop that files what it finds would find these again and again, and their copies.
  std::erase_if(mails, [&](std::size_t mail) { return request.state.LiesIn(mail, *target); });
  if (mails.empty()) {
    return request.Fail("what is selected lies in " + request.state.folders()[*target].name + " already");
  }
  return DoneUnless(request, command == kMove ? request.state.MoveMails(mails, *target)
                                              : request.state.CopyMails(mails, *target));
}

constexpr Service kServices[] = {
    {13, nullptr, Delete,
     "moves the selected mails to the [trash](#folders-and-filing); those in it are removed for good"},
    {14, nullptr, MoveOrCopy,
     "[files](#folders-and-filing) the selected mails in the folder, 0 when all lie there already; "
     "attachments are part of a mail here, so both copies are the same"},
};

}  // namespace

const ServiceFamily kFilingServices = {kServices, {}};

}  // namespace wrenfold
