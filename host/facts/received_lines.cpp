#include "host/facts/received_lines.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "host/base/ascii.h"
#include "host/facts/countries.h"
#include "host/facts/network_address.h"
#include "host/mail/headers.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

// Words of a header value: a blank ends one, and each of ( ) ; is one for itself.
std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  std::size_t length = 0;  // of the word being read, at the front of `text`
  const auto end_word = [&](std::size_t passed) {
    if (length > 0) words.push_back(text.substr(0, length));
    text.remove_prefix(length + passed);
    length = 0;
  };
  while (length < text.size()) {
    const std::size_t unit = wfinfo::UnitLength(text.substr(length));
    const char c = text[length];
    if (unit == 1 && (IsBlank(c) || IsLineEnd(c))) {
      end_word(1);
    } else if (unit == 1 && (c == '(' || c == ')' || c == ';')) {
      end_word(0);
      words.push_back(text.substr(0, 1));
      text.remove_prefix(1);
    } else {
      length += unit;
    }
  }
  end_word(0);
  return words;
}

// "[192.0.2.1]", "[IPv6:2001:db8::1]", with anything behind the bracket, and the address alone.
std::string_view AddressIn(std::string_view word) {
  if (word.starts_with('[')) {
    const std::size_t end = word.find(']');
    if (end == word.npos) return "";
    word = word.substr(1, end - 1);
  }
  constexpr std::string_view kPrefix = "IPv6:";
  if (EqualsIgnoringCase(word.substr(0, kPrefix.size()), kPrefix)) word.remove_prefix(kPrefix.size());
  return ReadNetworkAddress(word) ? word : "";
}

// A host's name out of "user@host", "host:25", "unknown"; "" for what is no name.
std::string NameIn(std::string_view word) {
  word.remove_prefix(word.rfind('@') == word.npos ? 0 : word.rfind('@') + 1);
  while (word.ends_with('.')) word.remove_suffix(1);
  const bool letters = std::ranges::all_of(
      word, [](char c) { return IsLetter(c) || IsDigit(c) || c == '-' || c == '.' || c == '_'; });
  const bool is_name = letters && word.find('.') != word.npos && !ReadNetworkAddress(word);
  return is_name ? Lower(word) : "";
}

// The word that is the looked up name of the address at `at`; "" when there is none:
//   helo (name [1.2.3.4])   helo (name [1.2.3.4] (may be forged))   helo ([1.2.3.4])
//   name ([1.2.3.4] helo=x)   name (HELO x) (1.2.3.4)
std::string_view LookedUpName(const std::vector<std::string_view>& words, std::size_t at) {
  const auto is = [&](std::size_t i, std::string_view word) {
    return i < words.size() && EqualsIgnoringCase(words[i].substr(0, word.size()), word);
  };
  if (is(at + 1, "(") && is(at + 2, "may")) return "";
  if (words[at - 1] != "(") return words[at - 1];
  const bool names_helo = is(at + 1, "helo=") || (is(2, "(") && is(3, "HELO"));
  return names_helo ? words[1] : "";
}

// Labels that stand for a kind of owner under the domain of a country: "co.jp", "ac.uk", "com.au".
constexpr std::string_view kKinds[] = {"ac", "ad", "co",  "com", "ed",  "edu", "go", "gob", "gov",
                                       "gr", "lg", "mil", "ne",  "net", "nom", "or", "org", "sch"};

std::string_view TopLabel(std::string_view name) {
  return name.substr(name.rfind('.') == name.npos ? 0 : name.rfind('.') + 1);
}

// `text` without comments in parentheses; quoted strings stay.
std::string WithoutComments(std::string_view text) {
  std::string kept;
  int depth = 0;
  bool quoted = false;
  for (; !text.empty(); text.remove_prefix(wfinfo::UnitLength(text))) {
    const std::string_view unit = wfinfo::NextUnit(text);
    if (unit == "\"" && depth == 0) quoted = !quoted;
    if (unit == "(" && !quoted) ++depth;
    if (depth == 0) kept += unit;
    if (unit == ")" && !quoted && depth > 0) --depth;
  }
  return kept;
}

// "spf=pass smtp.mailfrom=..." to "spf=pass"; "" for what is no result.
std::string ResultIn(std::string_view clause) {
  clause = Trim(clause);
  const std::size_t equals = clause.find('=');
  if (equals == clause.npos || equals == 0) return "";
  std::string_view method = Trim(clause.substr(0, equals));
  method = method.substr(0, method.find('/'));  // "dkim/1"
  std::string_view result = Trim(clause.substr(equals + 1));
  result = result.substr(0, result.find_first_of(" \t\r\n"));
  if (method.find_first_of(" \t\r\n") != method.npos || result.empty()) return "";
  return Lower(method) + "=" + Lower(result);
}

}  // namespace

// The clause is "from" name comments, up to "by". The name in front is what the sender calls itself; the one
// looked up stands right before the address, or is the first where another one is named as HELO.
std::optional<SenderHost> HandedOverBy(std::string_view received) {
  const std::vector<std::string_view> words = Words(received);
  if (words.empty() || !EqualsIgnoringCase(words[0], "from")) return std::nullopt;
  int depth = 0;
  for (std::size_t i = 1; i < words.size() && words[i] != ";"; ++i) {
    if (words[i] == "(") ++depth;
    if (words[i] == ")") --depth;
    if (depth == 0 && i > 1 && EqualsIgnoringCase(words[i], "by")) break;
    const std::string_view address = AddressIn(words[i]);
    if (!address.empty()) return SenderHost{std::string(address), NameIn(LookedUpName(words, i))};
  }
  return std::nullopt;
}

std::optional<SenderHost> SenderHostOf(std::string_view mail) {
  std::optional<SenderHost> inside;
  for (std::size_t n = 0; const auto value = HeaderValue(mail, "Received", n); ++n) {
    auto host = HandedOverBy(*value);
    if (!host) continue;
    if (!IsInside(*ReadNetworkAddress(host->address))) return host;
    inside = std::move(host);
  }
  return inside;
}

std::string CountryOfHost(std::string_view name) {
  const std::string_view top = TopLabel(name);
  if (EqualsIgnoringCase(top, "uk")) return "GB";  // the one domain that is not the code
  const Country* country = FindCountry(top);
  return country == nullptr ? "" : std::string(country->code);
}

std::string NetworkOfHost(const SenderHost& host) {
  const auto address = ReadNetworkAddress(host.address);
  const std::string_view special = address ? SpecialPurpose(*address) : "";
  if (!special.empty()) return std::string(special);
  const std::string_view name = host.name;
  const std::size_t last = name.rfind('.');
  if (last == name.npos || last == 0) return "";
  std::size_t from = name.rfind('.', last - 1);
  const std::string_view second = name.substr(from == name.npos ? 0 : from + 1, last - from - 1);
  const bool is_kind = TopLabel(name).size() == 2 && std::ranges::find(kKinds, second) != std::end(kKinds);
  if (is_kind && from != name.npos && from > 0) from = name.rfind('.', from - 1);
  return std::string(name.substr(from == name.npos ? 0 : from + 1));
}

std::string DomainCheckOf(std::string_view mail) {
  std::string results;
  if (const auto value = HeaderValue(mail, "Authentication-Results")) {
    const std::string text = WithoutComments(*value);
    // The first clause names the server.
    for (std::size_t at = text.find(';'); at != text.npos; at = text.find(';', at + 1)) {
      const std::size_t end = text.find(';', at + 1);
      const std::string result = ResultIn(std::string_view(text).substr(at + 1, end - at - 1));
      if (!result.empty()) results += (results.empty() ? "" : " ") + result;
    }
    return results.empty() ? "none" : results;
  }
  const std::string spf = WithoutComments(HeaderValue(mail, "Received-SPF").value_or(""));
  const std::vector<std::string_view> words = Words(spf);
  return words.empty() ? "" : "spf=" + Lower(words[0]);
}

std::string TransmitDateOf(std::string_view mail) {
  if (const auto received = HeaderValue(mail, "Received")) {
    const std::size_t semicolon = received->rfind(';');
    if (semicolon != received->npos) return std::string(Trim(Unfolded(received->substr(semicolon + 1))));
  }
  return std::string(Trim(Unfolded(HeaderValue(mail, "Date").value_or(""))));
}

}  // namespace wrenfold
