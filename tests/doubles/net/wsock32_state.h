/* What the stand-in for WinSock does, and what it saw. */
#pragma once

struct WinSockState {
  int startup_result; /* of WSAStartup(2.0) */
  int fail_socket;
  int startups;
  int last_startup_version;
  unsigned short connected_port;
  int receive_timeout; /* as set */
  int non_blocking;
  int open_sockets;
};
