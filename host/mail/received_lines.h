// Where a mail came from, as far as its own header tells. Each server on the way puts a line in front of
// those that are there already, so the upper ones are written by servers nearer to the reader, and whatever
// stands below the first stranger can be forged:
//
//   Received: from mx.reader.example (mx.reader.example [10.0.0.5]) by mail.reader.example; ...  one's own
//   Received: from helo.name (real.name.example.jp [192.0.2.7]) by mx.reader.example; ...        the sender
//   Received: from anything at all ...                                                          not looked at
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

struct SenderHost {
  std::string address;  // as written, without brackets: "192.0.2.7", "2001:db8::1"
  std::string name;     // that the server looked up for it, not what the sender called itself; "" when none
};

// Who handed the mail over, by the value of one Received header; nullopt when it names no address.
std::optional<SenderHost> HandedOverBy(std::string_view received);

// The first host from above that is not inside the reader's own network (IsInside), of the mail's Received
// headers; else the lowest one that is. Nothing without any address.
std::optional<SenderHost> SenderHostOf(std::string_view mail);

// Country code (ISO 3166, capitals) that the name of a host ends in: "mail.example.co.uk" gives "GB". "" when
// its top-level domain is none of a country.
std::string CountryOfHost(std::string_view name);

// Name of the network of a host: that of its special-purpose block, else the domain that the host's name
// belongs to (its last two labels, three behind the likes of "co.jp"); "" when neither is known.
std::string NetworkOfHost(const SenderHost& host);

// What the reader's server found out about the sender's domain: the methods and results of the first
// Authentication-Results header (RFC 8601), "spf=pass dkim=fail dmarc=none"; without one, that of
// Received-SPF. "" when neither is there.
std::string DomainCheckOf(std::string_view mail);

// Date of the first Received header, which the reader's own server wrote; else that of Date. Unfolded; ""
// when there is none.
std::string TransmitDateOf(std::string_view mail);

}  // namespace wrenfold
