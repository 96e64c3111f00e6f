#include "mail_text.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string_view>

#include "workload.h"

namespace pv::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kOfAdvertisements[] = {
    "free",   "win",     "cash",     "money",  "offer",   "buy",         "cheap",    "click",   "here",     "now",
    "act",    "order",   "today",    "viagra", "pills",   "loan",        "credit",   "debt",    "mortgage", "rates",
    "casino", "bonus",   "prize",    "winner", "risk",    "income",      "earn",     "home",    "business", "work",
    "hidden", "fees",    "remove",   "list",   "limited", "time",        "stock",    "million", "dollars",  "sex",
    "dating", "singles", "weight",   "loss",   "degree",  "software",    "discount", "save",    "sale",     "special",
    "urgent", "account", "password", "verify", "bank",    "unsubscribe", "lottery",  "adult",   "guarantee"};

std::vector<std::string> files_below(const fs::path& root) {
  std::vector<std::string> files;
  for (const char* folder : {"ham", "spam"}) {
    if (!fs::is_directory(root / folder)) continue;
    for (const fs::directory_entry& entry : fs::directory_iterator(root / folder)) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

void add_body_lines(const std::string& file, std::vector<std::string>& lines) {
  std::ifstream in(file, std::ios::binary);
  bool in_body = false;
  for (std::string line; std::getline(in, line);) {
    if (!in.eof()) line += '\n';
    if (in_body) lines.push_back(line.substr(0, 2047));
    in_body = in_body || line == "\n" || line == "\r\n";
  }
}

std::vector<std::string> read_dictionary() {
  std::vector<std::string> words;
  std::ifstream in("/usr/share/dict/words");
  for (std::string word; in >> word;) {
    const bool plain = std::all_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    if (plain && word.size() >= 4 && word.size() <= 12) words.push_back(word);
  }
  if (!words.empty()) return words;
  constexpr std::string_view kSyllables[] = {"ba", "cor", "den", "fi", "gal", "hon", "ix", "lo", "mun", "ter"};
  for (const std::string_view a : kSyllables) {
    for (const std::string_view b : kSyllables) {
      for (const std::string_view c : kSyllables) words.push_back(std::string(a).append(b).append(c));
    }
  }
  return words;
}

class WordMaker {
 public:
  std::string next() {
    const unsigned kind = below(100);
    if (kind < 30) return word();
    if (kind < 55) return word() + " " + word();
    if (kind < 75) return phrase();
    if (kind < 90) return word() + word() + std::string(kDomains[below(std::size(kDomains))]);
    return misspelt(word());
  }

 private:
  static constexpr std::string_view kDomains[] = {".com", ".biz", ".info", ".net"};

  unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
  const std::string& word() { return dictionary_[below(dictionary_.size())]; }
  std::string phrase() {
    std::string text(kOfAdvertisements[below(std::size(kOfAdvertisements))]);
    for (unsigned more = below(3); more > 0; --more) {
      text.append(" ").append(kOfAdvertisements[below(std::size(kOfAdvertisements))]);
    }
    return text;
  }
  std::string misspelt(std::string text) {
    constexpr std::string_view kLetters = "aeiosl", kDigits = "4310$1";
    for (char& c : text) {
      const std::size_t at = kLetters.find(c);
      if (at != std::string_view::npos && below(5) < 2) c = kDigits[at];
    }
    return text;
  }

  std::mt19937 random_{20240101};
  std::vector<std::string> dictionary_ = read_dictionary();
};

std::string with_asterisks(const std::string& word, std::size_t kind) {
  switch (kind % 4) {
    case 0:
      return "*" + word + "*";
    case 1:
      return word.substr(0, word.size() / 2) + "*" + word.substr(word.size() / 2);
    case 2:
      return "*" + word;
    default:
      return word + "*";
  }
}

}  // namespace

const std::vector<std::string>& mail_files() {
  static const std::vector<std::string> files = files_below(CORPUS_DIRECTORY);
  return files;
}

const std::vector<std::string>& mail_lines() {
  static const std::vector<std::string> all = [] {
    std::vector<std::string> lines;
    for (const std::string& file : mail_files()) add_body_lines(file, lines);
    if (lines.empty()) {
      std::fputs("No mail in " CORPUS_DIRECTORY ": one line, made up, stands in.\n", stderr);
      lines.assign(20000, kTextLine);
    }
    return lines;
  }();
  return all;
}

std::vector<std::string> word_list(std::size_t count, Asterisks asterisks) {
  WordMaker maker;
  std::set<std::string> seen;
  std::vector<std::string> words;
  while (words.size() < count) {
    std::string word = maker.next();
    if (!seen.insert(word).second) continue;
    const std::size_t i = words.size();
    const bool has_asterisks = asterisks == Asterisks::kOneInEight && i % 8 == 3;
    words.push_back(has_asterisks ? with_asterisks(word, i / 8) : word);
  }
  return words;
}

}  // namespace pv::bench
