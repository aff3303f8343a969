// Expands the hand-written rows that have an entry, by the macro HAND that is defined ahead of it; all others become
// nothing. Included for each expansion, so without an include guard.
#define FAMILY(title)
#define THIN(result, name, dispatcher, code, params, doc)
#define THIN_INFERRED(result, name, dispatcher, code, params, doc)
#define THIN_SUB(result, name, dispatcher, code, sub, params, doc)
#define COMMAND(name, dispatcher, command, doc)
#define START(name, command, doc)
#define MENU(name, command, doc)
#define HAND_INFERRED(result, name, requests, params, doc) HAND(result, name, requests, params, doc)
#define HAND_VARIADIC(result, name, requests, params, doc)
#include "catalogue/all.def"
#include "src/catalogue/undefine_rows.h"
