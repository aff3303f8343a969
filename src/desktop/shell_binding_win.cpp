#include "src/desktop/shell_binding_win.h"

#include <atomic>

#include "src/bridge/module_win.h"

namespace wfinfo {
namespace {

struct ShellBinding {
  HMODULE module;  // held for the life of the process
  ShellExecuteFunction execute;
};
std::atomic<const ShellBinding*> g_shell = nullptr;

}  // namespace

ShellExecuteFunction BoundShellExecute() {
  const ShellBinding* bound = g_shell.load(std::memory_order_acquire);
  if (bound == nullptr) {
    const HMODULE module = LoadSystemLibrary("SHELL32.DLL");
    if (module == nullptr) return nullptr;
    bound = PublishFirst(g_shell, {module, ProcOf<ShellExecuteFunction>(module, "ShellExecuteW")});
  }
  return bound != nullptr ? bound->execute : nullptr;
}

}  // namespace wfinfo
