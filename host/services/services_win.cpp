#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr const ServiceFamily* kAll[] = {
    &kAccountsServices,      &kAttachmentsServices,
    &kBookServices,          &kBookWindowsServices,
    &kDraftsServices,        &kEditorServices,
    &kExternalServices,      &kFilesServices,
    &kFilingServices,        &kFolderPropertiesServices,
    &kFoldersServices,       &kGrepServices,
    &kHostServices,          &kHtmlServices,
    &kMacrosServices,        &kMailEditingServices,
    &kMailListServices,      &kMailServices,
    &kNavigationServices,    &kNoticesServices,
    &kOptionsServices,       &kQuotingServices,
    &kSearchFoldersServices, &kSettingsServices,
    &kSmimeServices,         &kTabsServices,
    &kTemplatesServices,     &kTransferServices,
    &kUploadsServices,       &kViewServices,
    &kWritingServices,
};

}  // namespace

std::span<const ServiceFamily* const> AllServices() { return kAll; }

}  // namespace wrenfold
