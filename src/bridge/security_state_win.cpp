#include "src/bridge/security_state_win.h"

#include <cstring>
#include <utility>

#include "src/bridge/results_win.h"

namespace wfinfo {

int g_pgpExitCode = 0;
int g_signatureState = 0;
DWORD g_smimeOutputSize = 0;

namespace {
char* g_infoText = nullptr;
char* g_smimeOutput = nullptr;
}  // namespace

void BeginPgpRun() {
  g_pgpExitCode = -1;
  g_signatureState = -1;
  g_smimeOutputSize = 0;
  KeepPgpInfoText(nullptr);
}

const char* PgpInfoText() { return g_infoText != nullptr ? g_infoText : kNoText; }

bool HasPgpInfoText() { return g_infoText != nullptr; }

void KeepPgpInfoText(char* block) { LocalFree(std::exchange(g_infoText, block)); }

char* TakePgpInfoText() { return std::exchange(g_infoText, nullptr); }

void SetPgpInfoText(const char* text) {
  const std::size_t length = std::strlen(text);
  char* const block = NewResultBlock(length + 1);
  if (block != nullptr) std::memcpy(block, text, length);
  KeepPgpInfoText(block);
}

char* NewSmimeOutput(DWORD size) { return NewResultBlock(std::size_t{size} + kSmimeSpareBytes); }

void FreeSecret(void* block) {
  if (block == nullptr) return;
  SecureZeroMemory(block, LocalSize(block));
  LocalFree(block);
}

const char* KeepSmimeOutput(char* block, DWORD size) {
  FreeSecret(std::exchange(g_smimeOutput, block));
  g_smimeOutputSize = size;
  return block;
}

}  // namespace wfinfo
