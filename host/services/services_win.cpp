#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr const ServiceFamily* kAll[] = {
    &kAccountsServices, &kAttachmentsServices,      &kBookServices,          &kBookWindowsServices,
    &kDraftsServices,   &kEditorServices,           &kExternalServices,      &kFilesServices,
    &kFilingServices,   &kFolderPropertiesServices, &kFoldersServices,       &kGrepServices,
    &kHostServices,     &kHostWindowsServices,      &kHtmlServices,          &kListViewServices,
    &kMacrosServices,   &kMailEditingServices,      &kMailFactsServices,     &kMailListServices,
    &kMailServices,     &kNavigationServices,       &kNoticesServices,       &kOptionsServices,
    &kQuotingServices,  &kReceptionServices,        &kSearchFoldersServices, &kSmimeServices,
    &kTabsServices,     &kTemplatesServices,        &kTransferServices,      &kUploadsServices,
    &kViewServices,     &kWritingServices,
};

}  // namespace

std::span<const ServiceFamily* const> AllServices() { return kAll; }

}  // namespace wrenfold
