// What the server does with the messages of other programs.
#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>

#include "host/mapi/settings.h"
#include "host/mapi/store.h"

namespace wrenfold {

class MapiService {
 public:
  using Tell = void (*)(const std::string& line);

  // `complain` is told what went wrong between programs, `alert` what the user must know: a mail is lost.
  MapiService(std::filesystem::path home, MapiSettings settings, Tell complain, Tell alert)
      : outbox_(home / "outbox"),
        store_(home / "mails"),
        settings_(std::move(settings)),
        complain_(complain),
        alert_(alert) {}

  // nullopt for messages that are not of this kind.
  std::optional<LRESULT> Handle(UINT message, WPARAM wparam, LPARAM lparam);

 private:
  LRESULT TakeCommandLine(HANDLE mapping);
  void AnswerStoreRequest(WPARAM kind, HANDLE mapping);
  void FindNext(void* block);
  void Read(void* block);
  void Delete(void* block);
  // As slow, or as mortal, as the settings say.
  void Behave() const;

  std::filesystem::path outbox_;
  MapiStore store_;
  MapiSettings settings_;
  Tell complain_;
  Tell alert_;
};

}  // namespace wrenfold
