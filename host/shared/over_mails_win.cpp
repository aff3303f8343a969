#include "host/shared/over_mails_win.h"

#include <filesystem>
#include <vector>

#include "host/base/ascii.h"
#include "host/base/paths.h"

namespace wrenfold {

std::string WhyOverOpenMails(HostState& state, const ExportPlan& plan) {
  std::vector<std::filesystem::path> sources;
  for (std::size_t mail = 0; mail < state.mail_count(); ++mail) {
    const std::filesystem::path& source = state.Mail(mail).source;
    const bool alike = EqualsIgnoringCase(PathToUtf8(source.filename()), PathToUtf8(plan.path.filename()));
    if (alike && (sources.empty() || sources.back() != source)) sources.push_back(source);
  }
  return WhyOverMails(plan, state.folders(), sources);
}

}  // namespace wrenfold
