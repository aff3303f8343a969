// request_cost host|frame COUNT: sends COUNT requests, for a trace of the Windows server to be counted.
#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "bench/windows/frame.h"

extern "C" {
#include "wfinfo.h"
}

int main(int argument_count, char** arguments) {
  if (argument_count != 3) return 2;
  wfinfo_bench::ShowFrame([](WPARAM) -> LRESULT { return 1; });
  const bool host = std::strcmp(arguments[1], "host") == 0;
  for (int i = std::atoi(arguments[2]); i > 0; --i) {
    if ((host ? IsTransmitting() : MailCount()) != 1) return 1;
  }
  return 0;
}
