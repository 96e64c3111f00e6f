#include "platform/command_line.h"

#include <algorithm>

namespace pv::platform {
namespace {

constexpr std::string_view kBlanks = " \t";

bool is_blank(char c) {
  return kBlanks.find(c) != std::string_view::npos;
}

// Takes word after word off the front of a command line.
class Words {
 public:
  explicit Words(std::string_view line) : rest_(line.substr(0, line.find('\0'))) {}

  // False when only blanks are left.
  bool skip_blanks() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
    return !rest_.empty();
  }

  std::string program() {
    std::string word;
    bool quoted = false;
    for (; !at_end(quoted); rest_.remove_prefix(1)) {
      if (rest_.front() == '"') {
        quoted = !quoted;
      } else {
        word += rest_.front();
      }
    }
    return word;
  }

  std::string argument() {
    std::string word;
    bool quoted = false;
    while (!at_end(quoted)) {
      const std::size_t backslashes = std::min(rest_.find_first_not_of('\\'), rest_.size());
      rest_.remove_prefix(backslashes);
      if (rest_.starts_with('"')) {
        take_quote(backslashes, quoted, word);
      } else {
        word.append(backslashes, '\\');
        if (backslashes == 0) take_text(word);
      }
    }
    return word;
  }

 private:
  bool at_end(bool quoted) const { return rest_.empty() || (!quoted && is_blank(rest_.front())); }

  void take_text(std::string& word) {
    word += rest_.front();
    rest_.remove_prefix(1);
  }

  // At a quote that `backslashes` went before.
  void take_quote(std::size_t backslashes, bool& quoted, std::string& word) {
    word.append(backslashes / 2, '\\');
    if (backslashes % 2 != 0) return take_text(word);
    rest_.remove_prefix(1);
    if (quoted && rest_.starts_with('"')) return take_text(word);
    quoted = !quoted;
  }

  std::string_view rest_;
};

}  // namespace

std::vector<std::string> split_command_line(std::string_view command_line) {
  std::vector<std::string> words;
  Words line(command_line);
  if (line.skip_blanks()) words.push_back(line.program());
  while (line.skip_blanks()) words.push_back(line.argument());
  return words;
}

}  // namespace pv::platform
