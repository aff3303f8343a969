// Internet addresses and the blocks of them that have a special purpose.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace wrenfold {

// An IPv6 address; one of IPv4 in its mapped form, ::ffff:a.b.c.d.
using NetworkAddress = std::array<std::uint8_t, 16>;

// "192.0.2.1", "2001:db8::1", "::ffff:192.0.2.1"; nullopt for anything else.
std::optional<NetworkAddress> ReadNetworkAddress(std::string_view text);

// The name that IANA's registries of special-purpose addresses give the block of an address, as RFC 6890 and
// its successors have it: "Loopback", "Private-Use", "Documentation (TEST-NET-1)"; "" for an address of the
// open net.
std::string_view SpecialPurpose(const NetworkAddress& address);

// True for addresses of one's own machine or network: loopback, private use, link local, unique local.
bool IsInside(const NetworkAddress& address);

}  // namespace wrenfold
