#include "src/smime/chain_texts_win.h"

#include "src/bridge/language_win.h"

namespace wfinfo::smime {
namespace {

struct Row {
  DWORD code;
  Message text;  // some have no Japanese text of their own
};

// Macros see these texts in a report, spellings ("Ther") included.
const Row kRows[] = {
    {1,
     {"Expired certificate exist in the certificate chain.",
      "証明書の経路に有効期限切れの証明書があります。"}},
    {2, {"Certificates in the chain are not properly time nested.", nullptr}},
    {4,
     {"This certificate or issuer's certificate is revoked.",
      "この証明書、または発行元の証明書が失効しています。"}},
    {8,
     {"The certificate or one of the certificates in the certificate chain does not have a valid signature.",
      nullptr}},
    {16, {"The certificate or certificate chain is not valid for its proposed usage.", nullptr}},
    {32, {"The certificate or certificate chain is based on an untrusted root.", nullptr}},
    {64, {"Ther certificate revocation status is unknown.", "証明書の失効状態が不明です。"}},
    {0x10000, {"The certificate chain is not complete.", "証明書の経路が不完全です。"}},
    {0x20000, {"A CTL used to create this chain was not time valid.", nullptr}},
    {0x40000, {"A CTL used to create this chain did not have a valid signature.", nullptr}},
    {0x80092010, {"The certificate is revoked.", "証明書は失効しています。"}},
    {0x80092011, {"No installed or registered DLL was found that was able to verify revocation.", nullptr}},
    {0x80092012,
     {"An installed or registered revocation function wasn't able to do a revocation check on the context.",
      nullptr}},
    {0x80092013, {"Could not connect to the issuer server.", "発行元のサーバーに接続できませんでした。"}},
    {0x80092014, {"The context to be checked was not found in the revocation server's database.", nullptr}},
};

}  // namespace

const char* ChainErrorText(DWORD code) {
  for (const Row& row : kRows) {
    if (row.code != code) continue;
    return g_useEnglish != 0 || row.text.japanese == nullptr ? row.text.english : row.text.japanese;
  }
  return nullptr;
}

}  // namespace wfinfo::smime
