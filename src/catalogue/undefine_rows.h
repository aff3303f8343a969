// Ends an expansion of the catalogue. Included after each `#include "catalogue/all.def"`, so without an
// include guard.
#undef FAMILY
#undef THIN
#undef THIN_INFERRED
#undef THIN_SUB
#undef COMMAND
#undef START
#undef MENU
#undef HAND
#undef HAND_INFERRED
#undef HAND_VARIADIC
