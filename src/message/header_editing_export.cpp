// Exports that change the headers of the mail being written, and that join the values of repeated headers.

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/message/joined_headers_win.h"

using namespace wfinfo;

namespace {

// Function codes of the host.
constexpr int kCodeSetHeader = 43;
constexpr int kCodeAddHeader = 44;

void SendNameAndValue(int code, const char* name, const char* value) {
  Slot block[] = {ToSlot(name), ToSlot(value)};
  SendHostRequest(code, block);
}

// Deletes occurrences from the last down to `first`: from the end, so that the indices left stay valid.
void DeleteDownTo(const char* name, long long count, int first) {
  for (long long i = count - 1; i >= first; --i) DeleteHeader2(name, static_cast<int>(i));
}

}  // namespace

const char* SetHeader(const char* name, const char* value) noexcept {
  if (IsText(name) && IsText(value)) SendNameAndValue(kCodeSetHeader, name, value);
  return kNoText;
}

const char* AddHeader(const char* name, const char* value) noexcept {
  if (IsText(name) && IsText(value)) SendNameAndValue(kCodeAddHeader, name, value);
  return kNoText;
}

const char* AddHeaderIf(const char* name, const char* value) noexcept {
  if (IsText(name) && IsText(value) && *value != '\0') SendNameAndValue(kCodeAddHeader, name, value);
  return kNoText;
}

long long DeleteHeader(const char* name) noexcept { return DeleteHeader2(name, 0); }

const char* SetHeaderUnited(const char* name, const char* value) noexcept {
  if (!IsText(name) || !IsText(value)) return kNoText;
  DeleteDownTo(name, CountCurrentHeader(name), 1);
  SendNameAndValue(kCodeSetHeader, name, value);
  return kNoText;
}

const char* SetOrDeleteHeader(const char* name, const char* value) noexcept {
  if (!IsText(name) || !IsText(value)) return kNoText;
  if (*value != '\0') return SetHeaderUnited(name, value);
  DeleteDownTo(name, CountCurrentHeader(name), 1);
  DeleteHeader(name);
  return kNoText;
}

long long DeleteHeaderUnited(const char* name) noexcept {
  const long long count = CountCurrentHeader(name);
  if (count < 1) return count;
  DeleteDownTo(name, count, 0);
  return 0;
}

const char* CurrentHeaderUnited(const char* name, const char* separator) noexcept {
  return JoinHeaders({CountCurrentHeader, CurrentHeader2}, name, separator);
}

const char* RootHeaderUnited(const char* name, const char* separator) noexcept {
  return JoinHeaders({CountRootHeader, RootHeader2}, name, separator);
}
