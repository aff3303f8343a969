// The macros of the editor, each where the editor was opened for it.
#include "src/bridge/host_request_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"

using namespace wfinfo;

namespace {

// What an editor was opened for: the answer to NewMailType.
enum class EditorPurpose : Slot { kNewMail = 0, kReply = 1, kForward = 2 };

const char* EditorMacroWhenOpenedFor(EditorPurpose purpose) {
  return NewMailType() == static_cast<Slot>(purpose) ? NewEditorMacro() : kNoText;
}

}  // namespace

const char* NewMailMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kNewMail); }
const char* ReplyMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kReply); }
const char* ForwardMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kForward); }
