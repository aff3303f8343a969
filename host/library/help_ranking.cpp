#include "host/library/help_ranking.h"

#include <algorithm>
#include <iterator>

#include "host/base/ascii.h"
#include "host/library/help_lines.h"
#include "host/library/help_synonyms.h"
#include "host/library/help_words.h"

namespace wrenfold {
namespace {

// Names before first sentences before the rest, whole words before beginnings of words.
struct Weight {
  int whole;
  int beginning;
};
constexpr Weight kInName = {100, 60};
constexpr Weight kInFirstSentence = {40, 25};
constexpr Weight kInRest = {12, 6};
constexpr int kWholeName = 40;      // added when the words of the question are all there is in the name
constexpr int kMeant = 10000;       // what a synonym names comes before all other
constexpr int kMeantByMore = 5000;  // for each word of the phrase behind the first
constexpr int kMeantLater = 100;    // less for each name behind the first of a synonym

constexpr std::size_t kShortestBeginning = 3;  // letters that find a longer word
constexpr std::size_t kEnough = 12;            // items with all words, so that others are not looked for

// Words of a sentence that say nothing of what is looked for.
constexpr std::string_view kFillers[] = {"a",  "an",   "and",  "by", "can",  "do", "does", "how",
                                         "i",  "in",   "is",   "it", "my",   "of", "on",   "the",
                                         "to", "with", "what", "at", "from", "for"};

bool IsFiller(std::string_view word) {
  return std::find(std::begin(kFillers), std::end(kFillers), word) != std::end(kFillers);
}

int WeightIn(const std::vector<std::string>& words, const std::string& wanted, bool takes_beginnings,
             Weight weight) {
  int best = 0;
  for (const std::string& word : words) {
    if (word == wanted) return weight.whole;
    const bool begins = takes_beginnings && wanted.size() >= kShortestBeginning && word.starts_with(wanted);
    if (begins) best = weight.beginning;
  }
  return best;
}

std::vector<std::string_view> Pieces(std::string_view text, char divider) {
  std::vector<std::string_view> pieces;
  while (true) {
    const std::size_t end = text.find(divider);
    pieces.push_back(text.substr(0, end));
    if (end == text.npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

Question::Question(std::string_view asked) {
  const std::string translated = EnglishWords(asked);
  const std::string all = std::string(asked) + " " + translated;
  // A name is looked for whole and by its parts: "SelectMail" is a word of the synonyms.
  const std::vector<std::string> whole = TextWords(all);
  const std::vector<std::string> parts = NameWords(all);
  const auto known = [](const std::string& word) {
    return std::any_of(Synonyms().begin(), Synonyms().end(), [&word](const Synonym& row) {
      const auto phrases = Pieces(row.asked, '|');
      return std::any_of(phrases.begin(), phrases.end(),
                         [&word](std::string_view phrase) { return WithoutEnding(phrase) == word; });
    });
  };
  const bool names = std::any_of(whole.begin(), whole.end(), known);
  is_name_ = !names && whole.size() == 1 && parts.size() > 1;
  for (const std::string& word : names ? whole : parts) words_.push_back({word, {}});
  if (words_.size() > 1) std::erase_if(words_, [](const Word& word) { return IsFiller(word.text); });
  AddMeanings();
}

void Question::AddMeanings() {
  for (const Synonym& row : Synonyms()) {
    for (const std::string_view phrase : Pieces(row.asked, '|')) {
      std::vector<Word*> covered;
      const std::vector<std::string> wanted = TextWords(phrase);
      for (const std::string& part : wanted) {
        const auto found =
            std::find_if(words_.begin(), words_.end(), [&](const Word& w) { return w.text == part; });
        if (found != words_.end()) covered.push_back(&*found);
      }
      if (covered.size() != wanted.size()) continue;
      int score = kMeant + kMeantByMore * static_cast<int>(wanted.size() - 1);
      for (const std::string_view name : Pieces(row.names, ' ')) {
        for (Word* word : covered) word->meant.push_back({name, score});
        score -= kMeantLater;
      }
    }
  }
}

Question::Fit Question::FitOf(const HelpItem& item) const {
  const std::string_view sentence = FirstSentence(item.doc);
  const std::vector<std::string> name = NameWords(item.name);
  const std::vector<std::string> first = TextWords(sentence);
  const std::vector<std::string> rest =
      TextWords(std::string(item.doc.substr(sentence.size())) + " " + item.more);
  Fit fit;
  std::size_t in_name = 0;
  for (const Word& word : words_) {
    const bool beginnings = word.meant.empty();
    const int by_name = WeightIn(name, word.text, beginnings, kInName);
    int score = std::max({by_name, WeightIn(first, word.text, beginnings, kInFirstSentence),
                          WeightIn(rest, word.text, beginnings, kInRest)});
    for (const Meant& meant : word.meant) {
      if (meant.name == item.name) score = std::max(score, meant.score);
    }
    if (score > 0) ++fit.words;
    if (by_name > 0) ++in_name;
    fit.score += score;
  }
  if (in_name > 0) fit.score += kWholeName * static_cast<int>(in_name) / static_cast<int>(name.size());
  return fit;
}

std::vector<std::size_t> Ranked(const Question& question, const std::vector<HelpItem>& items) {
  std::vector<Question::Fit> fits;
  std::size_t most = 0;
  for (const HelpItem& item : items) {
    fits.push_back(question.FitOf(item));
    most = std::max(most, fits.back().words);
  }
  std::vector<std::size_t> places;
  if (question.is_name() && most < question.size()) return places;
  for (std::size_t words = most; words > 0 && places.size() < kEnough && words + 1 >= most; --words) {
    const std::size_t begin = places.size();
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (fits[i].words == words) places.push_back(i);
    }
    std::stable_sort(places.begin() + static_cast<std::ptrdiff_t>(begin), places.end(),
                     [&fits](std::size_t a, std::size_t b) { return fits[a].score > fits[b].score; });
  }
  return places;
}

}  // namespace wrenfold
