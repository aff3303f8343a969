// How the exports that are written by hand are entered. The library exports `Entered_Name` under the name of
// each, which says that a call begins and hands over to the body, `Name`; bodies call each other without it.
#include "bridge/export_call_win.h"
#include "catalogue/declarations.h"
#include "catalogue/row_macros.h"

#define WFINFO_PASSED(type, name, ...) name
#define WFINFO_PASSED_LIST(...) WFINFO_EACH(WFINFO_PASSED, __VA_ARGS__)

#define FAMILY(title)
#define THIN(result, name, dispatcher, code, params, doc)
#define THIN_INFERRED(result, name, dispatcher, code, params, doc)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc)
#define COMMAND(name, dispatcher, command, doc)
#define START(name, command, doc)
#define MENU(name, command, doc)
#define HAND(result, name, requests, params, doc)                                         \
  extern "C" WFINFO_RESULT_##result Entered_##name WFINFO_C_PARAMETERS(params) noexcept { \
    const wfinfo::ExportCall call;                                                        \
    return name(WFINFO_PASSED_LIST params);                                               \
  }
#define HAND_INFERRED(result, name, requests, params, doc) HAND(result, name, requests, params, doc)
#define HAND_VARIADIC(result, name, requests, params, doc)
#include "all.def"
#include "catalogue/undefine_rows.h"
