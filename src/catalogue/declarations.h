// Prototypes of all exports, expanded from the catalogue: a definition that differs from its row does
// not compile.
#pragma once

#include "src/catalogue/row_macros.h"

#define WFINFO_DECLARE(result, name, params) \
  extern "C" WFINFO_RESULT_##result name WFINFO_C_PARAMETERS(params) noexcept;

#define FAMILY(title)
#define THIN(result, name, dispatcher, code, params, doc) WFINFO_DECLARE(result, name, params)
#define THIN_INFERRED(result, name, dispatcher, code, params, doc) WFINFO_DECLARE(result, name, params)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc) WFINFO_DECLARE(result, name, params)
#define COMMAND(name, dispatcher, command, doc) WFINFO_DECLARE(Int, name, ())
#define START(name, command, doc) WFINFO_DECLARE(Int, name, ())
#define MENU(name, command, doc) WFINFO_DECLARE(Int, name, ())
#define HAND(result, name, requests, params, doc) WFINFO_DECLARE(result, name, params)
#define HAND_INFERRED(result, name, requests, params, doc) WFINFO_DECLARE(result, name, params)
#define HAND_VARIADIC(result, name, requests, params, doc) WFINFO_DECLARE(result, name, params)
#include "catalogue/all.def"
#include "src/catalogue/undefine_rows.h"
#undef WFINFO_DECLARE
