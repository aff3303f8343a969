#include "src/smime/algorithms.h"

#include <cstddef>
#include <iterator>

namespace wfinfo::smime {
namespace {

constexpr char kRc2[] = "1.2.840.113549.3.2";
constexpr ContentCipher kWeakest = {kRc2, 40};
constexpr ContentCipher kCiphers[] = {
    {kRc2, 0},
    {"1.2.840.113549.3.7", 0},  // triple DES
    {"1.3.14.3.2.7", 0},        // DES
    {kRc2, 128},
    {kRc2, 64},
    kWeakest,
    {"2.16.840.1.101.3.4.1.2", 0},   // AES-128-CBC
    {"2.16.840.1.101.3.4.1.42", 0},  // AES-256-CBC
};

constexpr char kSha256[] = "2.16.840.1.101.3.4.2.1";
constexpr const char* kHashes[] = {
    kSha256,
    "1.3.14.3.2.26",  // SHA-1
    "1.3.14.3.2.3",   // the number that stands for MD5 here
    kSha256,
    "2.16.840.1.101.3.4.2.3",  // SHA-512
};

template <class Entry, std::size_t kCount>
Entry Selected(const Entry (&table)[kCount], int selector, Entry otherwise) {
  return selector >= 0 && static_cast<std::size_t>(selector) < kCount ? table[selector] : otherwise;
}

}  // namespace

ContentCipher CipherOf(int selector) { return Selected(kCiphers, selector, kWeakest); }

const char* HashOidOf(int selector) { return Selected(kHashes, selector, kSha256); }

}  // namespace wfinfo::smime
