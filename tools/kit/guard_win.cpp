#include "tools/kit/guard_win.h"

#include <windows.h>
// wincrypt.h needs windows.h first.
#include <wincrypt.h>

#include "tools/kit/text_win.h"

namespace kit {
namespace {

constexpr wchar_t kOwnKeys[] = L"Software\\Quenby";
constexpr wchar_t kMailClients[] = L"Software\\Clients\\Mail";
constexpr wchar_t kCertificates[] = L"Software\\Microsoft\\SystemCertificates";

// Test keys that a killed test left.
void DeleteKeyContainer(const std::string& name) {
  HCRYPTPROV none = 0;
  CryptAcquireContextW(&none, Wide(name).c_str(), nullptr, PROV_RSA_AES, CRYPT_DELETEKEYSET);
}

}  // namespace

Guard::Guard(const std::wstring& scratch, bool mapi, std::vector<std::string> key_containers)
    : file_(scratch + L"\\wfinfo-kit-settings.json"), key_containers_(std::move(key_containers)) {
  mended_ = MendWhatWasLeft();
  kept_ = {{{false, kOwnKeys}, true, {}},
           {{false, kMailClients}, mapi, {}},
           {{true, kMailClients}, mapi, {}},
           {{false, kCertificates}, false, {}}};
  for (Kept& kept : kept_) kept.tree = SavedTree(kept.place);
  on_disk_ = KeepOnDisk();
  if (on_disk_) RestoreTree(kept_[0].place, {});
}

bool Guard::KeepOnDisk() const {
  Json places = Json::List();
  for (const Kept& kept : kept_) {
    if (!kept.is_ours) continue;
    Json place = Json::Object();
    place.With("machine", kept.place.machine).With("path", Utf8(kept.place.path)).With("tree", kept.tree);
    places.items.push_back(std::move(place));
  }
  return WriteFileAt(file_, WriteJson(places));
}

bool Guard::MendWhatWasLeft() {
  const std::optional<std::string> text = ReadFileAt(file_);
  const std::optional<Json> places = text ? ReadJson(*text) : std::nullopt;
  if (!places) return false;
  for (const Json& place : places->items) {
    RestoreTree({place["machine"].truth, Wide(place["path"].text)}, place["tree"]);
  }
  return true;
}

Verdict Guard::PutBack() {
  for (const std::string& name : key_containers_) DeleteKeyContainer(name);
  std::string changed;
  for (const Kept& kept : kept_) {
    if (kept.is_ours && on_disk_) RestoreTree(kept.place, kept.tree);
    for (const std::string& path : Differences(kept.tree, SavedTree(kept.place), kept.is_ours)) {
      changed += NameOf(kept.place) + path + "\n";
    }
  }
  if (!on_disk_)
    return {Outcome::kFailed, "the settings could not be kept on disk: they were left alone", ""};
  if (!changed.empty())
    return {Outcome::kFailed, "not as before: " + changed.substr(0, changed.find('\n')), changed};
  DeleteFileW(file_.c_str());
  return {Outcome::kPassed, "", ""};
}

}  // namespace kit
