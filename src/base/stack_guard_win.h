// The value that the stack protector puts behind local arrays.
#pragma once

namespace wfinfo {

// Draws the guard value; called once, at process attach, by a function without a guard of its own.
void ArmStackGuard();

}  // namespace wfinfo
