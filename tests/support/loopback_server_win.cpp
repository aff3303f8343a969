#include "tests/support/loopback_server_win.h"

#include <gtest/gtest.h>

namespace wfinfo_test {

bool Connection::Send(const std::string& bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const int sent = send(socket_, bytes.data() + at, static_cast<int>(bytes.size() - at), 0);
    if (sent <= 0) return false;
    at += static_cast<std::size_t>(sent);
  }
  return true;
}

std::string Connection::ReceiveUntil(const std::string& end) {
  std::string received;
  char byte;
  while (!received.ends_with(end) && recv(socket_, &byte, 1, 0) == 1) received += byte;
  return received;
}

bool Connection::WaitForClose(int timeout_ms) {
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(socket_, &readable);
  timeval limit{timeout_ms / 1000, timeout_ms % 1000 * 1000};
  char byte;
  return select(0, &readable, nullptr, nullptr, &limit) == 1 && recv(socket_, &byte, 1, 0) <= 0;
}

void Connection::ResetOnClose() {
  const linger hard{1, 0};
  setsockopt(socket_, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&hard), sizeof hard);
}

LoopbackServer::LoopbackServer(Handler handler) : handler_(std::move(handler)) {
  WSADATA data;
  EXPECT_EQ(WSAStartup(0x0202, &data), 0);
  listener_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(listen(listener_, SOMAXCONN), 0);
  int size = sizeof address;
  getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { Accept(); });
}

LoopbackServer::~LoopbackServer() {
  closesocket(listener_);
  acceptor_.join();
  for (std::thread& thread : threads_) thread.join();
  WSACleanup();
}

std::string LoopbackServer::Url(const std::string& path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + path;
}

void LoopbackServer::Accept() {
  // A closed listener does not wake accept everywhere: look again every 50 ms.
  u_long non_blocking = 1;
  ioctlsocket(listener_, static_cast<long>(FIONBIO), &non_blocking);
  for (;;) {
    const SOCKET peer = accept(listener_, nullptr, nullptr);
    if (peer == INVALID_SOCKET) {
      if (WSAGetLastError() != WSAEWOULDBLOCK) return;
      Sleep(5);
      continue;
    }
    ++connections_;
    u_long blocking = 0;
    ioctlsocket(peer, static_cast<long>(FIONBIO), &blocking);
    const std::lock_guard lock(lock_);
    threads_.emplace_back([this, peer] {
      Connection connection(peer);
      handler_(connection);
      closesocket(peer);
    });
  }
}

}  // namespace wfinfo_test
