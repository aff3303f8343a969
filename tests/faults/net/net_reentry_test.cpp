// Calls of the HTTP functions from within their own reports and from within WinINet.
#include <string>
#include <utility>

#include "src/bridge/host_protocol.h"
#include "tests/doubles/net/net_doubles.h"

namespace wfinfo_test {
namespace {

void (*g_onReport)() = nullptr;  // run once, from within the next report
int g_reports = 0;
void CALLBACK Reported(const char*) {
  ++g_reports;
  if (g_onReport != nullptr) std::exchange(g_onReport, nullptr)();
}

// A host whose error callback, or a timer behind its message box, calls the library again.
class HttpReentry : public HttpDouble {
 protected:
  HttpReentry() {
    g_reports = 0;
    const wfinfo::HandOverRecord info = {sizeof info, 1, &Reported};
    NotifyWrenfoldInfo(&info);
  }
  ~HttpReentry() override {
    EXPECT_EQ(g_onReport, nullptr) << "it was called";
    Inet_Close();
    EXPECT_EQ(state_.open_handles, 0);
    EXPECT_EQ(state_.bad_handles, 0) << "nothing was used after it was closed, or closed twice";
    EXPECT_TRUE(HeapValidate(GetProcessHeap(), 0, nullptr));
  }
  // Opens a body that is longer than a buffer may be; the thread has a buffer from an earlier read.
  void OpenTooMuch() {
    state_.fill_whole = 1;
    state_.body_size = 100;
    Inet_OpenUrl("http://example.org/small");
    EXPECT_EQ(std::string(Inet_Read()).size(), 100u);
    state_.body_size = 6 << 20;
    Inet_OpenUrl("http://example.org/large");
  }
};

TEST_F(HttpReentry, ACloseFromTheReportOfTooMuchLeavesNoText) {
  OpenTooMuch();
  g_onReport = [] { Inet_Close(); };
  EXPECT_EQ(Inet_Read(), nullptr);
  EXPECT_EQ(state_.open_handles, 0);
}

TEST_F(HttpReentry, ACloseFromTheReportOfAFailureFreesTheBufferOnce) {
  OpenTooMuch();
  state_.fail_read_after = 3;
  g_onReport = [] { Inet_Close(); };
  EXPECT_EQ(Inet_Read(), nullptr);
  EXPECT_EQ(state_.open_handles, 0);
}

std::string g_inner;  // what the read inside has given

TEST_F(HttpReentry, AReadFromTheReportOfTooMuchHasABufferOfItsOwn) {
  OpenTooMuch();
  g_onReport = [] {
    g_onReport = [] {};  // the rest is short enough: not reported
    g_inner = Inet_Read();
    g_onReport = nullptr;
  };
  const std::string outer = Inet_Read();
  EXPECT_GE(outer.size(), (4u << 20) - 8192);
  EXPECT_TRUE(outer == std::string(outer.size(), 'b'));
  EXPECT_TRUE(g_inner == std::string((6u << 20) - outer.size(), 'b')) << "the rest of the same body";
  state_.body_size = 10;
  Inet_OpenUrl("http://example.org/");
  EXPECT_STREQ(Inet_Read(), "bbbbbbbbbb");
}

TEST_F(HttpReentry, AnOpenFromTheReportOfTooMuchKeepsBothTheTextAndTheNewRequest) {
  OpenTooMuch();
  g_onReport = [] { EXPECT_GT(Inet_OpenUrl("http://example.org/next"), 0); };
  const std::string outer = Inet_Read();
  EXPECT_GE(outer.size(), (4u << 20) - 8192);
  EXPECT_STREQ(state_.url, "http://example.org/next");
  EXPECT_EQ(state_.open_handles, 2) << "the internet handle and the new request";
  EXPECT_EQ(Inet_HttpQueryInfo(2), nullptr);
  EXPECT_EQ(state_.bad_handles, 0) << "the new request is the thread's";
}

TEST_F(HttpReentry, ARequestThatIsClosedOrReplacedBetweenTwoReadsIsNotReadOn) {
  OpenTooMuch();
  // The stand-in gives these first bytes before it looks at its handle again.
  state_.on_read_done = [] { Inet_Close(); };
  EXPECT_EQ(Inet_Read(), nullptr);
  OpenTooMuch();
  state_.on_read_done = [] { Inet_OpenUrl("http://example.org/next"); };
  EXPECT_EQ(Inet_Read(), nullptr);
  EXPECT_EQ(state_.open_handles, 2);
  EXPECT_EQ(g_reports, 0) << "nothing failed";
  state_.body_size = 10;
  Inet_OpenUrl("http://example.org/");
  EXPECT_STREQ(Inet_Read(), "bbbbbbbbbb");
}

TEST_F(HttpReentry, ACloseInsideAnOpenLeavesNothing) {
  state_.body_size = 10;
  Inet_OpenUrl("http://example.org/1");
  Inet_Read();
  // The request is made, and then its internet handle closed before the call comes back.
  state_.on_open_url_done = [] { Inet_Close(); };
  EXPECT_EQ(Inet_OpenUrl("http://example.org/2"), -1);
  EXPECT_EQ(Inet_Read(), nullptr);
  EXPECT_EQ(state_.open_handles, 0);
}

TEST_F(HttpReentry, OfTwoOpensTheOuterOneStays) {
  state_.on_open_url_done = [] { EXPECT_GT(Inet_OpenUrl("http://example.org/inner"), 0); };
  EXPECT_GT(Inet_OpenUrl("http://example.org/outer"), 0);
  EXPECT_EQ(state_.open_handles, 2);
  state_.on_open_url_done = [] { EXPECT_GT(Inet_OpenUrl("http://example.org/inner"), 0); };
  EXPECT_GT(Inet_OpenUrl("http://example.org/outer"), 0);
  EXPECT_EQ(state_.open_handles, 2);
}

}  // namespace
}  // namespace wfinfo_test
