#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr const ServiceFamily* kAll[] = {
    &kAccountsServices, &kBookServices,          &kDraftsServices,           &kExternalServices,
    &kFilesServices,    &kFilingServices,        &kFolderPropertiesServices, &kFoldersServices,
    &kGrepServices,     &kHostServices,          &kMacrosServices,           &kMailListServices,
    &kMailServices,     &kNavigationServices,    &kNoticesServices,          &kOptionsServices,
    &kQuotingServices,  &kSearchFoldersServices, &kSettingsServices,         &kSmimeServices,
    &kTabsServices,     &kTemplatesServices,     &kTransferServices,         &kViewServices,
    &kWritingServices,
};

}  // namespace

std::span<const ServiceFamily* const> AllServices() { return kAll; }

}  // namespace wrenfold
