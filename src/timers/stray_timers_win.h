// Timers that a thread other than their own has stopped. The system lets no thread kill another's timer, so
// such a timer ticks once more, on its own thread, and ends itself then. Until that the library must stay
// loaded: each of them holds a reference to it.
#pragma once

#include <windows.h>

namespace wfinfo {

// Notes that `timer` of `thread` has been stopped from elsewhere.
void HoldForStray(DWORD thread, UINT_PTR timer);

// At the tick of a timer of the calling thread: this library when its reference is to be given back now, null
// when the timer held none.
HMODULE ReferenceOfStray(UINT_PTR timer);

// When a thread ends: its timers have ended with it. To be called under the lock of the system's loader.
void ReleaseStraysOfThread();

// A timer procedure whose body answers with ReferenceOfStray. The reference may be the last one, so
// nothing of this library may run after FreeLibrary: the procedure jumps there, and FreeLibrary returns to
// the system.
#define WFINFO_LEAVING_TIMER(procedure, body)                                   \
  extern "C" void CALLBACK procedure(HWND, UINT, UINT_PTR, DWORD);              \
  __asm__(".text\n.globl " #procedure "\n.seh_proc " #procedure "\n" #procedure \
          ":\n"                                                                 \
          "  subq $40, %rsp\n" /* room for the body's parameters */             \
          "  .seh_stackalloc 40\n"                                              \
          "  .seh_endprologue\n"                                                \
          "  call " #body                                                       \
          "\n"                                                                  \
          "  testq %rax, %rax\n"                                                \
          "  movq %rax, %rcx\n"                                                 \
          "  je 1f\n"                                                           \
          "  addq $40, %rsp\n"                                                  \
          "  rex.W jmpq *__imp_FreeLibrary(%rip)\n"                             \
          "1:\n"                                                                \
          "  addq $40, %rsp\n"                                                  \
          "  ret\n"                                                             \
          ".seh_endproc\n")

}  // namespace wfinfo
