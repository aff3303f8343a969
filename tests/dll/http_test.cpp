// HTTP requests of macros against a real server on this machine.
#include "tests/support/loopback_server_win.h"
// winsock2.h must come before windows.h.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

constexpr unsigned kStatusCode = 19;  // HTTP_QUERY_STATUS_CODE
constexpr unsigned kLocation = 33;    // HTTP_QUERY_LOCATION
constexpr unsigned kContentType = 1;  // HTTP_QUERY_CONTENT_TYPE
constexpr char kTooBig[] = "WFINFO.DLL Inet_DoRead: recv data size too big.";

std::string Answer(const std::string& body, const std::string& status = "200 OK",
                   const std::string& headers = "") {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) +
         "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

// Answers every request with the same bytes and keeps what was asked.
struct FixedServer {
  explicit FixedServer(std::string answer)
      : server([answer = std::move(answer), this](Connection& connection) {
          const std::string request = connection.ReceiveUntil("\r\n\r\n");
          {
            const std::lock_guard guard(lock);
            requests.push_back(request);
          }
          connection.Send(answer);
        }) {}
  std::mutex lock;
  std::vector<std::string> requests;
  LoopbackServer server;
};

TEST(Http, ABodyAndItsHeadersAreRead) {
  ScriptedHost host;
  FixedServer fixed(
      Answer("hello", "200 OK", "Content-Type: text/plain\r\nX-Empty: \r\nSet-Cookie: a=b\r\n"));
  EXPECT_GT(Inet_OpenUrl(fixed.server.Url("/page").c_str()), 0);
  EXPECT_STREQ(Inet_HttpQueryInfo(kStatusCode), "200");
  EXPECT_STREQ(Inet_HttpQueryInfo(kContentType), "text/plain");
  EXPECT_EQ(Inet_HttpQueryInfo(kLocation), nullptr) << "not there";
  EXPECT_STREQ(Inet_Read(), "hello");
  EXPECT_EQ(Inet_Close(), 0);
  ASSERT_EQ(fixed.requests.size(), 1u);
  EXPECT_TRUE(fixed.requests[0].starts_with("GET /page HTTP/1.1\r\n"));
  EXPECT_NE(fixed.requests[0].find("User-Agent: TamarinMail WFInfo Internet\r\n"), std::string::npos);
}

TEST(Http, ASecondReadGivesAnEmptyTextInTheSameBuffer) {
  ScriptedHost host;
  FixedServer fixed(Answer("hello"));
  Inet_OpenUrl(fixed.server.Url().c_str());
  const char* const first = Inet_Read();
  EXPECT_STREQ(first, "hello");
  EXPECT_EQ(Inet_Read(), first);
  EXPECT_STREQ(first, "");
  Inet_Close();
}

TEST(Http, ASecondOpenReplacesTheRequestAndSendsNoCookie) {
  ScriptedHost host;
  FixedServer fixed(Answer("x", "200 OK", "Set-Cookie: secret=1; path=/\r\n"));
  const long long first = Inet_OpenUrl(fixed.server.Url("/1").c_str());
  Inet_Read();
  const long long second = Inet_OpenUrl(fixed.server.Url("/2").c_str());
  EXPECT_GT(first, 0);
  EXPECT_GT(second, 0);
  EXPECT_STREQ(Inet_Read(), "x");
  Inet_Close();
  ASSERT_EQ(fixed.requests.size(), 2u);
  EXPECT_EQ(fixed.requests[1].find("Cookie"), std::string::npos);
}

TEST(Http, ARedirectIsNotFollowed) {
  ScriptedHost host;
  FixedServer fixed(Answer("moved", "302 Found", "Location: /elsewhere\r\n"));
  Inet_OpenUrl(fixed.server.Url().c_str());
  EXPECT_STREQ(Inet_HttpQueryInfo(kStatusCode), "302");
  EXPECT_STREQ(Inet_HttpQueryInfo(kLocation), "/elsewhere");
  EXPECT_STREQ(Inet_Read(), "moved");
  EXPECT_EQ(fixed.server.connections(), 1);
  Inet_Close();
}

TEST(Http, ErrorBodiesAndEmptyBodiesAreRead) {
  ScriptedHost host;
  FixedServer missing(Answer("no such page", "404 Not Found"));
  Inet_OpenUrl(missing.server.Url().c_str());
  EXPECT_STREQ(Inet_HttpQueryInfo(kStatusCode), "404");
  EXPECT_STREQ(Inet_Read(), "no such page");
  FixedServer empty(Answer(""));
  Inet_OpenUrl(empty.server.Url().c_str());
  EXPECT_STREQ(Inet_Read(), "");
  Inet_Close();
}

TEST(Http, ChunkedAndSlowAnswersAreReadWhole) {
  ScriptedHost host;
  LoopbackServer server([](Connection& connection) {
    connection.ReceiveUntil("\r\n\r\n");
    connection.Send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nConnection: close\r\n\r\n");
    for (const char* part : {"5\r\nfirst\r\n", "7\r\n second\r\n", "6\r\n third\r\n", "0\r\n\r\n"}) {
      Sleep(30);
      connection.Send(part);
    }
  });
  Inet_OpenUrl(server.Url().c_str());
  EXPECT_STREQ(Inet_Read(), "first second third");
  Inet_Close();
}

// A body whose every position can be told, without a zero byte.
std::string Body(std::size_t size) {
  std::string body(size, '\0');
  for (std::size_t i = 0; i < size; ++i) body[i] = static_cast<char>('!' + (i * 7 + i / 251) % 90);
  return body;
}

TEST(Http, BodiesOfManySizesArriveByteForByte) {
  ScriptedHost host;
  for (const std::size_t size :
       {1, 57342, 57343, 57344, 65534, 65535, 65536, 131071, 1048575, 1048576, 3000000}) {
    const std::string body = Body(size);
    FixedServer fixed(Answer(body));
    Inet_OpenUrl(fixed.server.Url().c_str());
    const char* const text = Inet_Read();
    ASSERT_NE(text, nullptr) << size;
    EXPECT_EQ(std::string_view(text).size(), size);
    EXPECT_TRUE(text == body) << size;
  }
  Inet_Close();
}

TEST(Http, ABodyOfFourMebibytesEndsWithTheTooBigMessage) {
  ScriptedHost host;
  for (const std::size_t size : {std::size_t{4} << 20, std::size_t{5} << 20}) {
    const std::string body = Body(size);
    FixedServer fixed(Answer(body));
    Inet_OpenUrl(fixed.server.Url().c_str());
    const std::string text = Inet_Read();
    EXPECT_GE(text.size(), (std::size_t{4} << 20) - 8193);
    EXPECT_LT(text.size(), std::size_t{4} << 20);
    EXPECT_EQ(body.compare(0, text.size(), text), 0);
    host.ExpectMessages({kTooBig});
    Inet_Close();
  }
}

TEST(Http, ARefusedConnectionFailsSilently) {
  ScriptedHost host;
  unsigned port;
  {
    LoopbackServer gone([](Connection&) {});
    port = gone.port();
  }
  EXPECT_EQ(Inet_OpenUrl(("http://127.0.0.1:" + std::to_string(port) + "/").c_str()), -1);
  EXPECT_EQ(Bypass_GetLastError(), 12029) << "ERROR_INTERNET_CANNOT_CONNECT";
  EXPECT_EQ(Inet_OpenUrl("no url at all"), -1);
  EXPECT_EQ(Inet_Read(), nullptr);
  host.ExpectMessages({"WFINFO.DLL Inet_DoRead: Inet_OpenUrl not yet"});
}

TEST(Http, FunctionsBeforeAnyOpenReportTheirOwnMessages) {
  ScriptedHost host;
  EXPECT_EQ(Inet_Read(), nullptr);
  EXPECT_EQ(Inet_HttpQueryInfo(kStatusCode), nullptr);
  EXPECT_EQ(Inet_GetResponseCode(), -1);
  EXPECT_EQ(Inet_Close(), 0);
  EXPECT_EQ(Inet_OpenUrl(nullptr), 0);
  EXPECT_EQ(Inet_OpenUrl(kNumberForText), 0);
  host.ExpectMessages({"WFINFO.DLL Inet_DoRead: Inet_OpenUrl not yet",
                       "WFINFO.DLL Inet_GetResponseInfo: Inet_OpenUrl not yet.",
                       "WFINFO.DLL Inet_GetResponseCode: Inet_OpenUrl not yet.", kStringMessageEnglish,
                       kStringMessageEnglish});
}

TEST(Http, AfterACloseTheThreadHasNoSession) {
  ScriptedHost host;
  FixedServer fixed(Answer("x"));
  Inet_OpenUrl(fixed.server.Url().c_str());
  Inet_Close();
  EXPECT_EQ(Inet_Close(), 0);
  EXPECT_EQ(Inet_Read(), nullptr);
  EXPECT_EQ(Inet_HttpQueryInfo(kStatusCode), nullptr);
  host.ExpectMessages({"WFINFO.DLL Inet_DoRead: Inet_OpenUrl not yet",
                       "WFINFO.DLL Inet_GetResponseInfo: Inet_OpenUrl not yet."});
}

// The standard library's own may miss a wake-up in this compiler's version.
class Semaphore {
 public:
  Semaphore() : handle_(CreateSemaphoreA(nullptr, 0, 64, nullptr)) {}
  ~Semaphore() { CloseHandle(handle_); }
  Semaphore(const Semaphore&) = delete;
  Semaphore& operator=(const Semaphore&) = delete;
  void Release(int count = 1) { ReleaseSemaphore(handle_, count, nullptr); }
  void Acquire() { WaitForSingleObject(handle_, INFINITE); }

 private:
  HANDLE handle_;
};

// Threads that hold a session until they are told to end.
class Holders {
 public:
  Holders(int count, std::string url) {
    for (int i = 0; i < count; ++i) {
      threads_.emplace_back([this, url] {
        if (Inet_OpenUrl(url.c_str()) > 0) ++opened_;
        ready_.Release();
        go_.Acquire();
        if (close_) Inet_Close();
        closed_.Release();
      });
      ready_.Acquire();
    }
  }
  ~Holders() {
    go_.Release(static_cast<int>(threads_.size()));
    for (std::thread& thread : threads_) thread.join();
  }
  int opened() const { return opened_; }
  void CloseOne() {
    close_ = true;
    go_.Release();
    closed_.Acquire();
    close_ = false;
  }

 private:
  std::vector<std::thread> threads_;
  std::atomic<int> opened_{0};
  std::atomic<bool> close_{false};
  Semaphore ready_, go_, closed_;
};

TEST(Http, A33rdThreadIsRefusedUntilAnotherCloses) {
  ScriptedHost host;
  FixedServer fixed(Answer("x"));
  {
    Holders holders(32, fixed.server.Url());
    EXPECT_EQ(holders.opened(), 32);
    EXPECT_EQ(Inet_OpenUrl(fixed.server.Url().c_str()), -1);
    host.ExpectMessages({"WFINFO.DLL Inet_OpenUrl: Too many internet sessions."});
    holders.CloseOne();
    EXPECT_GT(Inet_OpenUrl(fixed.server.Url().c_str()), 0);
    EXPECT_STREQ(Inet_Read(), "x");
    Inet_Close();
  }
  // The other 31 threads ended without closing: the table is empty again.
  Holders again(32, fixed.server.Url());
  EXPECT_EQ(again.opened(), 32);
}

TEST(Http, TheResponseCodeNeedsOnlyThatSomeThreadOpened) {
  ScriptedHost host;
  FixedServer fixed(Answer("x"));
  Holders holders(1, fixed.server.Url());
  // Wine's WinINet always fails this call (without a text buffer); real ones may answer. No message
  // either way.
  const long long code = Inet_GetResponseCode();
  EXPECT_TRUE(code == -1 || code >= 0);
  host.ExpectMessages({});
}

TEST(Http, ThreadsReadTheirOwnBodies) {
  ScriptedHost host;
  std::vector<std::unique_ptr<FixedServer>> servers;
  for (int i = 0; i < 4; ++i)
    servers.push_back(std::make_unique<FixedServer>(Answer(Body(1000 + 50000u * static_cast<unsigned>(i)))));
  std::vector<std::thread> threads;
  std::atomic<int> right{0};
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&, i] {
      for (int round = 0; round < 5; ++round) {
        Inet_OpenUrl(servers[static_cast<std::size_t>(i)]->server.Url().c_str());
        const char* const text = Inet_Read();
        if (text != nullptr && text == Body(1000 + 50000u * static_cast<unsigned>(i))) ++right;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 20);
}

}  // namespace
}  // namespace wfinfo_test
