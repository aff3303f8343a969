// How well what help knows fits the words of a question.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// Something that help knows.
struct HelpItem {
  std::string_view name;
  std::string form;
  std::string_view doc;
  std::string more;  // what else tells of it: its parameters, its family
};

// The words of a question, and what is known to be meant by them.
class Question {
 public:
  explicit Question(std::string_view asked);

  std::size_t size() const { return words_.size(); }

  struct Fit {
    std::size_t words = 0;  // of the question that the item has
    int score = 0;          // among those with as many words
  };
  Fit FitOf(const HelpItem& item) const;

  // One name, of which all parts have to fit.
  bool is_name() const { return is_name_; }

 private:
  // What a synonym says: the word is found in this name, so likely that it comes before what has it.
  struct Meant {
    std::string_view name;
    int score;
  };
  struct Word {
    std::string text;
    std::vector<Meant> meant;
  };
  void AddMeanings();

  std::vector<Word> words_;
  bool is_name_ = false;
};

// The places of those items that fit, best first: those with all words, and when they are few, those with one
// word less.
std::vector<std::size_t> Ranked(const Question& question, const std::vector<HelpItem>& items);

}  // namespace wrenfold
