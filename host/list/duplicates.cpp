#include "host/list/duplicates.h"

#include <algorithm>
#include <map>

#include "host/mail/mail_state.h"

namespace wrenfold {
namespace {

using Number = std::int64_t;

Number Has(const ComparedMail& mail, std::uint32_t bit) { return (mail.state & bit) != 0 ? 1 : 0; }

struct Priority {
  Number option;
  Number (*rank)(const ComparedMail& mail);  // the highest stays
};

// The first folder that was read is the main one; a mail read later is newer.
constexpr Priority kPriorities[] = {
    {kPriorityMarks, [](const ComparedMail& m) { return Has(m, kStateMarked); }},
    {kPriorityUnread, [](const ComparedMail& m) { return Has(m, kStateUnread); }},
    {kPriorityNotUnread, [](const ComparedMail& m) { return -Has(m, kStateUnread); }},
    {kPriorityAttachment, [](const ComparedMail& m) { return Has(m, kStateAttachment); }},
    {kPriorityBig, [](const ComparedMail& m) { return static_cast<Number>(m.size); }},
    {kPrioritySmall, [](const ComparedMail& m) { return -static_cast<Number>(m.size); }},
    {kPriorityMainFolder, [](const ComparedMail& m) { return Number{m.folder == 0 ? 1 : 0}; }},
    {kPriorityNotMainFolder, [](const ComparedMail& m) { return Number{m.folder == 0 ? 0 : 1}; }},
    {kPriorityNew, [](const ComparedMail& m) { return static_cast<Number>(m.mail); }},
    {kPriorityHeader, [](const ComparedMail& m) { return static_cast<Number>(m.headers); }},
};

// Equal mails have equal keys; "" for a mail that is equal to none.
std::string KeyOf(const ComparedMail& mail, Number options) {
  constexpr Number kOthers = kCheckDate | kCheckBody | kCheckSubject;
  const bool by_id = (options & kIgnoreMessageId) == 0;
  if (by_id && mail.message_id.empty()) return "";
  if (!by_id && (options & kOthers) == 0) options |= kOthers;
  std::string key = by_id ? mail.message_id : "any";
  // A zero byte stands in no host text.
  if ((options & kCheckDate) != 0) key += '\0' + mail.date;
  if ((options & kCheckSubject) != 0) key += '\0' + mail.subject;
  if ((options & kCheckBody) != 0) key += '\0' + mail.body;
  return key;
}

// True when `a` stays rather than `b`, which comes before it.
bool IsPreferred(const ComparedMail& a, const ComparedMail& b, Number mode, Number options) {
  if ((mode & kDuplicatesSmallRetain) != 0 && a.size != b.size) return a.size < b.size;
  for (const Priority& priority : kPriorities) {
    if ((options & priority.option) == 0) continue;
    const Number rank_a = priority.rank(a);
    const Number rank_b = priority.rank(b);
    if (rank_a != rank_b) return rank_a > rank_b;
  }
  return false;
}

}  // namespace

std::vector<std::size_t> FindDuplicates(std::span<const ComparedMail> mails, Number mode, Number options) {
  std::map<std::string, const ComparedMail*> kept;
  std::vector<std::size_t> copies;
  for (const ComparedMail& mail : mails) {
    if ((mode & kDuplicatesHotOnly) != 0 && Has(mail, kStateHot) == 0) continue;
    const std::string key = KeyOf(mail, options);
    if (key.empty()) continue;
    const ComparedMail*& best = kept[key];
    if (best == nullptr) {
      best = &mail;
      continue;
    }
    const bool better = IsPreferred(mail, *best, mode, options);
    copies.push_back(better ? best->mail : mail.mail);
    if (better) best = &mail;
  }
  std::sort(copies.begin(), copies.end());
  return copies;
}

}  // namespace wrenfold
