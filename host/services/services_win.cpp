#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr const ServiceFamily* kAll[] = {
    &kAccountsServices,
    &kApplicationServices,
    &kAttachmentsServices,
    &kBookServices,
    &kBookWindowsServices,
    &kCsvServices,
    &kDialUpServices,
    &kDraftsServices,
    &kEditorServices,
    &kExternalServices,
    &kFilesServices,
    &kFilingServices,
    &kFolderPropertiesServices,
    &kFoldersServices,
    &kGrepServices,
    &kHeaderViewServices,
    &kHostServices,
    &kHostWindowsServices,
    &kHtmlServices,
    &kListViewServices,
    &kLogServices,
    &kMacrosServices,
    &kMailEditingServices,
    &kMailFactsServices,
    &kMailListServices,
    &kMailServices,
    &kNavigationServices,
    &kNoticesServices,
    &kOptionsServices,
    &kPrintingServices,
    &kQuotingServices,
    &kReceptionServices,
    &kRemoteServices,
    &kSearchFoldersServices,
    &kSmimeServices,
    &kSortingRulesServices,
    &kSyncServices,
    &kTabsServices,
    &kTemplatesServices,
    &kTransferServices,
    &kTransmissionServices,
    &kUploadsServices,
    &kViewServices,
    &kWritingServices,
};

}  // namespace

std::span<const ServiceFamily* const> AllServices() { return kAll; }

}  // namespace wrenfold
