#include "antivirus/eicar_search.h"

#include <utility>

namespace example {
namespace {

// The value of a base64 digit, or -1.
int digit_value(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  return c == '/' ? 63 : -1;
}

}  // namespace

std::string eicar_text() {
  constexpr const char* kParts[] = {"X5O!P%@AP[4", "\\PZX54(P^)7CC)7}", "$EICAR-STANDARD-", "ANTIVIRUS-TEST-",
                                    "FILE!$H+H*"};
  std::string text;
  for (const char* part : kParts) text += part;
  return text;
}

TextSearch::TextSearch(std::string text) : text_(std::move(text)), fallback_(text_.size() + 1, 0) {
  for (std::size_t i = 1, longest = 0; i < text_.size(); ++i) {
    while (longest > 0 && text_[i] != text_[longest]) longest = fallback_[longest];
    if (text_[i] == text_[longest]) ++longest;
    fallback_[i + 1] = longest;
  }
}

bool TextSearch::feed(char byte) {
  while (matched_ > 0 && byte != text_[matched_]) matched_ = fallback_[matched_];
  if (byte == text_[matched_]) ++matched_;
  if (matched_ < text_.size()) return false;
  matched_ = fallback_[matched_];
  return true;
}

void Base64Stream::restart() {
  bits_ = 0;
  bit_count_ = 0;
}

bool Base64Stream::feed(char encoded, char& decoded) {
  if (encoded == '\r') return false;
  if (encoded == '\n') {
    if (line_is_empty_) restart();
    line_is_empty_ = true;
    return false;
  }
  line_is_empty_ = false;
  const int value = digit_value(encoded);
  if (value < 0) {
    restart();
    return false;
  }
  bits_ = (bits_ << 6 | static_cast<std::uint32_t>(value)) & 0xFFFF;
  bit_count_ += 6;
  if (bit_count_ < 8) return false;
  bit_count_ -= 8;
  decoded = static_cast<char>(bits_ >> bit_count_ & 0xFF);
  return true;
}

bool EicarSearch::feed(char byte) {
  if (plain_.feed(byte)) return true;
  char decoded = 0;
  return base64_.feed(byte, decoded) && decoded_.feed(decoded);
}

}  // namespace example
