#include "src/commands/account_keys.h"

#include "src/commands/keyword_table.h"

namespace wfinfo {
namespace {

// Several flags share a byte; bits that no key names are never touched. `fNotSSL20` and `fTLS12` share bit
// 0x10: setting the second makes the first read as 1, clearing the first clears the second.
constexpr AccountKey kKeys[] = {
    {"szTitle", 0, 80},  // the place is the host's, the size is ours
    {"szPop3Password", 560, 80, 0, KeyMark::kSecret},
    {"szSmtpPassword", 1212, 80, 0, KeyMark::kSecret},  // the place is the host's, the size is ours
    {"fSmtpStartTLS", 2952, kByteKind, 0x80},
    {"fNTLMAuth", 2953, kByteKind, 0x01},
    {"fDontSpamFilter", 2953, kByteKind, 0x02},
    {"szBookRelation", 2954, 126},
    {"szRecvBypass", 1896, 80},
    {"fSentBypass", 1895, kByteKind},
    {"fIgnoreRecvError", 1893, kByteKind},
    {"fRemoteMailAtAutoDown", 1892, kByteKind},
    {"szMailFromSpecify", 1852, 40},
    {"szHeloHost", 1821, 31},
    {"fHeloHost", 1820, kByteKind},
    {"authtype", 1734, kByteKind},
    {"recvSrv", 724, kByteKind},
    {"nAccountIcon", 3320, kByteKind},
    {"szSecondPop3Server", 3499, 80},
    {"fNN2MThrough", 2953, kByteKind, 0x20},
    {"fBccNoAttach", 2953, kByteKind, 0x40},
    {"fCheckMailBoxLimit", 2953, kByteKind, 0x80},
    {"fPreFilter", 3410, kByteKind, 0x01},
    {"fCcAlways", 3410, kByteKind, 0x02},
    {"fImapCRAMMD5", 3410, kByteKind, 0x04},
    {"fImapAllFolder", 3410, kByteKind, 0x10},
    {"fImapUnseen", 3410, kByteKind, 0x20},
    {"fImapLeaveUnseen", 3410, kByteKind, 0x40},
    {"fShowRemoteFolder", 3413, kByteKind, 0x01},
    {"fImapInboxExclude", 3413, kByteKind, 0x02},
    {"fAesEncrypt", 3413, kByteKind, 0x04, KeyMark::kReadOnly},
    {"fImapIdle", 3413, kByteKind, 0x08},
    {"fDontGds", 2953, kByteKind, 0x08},
    {"fRetryLogin", 3410, kByteKind, 0x80},
    {"fCcNoForward", 3619, kByteKind, 0x10},
    {"fCheckMailSize", 3619, kByteKind, 0x20},
    {"fDownloadReverse", 3619, kByteKind, 0x40},
    {"szCcEmail", 3419, 80},
    {"nMailBoxLimitLowByte", 3409, kByteKind},
    {"nMailBoxLimitHighByte", 3412, kByteKind},
    {"nPreFilterSizeKB", 3411, kByteKind},
    {"fSSLVersionSpecify", 3622, kByteKind, 0x01},
    {"fNotSSL20", 3622, kByteKind, 0x30},
    {"fSSL30", 3622, kByteKind, 0x02},
    {"fTLS10", 3622, kByteKind, 0x04},
    {"fTLS11", 3622, kByteKind, 0x08},
    {"fTLS12", 3622, kByteKind, 0x10},
    {"fSecondName", 3621, kByteKind, 0x01},
    {"fImapUploadSent", 3621, kByteKind, 0x02},
    {"fThreadFilterRecv", 3621, kByteKind, 0x04},
    {"fThreadFilterSend", 3621, kByteKind, 0x08},
    {"fImapSyncSoon", 3621, kByteKind, 0x40},
    {"fImapIdleSkipAutoDown", 3621, kByteKind, 0x80},
    {"fOAuth", 3623, kByteKind, 0x01},
    {"fImapCheckDuplication", 3623, kByteKind, 0x02},
    {"fDontAutoCollapse", 3623, kByteKind, 0x04},
    {"fImapSyncUnread", 3623, kByteKind, 0x08},
    {"fImapRetrieveSlow", 3623, kByteKind, 0x10},
    {"fRetryLoginEver", 3623, kByteKind, 0x20},
    {"fImapNotSyncFolderNotShow", 3623, kByteKind, 0x40},
    {"fDeleteReverseSyncLong", 3623, kByteKind, 0x80},
    {"szImapSyncTrash", 3579, 40},
    {"nSendableMailInMinute", 3620, kByteKind, 0, KeyMark::kSigned},
    {"szSecondName1", 3624, 128},
    {"szImapUploadSentFolder", 4648, 128},
    {"szImapSyncDraft", 4856, 40},
    {"fSaveUidlInMail", 1386, kByteKind, 0x01},
    {"fDeleteRemoteSync", 1386, kByteKind, 0x02},
    {"fDeleteRemoteSyncTrash", 3619, kByteKind, 0x80},
    {"fImapSync", 1386, kByteKind, 0x04},
    {"fImapSyncMoveCopy", 1386, kByteKind, 0x08},
    {"fImapSyncTrash", 1386, kByteKind, 0x10},
    {"fDeleteReverseSync", 1386, kByteKind, 0x20},
    {"fImapSyncDontDeleteFolder", 1386, kByteKind, 0x40},
    {"fImapSyncDraft", 1386, kByteKind, 0x80},
    // --- Provisional block: the host knows these keys, but their places are not settled. They lie in space
    // that no other field uses, so that they can be moved without touching anything else.
    {"szBccEmail", 1976, 80},
    {"fDialup", 2056, kByteKind},
    {"nLogRetainMonth", 2057, kByteKind},
    {"nAutoDownInterval", 2058, kByteKind},
    {"cPopLoginDelay", 2059, kByteKind},
    {"nProjType", 2060, kByteKind},
};

constexpr SplitText kSplitTexts[] = {
    {"szPop3Password", 560, 80, 4520, 128, 0},
    {"szBccEmail", 1976, 80, 4776, 80, 0},
    // Byte 255 of a long alias is lost: the first place ends with a terminator.
    {"szEmailAlias", 1476, 256, 3752, 767, 1},
};

struct AccountText {
  std::string_view word;
};
constexpr AccountText kTexts[kAccountTexts] = {
    {"szNewTemplate"}, {"szReplyTemplate"}, {"szForwardTemplate"}, {"szSignature"}};

}  // namespace

std::span<const AccountKey> AccountKeys() { return kKeys; }

const AccountKey* FindAccountKey(std::string_view text) {
  return FindWord(AccountKeys(), text, LetterCase::kIgnored);
}

std::span<const SplitText> SplitTexts() { return kSplitTexts; }

const SplitText* FindSplitText(std::string_view text) {
  return FindWord(SplitTexts(), text, LetterCase::kIgnored);
}

int FindAccountText(std::string_view text) {
  const AccountText* const row = FindWord(std::span<const AccountText>(kTexts), text, LetterCase::kIgnored);
  return row == nullptr ? kNoAccountText : static_cast<int>(row - kTexts);
}

}  // namespace wfinfo
