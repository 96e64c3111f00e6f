#include "vbscript/regexp_translation.h"

#include <cstdint>
#include <optional>

#include "vbscript/characters.h"
#include "vbscript/code_page.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

constexpr int kSyntaxError = 5017;
constexpr int kUnexpectedQuantifier = 5018;

bool is_octal(char c) {
  return c >= '0' && c <= '7';
}

// Capturing groups, so that \3 is told apart from an octal escape.
int count_groups(std::string_view pattern) {
  int groups = 0;
  bool in_class = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '\\') {
      ++i;
    } else if (in_class) {
      in_class = pattern[i] != ']';
    } else if (pattern[i] == '[') {
      in_class = true;
    } else if (pattern[i] == '(' && (i + 1 == pattern.size() || pattern[i + 1] != '?')) {
      ++groups;
    }
  }
  return groups;
}

class Translation {
 public:
  explicit Translation(std::string_view pattern) : pattern_(pattern), groups_(count_groups(pattern)) {}

  std::string run() {
    while (!at_end()) piece();
    return std::move(result_);
  }

 private:
  bool at_end() const { return position_ == pattern_.size(); }
  char peek(std::size_t ahead = 0) const {
    return position_ + ahead < pattern_.size() ? pattern_[position_ + ahead] : '\0';
  }
  char take() { return pattern_[position_++]; }

  void literal(char c) {
    if (!is_letter(c) && !is_digit(c) && static_cast<unsigned char>(c) < 128 && c != '\0') result_ += '\\';
    if (c == '\0') {
      result_ += "\\x00";
    } else {
      result_ += c;
    }
  }

  void piece() {
    const char c = take();
    switch (c) {
      case '\\':
        return escape(false);
      case '[':
        return character_class();
      case '(':
        return group();
      case '*':
      case '+':
      case '?':
        return quantifier(std::string(1, c));
      case '{':
        return brace();
      case '|':
      case ')':
      case '^':
      case '$':
        quantifiable_ = c == ')';
        result_ += c;
        return;
      case '.':
        result_ += c;
        break;
      default:
        literal(c);
    }
    quantifiable_ = true;
  }

  // Only (?: (?= (?! are known; "(*" and "(?" with anything else have a quantifier too many.
  void group() {
    result_ += '(';
    quantifiable_ = false;
    if (peek() == '*') raise_pattern_error(kUnexpectedQuantifier);
    if (peek() != '?') return;
    const char kind = peek(1);
    if (kind != ':' && kind != '=' && kind != '!') raise_pattern_error(kUnexpectedQuantifier);
    result_ += take();
    result_ += take();
  }

  // A second quantifier, but for the "?" of a lazy one, is an error: PCRE2 would make it possessive.
  void quantifier(const std::string& text) {
    if (!quantifiable_) raise_pattern_error(kUnexpectedQuantifier);
    result_ += text;
    quantifiable_ = false;
    if (peek() == '?') result_ += take();
  }

  // "{2}", "{2,}", "{2,5}"; any other brace stands for itself.
  void brace() {
    std::size_t end = position_;
    while (end < pattern_.size() && is_digit(pattern_[end])) ++end;
    const bool has_number = end > position_;
    if (has_number && end < pattern_.size() && pattern_[end] == ',') {
      ++end;
      while (end < pattern_.size() && is_digit(pattern_[end])) ++end;
    }
    if (!has_number || end == pattern_.size() || pattern_[end] != '}') {
      literal('{');
      quantifiable_ = true;
      return;
    }
    const std::string text = "{" + std::string(pattern_.substr(position_, end + 1 - position_));
    position_ = end + 1;
    quantifier(text);
  }

  void character_class() {
    result_ += '[';
    if (peek() == '^') result_ += take();
    while (!at_end() && peek() != ']') {
      const char c = take();
      if (c == '\\') {
        escape(true);
      } else if (c == '[' || c == '\0') {
        literal(c);  // "[:alpha:]" is no class of characters here
      } else {
        result_ += c;
      }
    }
    if (at_end()) raise_pattern_error(5019);
    result_ += take();
    quantifiable_ = true;
  }

  void escape(bool in_class) {
    if (at_end()) raise_pattern_error(kSyntaxError);
    const char c = take();
    quantifiable_ = true;
    if (is_digit(c)) return number_escape(c, in_class);
    if (c == 'x') return code_escape(2);
    if (c == 'u') return code_escape(4);
    if (c == 'c' && is_letter(peek())) return byte(static_cast<unsigned>(lower(take())) & 31U);
    if (c == 'v') return byte(0x0B);
    const std::string_view known = in_class ? "bdDsSwWfnrt" : "bBdDsSwWfnrt";
    if (known.find(c) == std::string_view::npos) return literal(c);
    if (c == 'b' || c == 'B') quantifiable_ = in_class;
    result_ += '\\';
    result_ += c;
  }

  void byte(unsigned code) {
    constexpr char kDigits[] = "0123456789abcdef";
    result_ += "\\x";
    result_ += kDigits[(code >> 4U) & 15U];
    result_ += kDigits[code & 15U];
  }

  // A back reference where there is such a group, else an octal code, else the digit itself.
  void number_escape(char first, bool in_class) {
    int number = first - '0';
    std::size_t digits = 0;
    while (is_digit(peek(digits)) && number * 10 + (peek(digits) - '0') <= groups_) {
      number = number * 10 + (peek(digits++) - '0');
    }
    if (!in_class && number > 0 && number <= groups_) {
      position_ += digits;
      result_ += "(?:\\g{" + std::to_string(number) + "})";
      return;
    }
    if (!is_octal(first)) return literal(first);
    unsigned code = static_cast<unsigned>(first - '0');
    for (int i = 0; i < 2 && is_octal(peek()) && code * 8 + static_cast<unsigned>(peek() - '0') < 256; ++i) {
      code = code * 8 + static_cast<unsigned>(take() - '0');
    }
    byte(code);
  }

  // \xHH and \uHHHH; without their digits the letter stands for itself. A character that the code page has not never
  // matches.
  void code_escape(std::size_t digits) {
    std::uint32_t code = 0;
    for (std::size_t i = 0; i < digits; ++i) {
      const unsigned digit = digit_value(peek(i));
      if (digit > 15) return literal(digits == 2 ? 'x' : 'u');
      code = code * 16 + digit;
    }
    position_ += digits;
    const std::optional<char> c = digits == 2 ? static_cast<char>(code) : byte_of(code);
    byte(c ? static_cast<unsigned char>(*c) : 0x81U);  // a byte that the code page leaves open
  }

  std::string_view pattern_;
  const int groups_;
  std::size_t position_ = 0;
  bool quantifiable_ = false;  // whether a quantifier may follow
  std::string result_;
};

}  // namespace

std::string translate_pattern(std::string_view pattern) {
  return Translation(pattern).run();
}

void raise_pattern_error(int number) {
  throw RuntimeError{number, std::string(runtime_error_text(number))};
}

}  // namespace pv::vbscript
