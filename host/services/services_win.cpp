#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr const ServiceFamily* kAll[] = {
    &kAccountsServices,  &kBookServices,      &kDraftsServices,   &kExternalServices,    &kFilesServices,
    &kFoldersServices,   &kGrepServices,      &kHostServices,     &kHostWindowsServices, &kListViewServices,
    &kMacrosServices,    &kMailFactsServices, &kMailListServices, &kMailServices,        &kNavigationServices,
    &kNoticesServices,   &kOptionsServices,   &kQuotingServices,  &kReceptionServices,   &kSmimeServices,
    &kTemplatesServices, &kTransferServices,  &kViewServices,     &kWritingServices,
};

}  // namespace

std::span<const ServiceFamily* const> AllServices() { return kAll; }

}  // namespace wrenfold
