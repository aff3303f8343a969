// The sides of the program that other programs see: serving their mails, and being registered for that.
#pragma once

#include "host/session/options.h"

namespace wrenfold {

// Both return the exit code.
int ServeMails(const Options& options);
int RegisterAsMailClient(const Options& options);

}  // namespace wrenfold
