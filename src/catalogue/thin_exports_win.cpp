// The thin exports: each catalogue row but the hand-written ones becomes a function here.
#include "src/catalogue/thin_exports_win.h"

#include "src/catalogue/declarations.h"
#include "src/catalogue/row_macros.h"

// (Type, name) as a checked argument of Send.
#define WFINFO_ARGUMENT(type, name, ...) \
  wfinfo::thin::type { name }
#define WFINFO_ARGUMENTS(...) WFINFO_EACH(WFINFO_ARGUMENT, __VA_ARGS__)
// The same list with a comma in front of each, to follow the code.
#define WFINFO_NEXT_ARGUMENT(type, name, ...) \
  , wfinfo::thin::type { name }
#define WFINFO_SEND(result, dispatcher, code, ...)                                                        \
  wfinfo::thin::Send<WFINFO_RESULT_##result, wfinfo::thin::Dispatcher::k##dispatcher>(code __VA_OPT__(, ) \
                                                                                          __VA_ARGS__)

#define FAMILY(title)
#define THIN(result, name, dispatcher, code, params, doc)                       \
  extern "C" WFINFO_RESULT_##result name WFINFO_C_PARAMETERS(params) noexcept { \
    return WFINFO_SEND(result, dispatcher, code, WFINFO_ARGUMENTS params);      \
  }
#define THIN_INFERRED(result, name, dispatcher, code, params, doc) \
  THIN(result, name, dispatcher, code, params, doc)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc)                          \
  extern "C" WFINFO_RESULT_##result name WFINFO_C_PARAMETERS(params) noexcept {             \
    return WFINFO_SEND(result, dispatcher, code, sub WFINFO_MORE(WFINFO_ARGUMENTS params)); \
  }
#define WFINFO_MORE(...) __VA_OPT__(, ) __VA_ARGS__
#define COMMAND(name, dispatcher, command, doc) \
  extern "C" long long name() noexcept { return WFINFO_SEND(Int, dispatcher, 12, command); }
#define START(name, command, doc) \
  extern "C" long long name() noexcept { return wfinfo::StartHostCommand(command); }
#define MENU(name, command, doc) \
  extern "C" long long name() noexcept { return wfinfo::SendHostCommand(command); }
#define HAND(result, name, requests, params, doc)
#define HAND_INFERRED(result, name, requests, params, doc)
#define HAND_VARIADIC(result, name, requests, params, doc)
#include "catalogue/all.def"
#include "src/catalogue/undefine_rows.h"
