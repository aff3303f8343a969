#include "src/mapi/command_line_mutex_win.h"

#include "src/bridge/language_win.h"
#include "src/mapi/host_blocks.h"
#include "src/mapi/mapi_log_win.h"

namespace wfinfo::mapi {
namespace {

// The box's title tells whether another waiting program shows it already.
void TellOfStuckHandOff() {
  const char* const title = Chosen({"Wrenfold.exe command-line error", "Wrenfold.exe コマンドライン エラー"});
  if (const HWND box = FindWindowA(nullptr, title); box != nullptr) {
    SetForegroundWindow(box);
    return;
  }
  MessageBoxA(
      nullptr,
      Chosen(
          {"TamarinMail try to process command-line but the previous command-line processing TamarinMail not "
           "respond. This command-line process is cancelled.",
           "タマリンメールにコマンドラインを処理させようとしましたが、"
           "前のコマンドラインを処理しているタマリンメールが応答しません。"
           "このコマンドラインの処理は中止しました。"}),
      title, MB_ICONHAND);
}

}  // namespace

OwnedMutex AcquireCommandLineMutex() {
  UniqueHandle mutex(CreateMutexA(nullptr, FALSE, kCommandLineMutex));
  if (!mutex) {
    LogNumber("AcquireCommandLineMutex CreateMutex failed code=%u", GetLastError());
    return OwnedMutex();
  }
  // A holder that died, or a wait that fails, is no reason to keep a mail back.
  if (WaitForSingleObject(mutex.get(), CommandLineWaitMs(GetCurrentProcessId())) != WAIT_TIMEOUT) {
    return OwnedMutex(mutex.release());
  }
  TellOfStuckHandOff();
  return OwnedMutex();
}

}  // namespace wfinfo::mapi
