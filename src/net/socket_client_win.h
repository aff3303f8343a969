// A TCP client for one exchange at a time: connect, send a text, receive until the peer closes, 20 seconds
// pass or the buffer is full. One connection for the whole process.
#pragma once

namespace wfinfo {

// What the last socket function failed at, null when it did not. A fixed English text.
extern const char* g_sockErrorText;

// 1 when connected, else 0 with g_sockErrorText set. An earlier connection is closed first. Of `port`
// 16 bits count.
int ConnectSocket(const char* host, unsigned port, bool non_blocking);

// Sends a text with one call. 1 unless that failed or there is no connection.
int SendText(const char* text);

// Receives the whole answer and closes the connection. The bytes received.
long long ReceiveAnswer();

// What the last ReceiveAnswer received, zero-terminated; "" before the first.
const char* ReceivedText();

// Closes the connection if there is one.
void DropSocket();

// The address of a host name in the short-result buffer, its four numbers in reverse order; null when the
// name does not resolve; "" after a report without WinSock.
const char* AddressOfName(const char* name);

// The host name of a dotted address in the short-result buffer; "" when there is none, after a report when
// the address is not understood or WinSock is missing.
const char* NameOfAddress(const char* address);

// The last error number of WinSock, 0 when it was never bound.
long long LastSocketError();

}  // namespace wfinfo
