// A spam probability from a list of words: naive Bayes with probabilities that somebody wrote down, where a real filter
// learns them.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace example {

class WordList {
 public:
  // Reads a text file with one word a line, after the probability, in percent, that a message with it is spam:
  //
  //     # a comment
  //     92 viagra
  //     4  minutes
  //
  // Lines that say something else, or a probability outside 1 to 99, are passed over. False when there is no file.
  bool read(const std::string& path);

  // The probability, in percent, that this text is spam: of every word of the list that occurs in it, once, in any
  // letter case. 20 for a text without one.
  double spam_probability(std::string_view text) const;

 private:
  void take_line(const std::string& line);

  std::map<std::string, double, std::less<>> log_odds_;  // by the word in lower case
};

}  // namespace example
