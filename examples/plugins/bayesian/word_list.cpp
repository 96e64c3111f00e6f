#include "bayesian/word_list.h"

#include <cmath>
#include <fstream>
#include <set>
#include <sstream>

namespace example {
namespace {

constexpr double kSpamShare = 20;  // percent of all mail; what is known of a message without a listed word

double log_odds(double percent) {
  return std::log(percent / (100 - percent));
}

// Bytes above 127 belong to words, so that UTF-8 does.
bool is_word_character(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lower(std::string text) {
  for (char& c : text) c = lower(c);
  return text;
}

}  // namespace

bool WordList::read(const std::string& path) {
  std::ifstream file(path);
  if (!file) return false;
  for (std::string line; std::getline(file, line);) take_line(line);
  return true;
}

void WordList::take_line(const std::string& line) {
  std::istringstream fields(line);
  double percent = 0;
  std::string word;
  if (!(fields >> percent >> word) || percent < 1 || percent > 99) return;
  log_odds_[lower(word)] = log_odds(percent);
}

double WordList::spam_probability(std::string_view text) const {
  double sum = log_odds(kSpamShare);
  std::set<std::string_view> counted;
  std::string word;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    if (i < text.size() && is_word_character(text[i])) {
      word.push_back(lower(text[i]));
      continue;
    }
    const auto entry = log_odds_.find(word);
    if (entry != log_odds_.end() && counted.insert(entry->first).second) sum += entry->second;
    word.clear();
  }
  return 100 / (1 + std::exp(-sum));
}

}  // namespace example
