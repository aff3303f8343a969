// The library's network exports over hours in minutes, against the peers of soak.py.
//
//   soak_net http SEED OPENS THREADS PORT CLOSED_PORT
//   soak_net sockets SEED ROUNDS PORT CLOSED_PORT
#include <cstdio>
#include <cstring>

#include "src/bridge/host_protocol.h"
#include "tests/soak/findings.h"
#include "tests/soak/http_win.h"
#include "tests/soak/sockets_win.h"
#include "tests/support/library.h"

namespace {

// Messages are counted, without what differs from one to the next.
void TakeMessage(const char* text) {
  const std::string message = text;
  soak::Count("message: " + message.substr(0, message.find("code=")));
}

void HandOver() {
  static const wfinfo::HandOverRecord record{sizeof record, 1, &TakeMessage};
  NotifyWrenfoldInfo(&record);
}

unsigned Port(const char* word) { return static_cast<unsigned>(soak::Number(word)); }

}  // namespace

int main(int count, char** words) {
  HandOver();
  if (count == 7 && std::strcmp(words[1], "http") == 0) {
    soak::RunHttp(
        {soak::Number(words[2]), soak::Number(words[3]), Port(words[4]), Port(words[5]), Port(words[6])});
    return soak::Conclude();
  }
  if (count == 6 && std::strcmp(words[1], "sockets") == 0) {
    soak::RunSockets({soak::Number(words[2]), soak::Number(words[3]), Port(words[4]), Port(words[5])});
    return soak::Conclude();
  }
  std::fputs(
      "usage: soak_net http SEED OPENS THREADS PORT CLOSED_PORT\n"
      "       soak_net sockets SEED ROUNDS PORT CLOSED_PORT\n",
      stderr);
  return 2;
}
