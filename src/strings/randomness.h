// Whether a text or a domain name looks made by chance: too few vowels, too many letter pairs that English
// lacks. A sign of spam, no proof.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

// 386 pairs of lower-case letters in order of frequency, read two letters at a time.
extern const char kLetterPairs[];
inline constexpr std::size_t kLetterPairCount = 386;

// 1 when `text` looks random, else 0. Only ASCII letters count. Upper-case ones are never vowels and never
// part of a known pair: a word in capitals looks random sooner.
int RandomnessScore(std::string_view text);

// 1 when more of the letter and digit runs of the domain's chosen label look random than not. The label is
// the first of at least 5 bytes, from the right, left of the last one; a byte that no domain has ends
// the search.
int DomainRandomness(std::string_view domain);

}  // namespace wfinfo
