#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr const ServiceFamily* kAll[] = {
    &kAccountsServices,    &kApplicationServices,   &kAttachmentsServices,   &kBookServices,
    &kBookWindowsServices, &kCsvServices,           &kDialUpServices,        &kEditorServices,
    &kExternalServices,    &kFilesServices,         &kFilingServices,        &kFolderPropertiesServices,
    &kFoldersServices,     &kGrepServices,          &kHeaderChangesServices, &kHeaderViewServices,
    &kHostServices,        &kHostWindowsServices,   &kHtmlServices,          &kListViewServices,
    &kLogServices,         &kMacrosServices,        &kMailEditingServices,   &kMailFactsServices,
    &kMailListServices,    &kMailServices,          &kNavigationServices,    &kNoticesServices,
    &kOptionsServices,     &kOutgoingMailsServices, &kPrintingServices,      &kQuotingServices,
    &kReceptionServices,   &kRemoteServices,        &kSavedDraftsServices,   &kSearchFoldersServices,
    &kSmimeServices,       &kSortingRulesServices,  &kSyncServices,          &kTabsServices,
    &kTemplatesServices,   &kTransferServices,      &kTransmissionServices,  &kUploadsServices,
    &kViewServices,
};

}  // namespace

std::span<const ServiceFamily* const> AllServices() { return kAll; }

}  // namespace wrenfold
