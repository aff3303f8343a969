// All services of the small host: which codes and menu commands it answers.
#pragma once

#include <span>

#include "host/requests/request_server_win.h"

namespace wrenfold {

// The families, each in the file of its name.
extern const ServiceFamily kAccountsServices;
extern const ServiceFamily kApplicationServices;
extern const ServiceFamily kAttachmentsServices;
extern const ServiceFamily kBookServices;
extern const ServiceFamily kBookWindowsServices;
extern const ServiceFamily kCsvServices;
extern const ServiceFamily kDialUpServices;
extern const ServiceFamily kEditorServices;
extern const ServiceFamily kExternalServices;
extern const ServiceFamily kFilesServices;
extern const ServiceFamily kFilingServices;
extern const ServiceFamily kFolderPropertiesServices;
extern const ServiceFamily kFoldersServices;
extern const ServiceFamily kGrepServices;
extern const ServiceFamily kHeaderChangesServices;
extern const ServiceFamily kHeaderViewServices;
extern const ServiceFamily kHostServices;
extern const ServiceFamily kHostWindowsServices;
extern const ServiceFamily kHtmlServices;
extern const ServiceFamily kListViewServices;
extern const ServiceFamily kLogServices;
extern const ServiceFamily kMacrosServices;
extern const ServiceFamily kMailEditingServices;
extern const ServiceFamily kMailFactsServices;
extern const ServiceFamily kMailListServices;
extern const ServiceFamily kMailServices;
extern const ServiceFamily kNavigationServices;
extern const ServiceFamily kNoticesServices;
extern const ServiceFamily kOptionsServices;
extern const ServiceFamily kOutgoingMailsServices;
extern const ServiceFamily kPrintingServices;
extern const ServiceFamily kQuotingServices;
extern const ServiceFamily kReceptionServices;
extern const ServiceFamily kRemoteServices;
extern const ServiceFamily kSavedDraftsServices;
extern const ServiceFamily kSearchFoldersServices;
extern const ServiceFamily kSmimeServices;
extern const ServiceFamily kSortingRulesServices;
extern const ServiceFamily kSyncServices;
extern const ServiceFamily kTabsServices;
extern const ServiceFamily kTemplatesServices;
extern const ServiceFamily kTransferServices;
extern const ServiceFamily kTransmissionServices;
extern const ServiceFamily kUploadsServices;
extern const ServiceFamily kViewServices;

std::span<const ServiceFamily* const> AllServices();

}  // namespace wrenfold
