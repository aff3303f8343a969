#include "host/mail/threads.h"

#include <unordered_map>

namespace wrenfold {
namespace {

using Places = std::unordered_map<std::string_view, std::size_t>;

std::size_t ParentOf(const ThreadedMail& mail, std::size_t self, const Places& places) {
  for (const std::string& id : mail.ancestors) {
    const auto found = places.find(id);
    if (found != places.end() && found->second != self) return found->second;
  }
  return kNoParent;
}

// Walks up from each mail once; a walk that meets itself has found a ring, which ends at the mail met.
void CutRings(std::vector<std::size_t>& parents) {
  std::vector<std::size_t> walk(parents.size(), kNoParent);  // the walk that passed a mail
  for (std::size_t start = 0; start < parents.size(); ++start) {
    std::size_t at = start;
    while (at != kNoParent && walk[at] == kNoParent) {
      walk[at] = start;
      at = parents[at];
    }
    if (at != kNoParent && walk[at] == start) parents[at] = kNoParent;
  }
}

}  // namespace

std::vector<std::string> MessageIds(std::string_view value) {
  std::vector<std::string> ids;
  for (std::size_t at = value.find('<'); at != value.npos; at = value.find('<', at + 1)) {
    const std::size_t end = value.find_first_of("<>", at + 1);
    if (end == value.npos || value[end] == '<' || end == at + 1) continue;
    ids.emplace_back(value.substr(at, end + 1 - at));
  }
  return ids;
}

std::vector<std::string> Ancestors(std::string_view references, std::string_view in_reply_to) {
  const std::vector<std::string> from_root = MessageIds(references);
  std::vector<std::string> ancestors(from_root.rbegin(), from_root.rend());
  for (std::string& id : MessageIds(in_reply_to)) ancestors.push_back(std::move(id));
  return ancestors;
}

std::vector<std::size_t> ThreadParents(std::span<const ThreadedMail> mails) {
  Places places;
  for (std::size_t i = 0; i < mails.size(); ++i) {
    if (!mails[i].id.empty()) places.emplace(mails[i].id, i);
  }
  std::vector<std::size_t> parents;
  for (std::size_t i = 0; i < mails.size(); ++i) parents.push_back(ParentOf(mails[i], i, places));
  CutRings(parents);
  return parents;
}

std::vector<ThreadLine> ThreadLines(std::span<const std::size_t> order,
                                    std::span<const std::size_t> parents) {
  std::vector<std::vector<std::size_t>> children(parents.size());
  for (const std::size_t mail : order) {
    if (parents[mail] != kNoParent) children[parents[mail]].push_back(mail);
  }
  std::vector<ThreadLine> lines;
  std::vector<ThreadLine> waiting;  // the next one last: threads can be deeper than a stack
  const auto wait_for = [&](std::size_t mail, std::size_t level) {
    waiting.push_back({mail, level, children[mail].size()});
  };
  for (const std::size_t top : order) {
    if (parents[top] != kNoParent) continue;
    wait_for(top, 0);
    while (!waiting.empty()) {
      const ThreadLine line = waiting.back();
      waiting.pop_back();
      lines.push_back(line);
      const std::vector<std::size_t>& answers = children[line.mail];
      for (auto answer = answers.rbegin(); answer != answers.rend(); ++answer)
        wait_for(*answer, line.level + 1);
    }
  }
  return lines;
}

}  // namespace wrenfold
