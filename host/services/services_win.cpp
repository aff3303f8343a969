#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr const ServiceFamily* kAll[] = {
    &kAccountsServices, &kBookServices,         &kDraftsServices,    &kExternalServices, &kFilesServices,
    &kFoldersServices,  &kGrepServices,         &kHostServices,      &kMacrosServices,   &kMailListServices,
    &kMailServices,     &kNavigationServices,   &kNoticesServices,   &kOptionsServices,  &kQuotingServices,
    &kSettingsServices, &kSmimeServices,        &kTemplatesServices, &kTransferServices, &kViewServices,
    &kWritingServices,  &kApplicationServices,  &kCsvServices,       &kDialUpServices,   &kPrintingServices,
    &kRemoteServices,   &kTransmissionServices,
};

}  // namespace

std::span<const ServiceFamily* const> AllServices() { return kAll; }

}  // namespace wrenfold
