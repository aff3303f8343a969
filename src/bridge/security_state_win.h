// What the last encryption, decryption or verification left behind, whichever program did it.
#pragma once

#include <windows.h>

#include <cstddef>

#include "src/base/unique_win.h"

namespace wfinfo {

// Exit code of the last child program; 0 before any run, -1 while a run has not got one.
extern int g_pgpExitCode;

// Signature state of the last run: 0 before any run and for an unsigned or badly signed message, 1 for a good
// signature, -1 when a run did not come so far.
extern int g_signatureState;

// Bytes of the last S/MIME result; its block has spare zero bytes behind them.
extern DWORD g_smimeOutputSize;

// Resets what every encrypt, decrypt or verify call resets at its start: both numbers become -1, the size 0,
// the info text is dropped.
void BeginPgpRun();

// The info text: messages of the last program, or the report on the last signature. "" when there is none.
const char* PgpInfoText();
bool HasPgpInfoText();
// Takes a LocalAlloc block (or null) as the info text and frees the one before.
void KeepPgpInfoText(char* block);
// Gives the block of the info text away (null when there is none); there is no info text afterwards.
char* TakePgpInfoText();
// Copies `text` as the info text; without memory there is none afterwards.
void SetPgpInfoText(const char* text);

// Spare zeroed bytes behind an S/MIME result.
inline constexpr std::size_t kSmimeSpareBytes = 128;

// A zeroed block for a result of `size` bytes and the spare ones behind it, or null.
char* NewSmimeOutput(DWORD size);

// Wipes a LocalAlloc block (or null) and frees it: what was encrypted does not stay behind in free memory.
void FreeSecret(void* block);
using UniqueSecret = Unique<PointerTraits<void*, &FreeSecret>>;

// Takes `block`, which holds `size` bytes of result, as the S/MIME output block; wipes and frees the one
// before. The block stays valid until the next call. Returns `block`.
const char* KeepSmimeOutput(char* block, DWORD size);

}  // namespace wfinfo
