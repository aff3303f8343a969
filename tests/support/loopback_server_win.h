// A server on 127.0.0.1 for tests: each connection is answered by a function on a thread of its own.
#pragma once

#include <winsock2.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace wfinfo_test {

// One connection as its handler sees it.
class Connection {
 public:
  explicit Connection(SOCKET socket) : socket_(socket) {}

  // Sends everything; false when the peer is gone.
  bool Send(const std::string& bytes);
  // What arrives until `end` was received (the end included), or the peer closes.
  std::string ReceiveUntil(const std::string& end);
  // Waits until the peer closes or resets; false after `timeout_ms`.
  bool WaitForClose(int timeout_ms);
  // Makes the close a reset.
  void ResetOnClose();

 private:
  SOCKET socket_;
};

class LoopbackServer {
 public:
  using Handler = std::function<void(Connection&)>;

  explicit LoopbackServer(Handler handler);
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  unsigned port() const { return port_; }
  int connections() const { return connections_; }
  std::string Url(const std::string& path = "/") const;

 private:
  void Accept();

  Handler handler_;
  SOCKET listener_ = INVALID_SOCKET;
  unsigned port_ = 0;
  std::atomic<int> connections_{0};
  std::mutex lock_;
  std::vector<std::thread> threads_;
  std::thread acceptor_;
};

}  // namespace wfinfo_test
