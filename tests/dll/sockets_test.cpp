// The TCP client of macros against a real server on this machine.
#include "tests/support/loopback_server_win.h"
// winsock2.h must come before windows.h.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

int Connect(const LoopbackServer& server, bool non_blocking = false) {
  return Sock_connect("127.0.0.1", server.port(), non_blocking ? 1 : 0);
}

TEST(Socket, ALineProtocolIsSpoken) {
  ScriptedHost host;
  for (const bool non_blocking : {false, true}) {
    LoopbackServer server([](Connection& connection) {
      const std::string line = connection.ReceiveUntil("\r\n");
      connection.Send("you said " + line);
    });
    ASSERT_EQ(Connect(server, non_blocking), 1) << Sock_GetErrorString();
    EXPECT_EQ(Sock_send("hel"), 1);
    EXPECT_EQ(Sock_send("lo\r\n"), 1);
    const std::string expected = "you said hello\r\n";
    EXPECT_EQ(Sock_recv(), static_cast<long long>(expected.size()));
    EXPECT_EQ(Sock_GetRecvData(), expected);
    EXPECT_EQ(Sock_send("more"), 0) << "the exchange closed the connection";
    EXPECT_EQ(Sock_recv(), 0);
    EXPECT_EQ(Sock_GetRecvData(), expected) << "the last answer stays";
  }
}

TEST(Socket, WithoutAConnectionNothingIsReceivedAndNoWindowIsMade) {
  ScriptedHost host;
  EXPECT_EQ(Sock_recv(), 0);
  EXPECT_EQ(FindWindowA("STATIC", "Wrenfold_WfInfoSockProxy"), nullptr);
  EXPECT_EQ(Sock_send("x"), 0);
  EXPECT_STREQ(Sock_GetRecvData(), "");
  EXPECT_EQ(Sock_closesocket(), 1);
  EXPECT_EQ(Sock_WSAGetLastError(), 0);
  EXPECT_STREQ(Sock_GetErrorString(), "");
}

TEST(Socket, AFloodEndsWithAFullBuffer) {
  ScriptedHost host;
  bool closed = false;
  LoopbackServer server([&closed](Connection& connection) {
    connection.Send(std::string(40000, 'f'));
    closed = connection.WaitForClose(15000);
  });
  ASSERT_EQ(Connect(server), 1);
  const long long received = Sock_recv();
  EXPECT_GE(received, 32736);
  EXPECT_LE(received, 32752);
  EXPECT_EQ(std::string(Sock_GetRecvData()), std::string(static_cast<std::size_t>(received), 'f'));
  EXPECT_EQ(Sock_send("x"), 0);
}

TEST(Socket, ASilentServerIsLeftAfterTwentySeconds) {
  ScriptedHost host;
  LoopbackServer server([](Connection& connection) { connection.WaitForClose(40000); });
  ASSERT_EQ(Connect(server), 1);
  const DWORD start = GetTickCount();
  EXPECT_EQ(Sock_recv(), 0);
  const DWORD elapsed = GetTickCount() - start;
  EXPECT_GE(elapsed, 20000u);
  EXPECT_LT(elapsed, 30000u);
  EXPECT_STREQ(Sock_GetRecvData(), "");
  EXPECT_EQ(Sock_send("x"), 0);
}

TEST(Socket, AnImmediateCloseOrResetEndsTheExchange) {
  ScriptedHost host;
  LoopbackServer closing([](Connection&) {});
  ASSERT_EQ(Connect(closing), 1);
  EXPECT_EQ(Sock_recv(), 0);
  LoopbackServer resetting([](Connection& connection) { connection.ResetOnClose(); });
  Connect(resetting);  // may already fail: the reset can be there first
  EXPECT_EQ(Sock_recv(), 0);
  EXPECT_STREQ(Sock_GetRecvData(), "");
}

TEST(Socket, OtherMessagesOfTheThreadStayQueued) {
  ScriptedHost host;
  LoopbackServer server([](Connection& connection) { connection.Send("data"); });
  ASSERT_EQ(Connect(server), 1);
  PostMessageA(host.frame(), WM_APP + 5, 0, 0);
  Sock_recv();
  MSG message;
  EXPECT_TRUE(PeekMessageA(&message, host.frame(), WM_APP + 5, WM_APP + 5, PM_REMOVE));
  EXPECT_EQ(FindWindowA("STATIC", "Wrenfold_WfInfoSockProxy"), nullptr);
}

TEST(Socket, ThatTheThreadIsToEndIsToldAgainAfterTheAnswer) {
  ScriptedHost host;
  LoopbackServer server([](Connection& connection) {
    Sleep(300);  // the wait begins before there is anything to read
    connection.Send("data");
  });
  ASSERT_EQ(Connect(server), 1);
  PostQuitMessage(77);
  EXPECT_EQ(Sock_recv(), 4);
  EXPECT_STREQ(Sock_GetRecvData(), "data");
  MSG message{};
  ASSERT_TRUE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.message, UINT{WM_QUIT});
  EXPECT_EQ(message.wParam, 77u);
}

TEST(Socket, OfThePortSixteenBitsCount) {
  ScriptedHost host;
  LoopbackServer server([](Connection&) {});
  EXPECT_EQ(Sock_connect("127.0.0.1", 65536 + server.port(), 0), 1);
  EXPECT_EQ(Sock_closesocket(), 1);
}

TEST(Socket, ASecondConnectClosesTheFirst) {
  ScriptedHost host;
  std::atomic<int> closed{0};
  LoopbackServer server([&closed](Connection& connection) {
    if (connection.WaitForClose(10000)) ++closed;
  });
  ASSERT_EQ(Connect(server), 1);
  ASSERT_EQ(Connect(server), 1);
  for (int i = 0; i < 200 && closed == 0; ++i) Sleep(10);
  EXPECT_EQ(closed, 1);
  Sock_closesocket();
}

TEST(Socket, FailuresLeaveATextToAskFor) {
  ScriptedHost host;
  unsigned port;
  {
    LoopbackServer gone([](Connection&) {});
    port = gone.port();
  }
  EXPECT_EQ(Sock_connect("127.0.0.1", port, 0), 0);
  EXPECT_STREQ(Sock_GetErrorString(), "connect function failed.");
  EXPECT_NE(Sock_WSAGetLastError(), 0);
  EXPECT_EQ(Sock_send("x"), 0);
  EXPECT_STREQ(Sock_GetErrorString(), "") << "the next function cleared it";
  EXPECT_EQ(Sock_connect("no-such-host.invalid", 80, 0), 0);
  EXPECT_STREQ(Sock_GetErrorString(), "gethostbyname failed, cannot solve host name to ip address.");
  EXPECT_EQ(Sock_connect(nullptr, 80, 0), 0);
  EXPECT_EQ(Sock_send(kNumberForText), 0);
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
}

TEST(Socket, NamesResolveWithTheirNumbersReversed) {
  ScriptedHost host;
  EXPECT_STREQ(Sock_gethostbyname("127.0.0.1"), "1.0.0.127");
  EXPECT_STREQ(Sock_gethostbyname("192.168.1.2"), "2.1.168.192");
  EXPECT_EQ(Sock_gethostbyname("no-such-host.invalid"), nullptr);
  EXPECT_STREQ(Sock_GetErrorString(), "gethostbyname failed, cannot solve host name to ip address.");
  EXPECT_STREQ(Sock_gethostbyname("127.0.0.1"), "1.0.0.127");
  EXPECT_STRNE(Sock_GetErrorString(), "") << "a success does not clear it";
  EXPECT_STREQ(Sock_gethostbyname(nullptr), "");
  host.ExpectMessages({kStringMessageEnglish});
}

TEST(Socket, AddressesThatAreNoneAreReported) {
  ScriptedHost host;
  EXPECT_STREQ(Sock_gethostbyaddr("255.255.255.255"), "");
  EXPECT_STREQ(Sock_gethostbyaddr("not an address"), "");
  const char message[] = "Sock_gethostbyaddr: Cannot understand IP address string passed by parameter.";
  host.ExpectMessages({message, message});
  EXPECT_STRNE(Sock_gethostbyaddr("127.0.0.1"), nullptr);
}

}  // namespace
}  // namespace wfinfo_test
