// Pages that many threads fetch at once through the library.
#pragma once

namespace soak {

struct HttpPlan {
  unsigned long long seed;
  unsigned long long opens;
  unsigned threads;
  unsigned port;         // of the server that soak.py keeps
  unsigned closed_port;  // where nobody listens
};
void RunHttp(const HttpPlan& plan);

}  // namespace soak
