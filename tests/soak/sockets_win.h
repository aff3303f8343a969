// Exchanges over TCP, one after the other through the library's one socket.
#pragma once

namespace soak {

struct SocketPlan {
  unsigned long long seed;
  unsigned long long rounds;
  unsigned port;         // of the server that soak.py keeps
  unsigned closed_port;  // where nobody listens
};
void RunSockets(const SocketPlan& plan);

}  // namespace soak
