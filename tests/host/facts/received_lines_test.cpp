// Where a mail came from.
#include "host/facts/received_lines.h"

#include <gtest/gtest.h>

#include <set>

#include "host/facts/countries.h"

namespace wrenfold {
namespace {

TEST(HandedOverBy, ReadsTheFormsOfMailServers) {
  struct Case {
    std::string_view received;
    std::string_view address;  // "" : none
    std::string_view name;
    const char* why;
  };
  const Case cases[] = {
      {"from helo.example (real.example.jp [192.0.2.7])\r\n\tby mx.example.org; x", "192.0.2.7",
       "real.example.jp", "the name that was looked up"},
      {"from helo.example (unknown [192.0.2.7]) by mx.example.org", "192.0.2.7", "", "nothing was found"},
      {"from helo.example ([192.0.2.7]) by mx.example.org", "192.0.2.7", "",
       "only what the sender calls itself"},
      {"from helo.example (IDENT:jo@real.example [192.0.2.7]) by x", "192.0.2.7", "real.example",
       "with a user"},
      {"from helo.example (real.example [192.0.2.7] (may be forged)) by x", "192.0.2.7", "",
       "the server doubts it"},
      {"from real.example ([192.0.2.7] helo=helo.example) by x", "192.0.2.7", "real.example", "HELO behind"},
      {"from [192.0.2.7] (helo=helo.example) by x", "192.0.2.7", "", "no name at all"},
      {"from real.example (HELO helo.example) (192.0.2.7) by x", "192.0.2.7", "real.example",
       "HELO in front"},
      {"from unknown (HELO helo.example) (192.0.2.7) by x", "192.0.2.7", "", "HELO in front, nothing found"},
      {"from helo.example (192.0.2.7) by x", "192.0.2.7", "", "an address in parentheses"},
      {"from helo.example (Real.Example. [IPv6:2001:db8::7]) by x", "2001:db8::7", "real.example",
       "IPv6, name in capitals with a period"},
      {"FROM a (b.example [192.0.2.7]) BY x", "192.0.2.7", "b.example", "in capitals"},
      {"from a by b.example (b.example [192.0.2.7]); x", "", "",
       "the address of the receiver is not the sender's"},
      {"from a.example ; (b.example [192.0.2.7])", "", "", "behind the date"},
      {"by b.example; date", "", "", "no from"},
      {"from a.example", "", "", "no address"},
      {"from a (b.example [999.0.2.7]) by x", "", "", "no address of the net"},
      {"from a (b.example [192.0.2.7) by x", "", "", "the bracket does not close"},
      {"from", "", "", "nothing behind"},
      {"", "", "", "nothing"},
  };
  for (const Case& c : cases) {
    const auto host = HandedOverBy(c.received);
    ASSERT_EQ(host.has_value(), !c.address.empty()) << c.why;
    if (!host) continue;
    EXPECT_EQ(host->address, c.address) << c.why;
    EXPECT_EQ(host->name, c.name) << c.why;
  }
}

TEST(SenderHostOf, BelievesNothingBelowTheFirstStranger) {
  const auto sender = SenderHostOf(
      "Received: by inner.example; date\r\n"
      "Received: from scan (localhost [127.0.0.1]) by mx.example; date\r\n"
      "Received: from x (mx.example [10.1.2.3]) by inner.example; date\r\n"
      "Received: from helo (mail.sender.jp [198.51.100.4]) by mx.example; date\r\n"
      "Received: from forged (mail.bank.uk [203.0.113.9]) by mail.sender.jp; date\r\n\r\n");
  ASSERT_TRUE(sender);
  EXPECT_EQ(sender->address, "198.51.100.4");
  EXPECT_EQ(sender->name, "mail.sender.jp");
}

TEST(SenderHostOf, TakesTheLowestOfOnesOwnWithoutAnother) {
  const auto sender = SenderHostOf(
      "Received: from x (mx.example [10.1.2.3]) by a; d\r\nReceived: from y (pc.example [10.9.9.9]) by b; "
      "d\r\n\r\n");
  ASSERT_TRUE(sender);
  EXPECT_EQ(sender->name, "pc.example");
  EXPECT_FALSE(SenderHostOf("From: a\r\n\r\nReceived: from a (b.example [192.0.2.7]) by x\r\n"))
      << "in the body";
}

TEST(CountryOfHost, IsThatOfTheTopLevelDomain) {
  struct Case {
    std::string_view name;
    std::string_view expected;
  };
  const Case cases[] = {
      {"mail.example.co.jp", "JP"}, {"mail.example.co.uk", "GB"}, {"a.DE", "DE"}, {"mail.example.com", ""},
      {"mail.example.eu", ""},      {"mail.example.su", ""},      {"", ""},       {"jp.example.com", ""}};
  for (const Case& c : cases) EXPECT_EQ(CountryOfHost(c.name), c.expected) << c.name;
}

TEST(NetworkOfHost, IsTheBlockElseTheDomain) {
  struct Case {
    SenderHost host;
    std::string_view expected;
  };
  const Case cases[] = {
      {{"10.0.0.1", "mail.example.com"}, "Private-Use"},
      {{"8.8.4.4", "mail.example.com"}, "example.com"},
      {{"8.8.4.4", "a.b.example.co.jp"}, "example.co.jp"},
      {{"8.8.4.4", "a.b.example.ac.uk"}, "example.ac.uk"},
      {{"8.8.4.4", "mail.co.com"}, "co.com"},
      {{"8.8.4.4", "co.jp"}, "co.jp"},
      {{"8.8.4.4", ""}, ""},
      {{"8.8.4.4", "localhost"}, ""},
      {{"8.8.4.4", ".jp"}, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(NetworkOfHost(c.host), c.expected) << c.host.name;
}

TEST(DomainCheckOf, ReadsTheFirstResults) {
  struct Case {
    std::string_view mail;
    std::string_view expected;
    const char* why;
  };
  const Case cases[] = {
      {"Authentication-Results: mx.example; spf=pass smtp.mailfrom=a.example;\r\n"
       " dkim=Fail (bad; signature) header.d=a.example; dmarc/1=none\r\n"
       "Authentication-Results: forged; spf=fail\r\n\r\n",
       "spf=pass dkim=fail dmarc=none", "methods and results, without comments"},
      {"Authentication-Results: mx.example 1; none\r\n\r\n", "none", "nothing was checked"},
      {"Authentication-Results: mx.example; dkim = pass\r\n\r\n", "dkim=pass", "blanks"},
      {"Authentication-Results: mx.example; a b=c; =d; e=\r\n\r\n", "none", "clauses that are none"},
      {"Received-SPF: SoftFail (mx.example: x) client-ip=192.0.2.1\r\n\r\n", "spf=softfail",
       "the older header"},
      {"Received-SPF: \r\n\r\n", "", "an empty one"},
      {"From: a\r\n\r\nAuthentication-Results: x; spf=pass\r\n", "", "in the body"},
  };
  for (const Case& c : cases) EXPECT_EQ(DomainCheckOf(c.mail), c.expected) << c.why;
}

TEST(TransmitDateOf, IsThatOfTheLastServerElseTheSenders) {
  EXPECT_EQ(
      TransmitDateOf("Received: from a; b\r\n\tby c;\r\n\tMon, 3 Mar 2025 09:15:02 +0900\r\nDate: x\r\n\r\n"),
      "Mon, 3 Mar 2025 09:15:02 +0900");
  EXPECT_EQ(TransmitDateOf("Received: from a by b\r\nDate: Mon,\r\n\t3 Mar 2025\r\n\r\n"), "Mon, 3 Mar 2025");
  EXPECT_EQ(TransmitDateOf("From: a\r\n\r\nDate: x\r\n"), "");
}

TEST(Countries, HaveEachCodeOnce) {
  std::set<std::string_view> names;
  std::size_t codes = 0;
  for (char first = 'A'; first <= 'Z'; ++first) {
    for (char second = 'A'; second <= 'Z'; ++second) {
      const Country* const country = FindCountry(std::string{first, second});
      if (country == nullptr) continue;
      ++codes;
      names.insert(country->name);
    }
  }
  EXPECT_EQ(codes, 249u);
  EXPECT_EQ(names.size(), 249u) << "a name stands twice";
  EXPECT_EQ(FindCountry("jp")->name, "Japan");
  EXPECT_EQ(FindCountry("AX")->name, "\u00C5land Islands");
  EXPECT_EQ(FindCountry("xx"), nullptr);
  EXPECT_EQ(FindCountry(""), nullptr);
}

}  // namespace
}  // namespace wrenfold
