#include "filters/token_expansion.h"

#include <array>
#include <optional>

#include "common/bounded_text.h"
#include "common/fields.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "filters/limits.h"

namespace pv {
namespace {

constexpr std::string_view kClosing = "</";
constexpr std::string_view kWordListToken = "[PV_WORDLIST]";

std::string opening_tag(std::string_view name) {
  return "<" + std::string(name) + ">";
}

std::string closing_tag(std::string_view name) {
  return "</" + std::string(name) + ">";
}

bool needs_encoding(char c) {
  return c < 32 || c > 126 || c == '=' || c == '?' || c == '_';
}

std::string encoded_for_header(std::string_view value) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : value) {
    if (!needs_encoding(c)) {
      encoded += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    encoded += {'=', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return encoded;
}

void expand_tag(std::string_view block, std::string_view name, std::string& target, std::size_t capacity,
                TokenMode mode) {
  const std::optional<Extract> found = extract_between(block, opening_tag(name), closing_tag(name));
  if (!found || found->text.size() > kTagValue) return;
  const std::string value =
      mode == TokenMode::kHeaderEncoded ? encoded_for_header(found->text) : std::string(found->text);
  if (value.size() + target.size() >= capacity) return;
  (void)replace_all(target, "[PV_" + std::string(name) + "]", value, capacity - 1);
}

// The names stand in the block's opening tags: the first one, then the one after each closing tag but the last.
void expand_tags(std::string_view block, std::string& target, std::size_t capacity, TokenMode mode) {
  const int count = count_fields(block, kClosing) - 1;
  std::size_t from = 0;
  std::size_t closing = 0;
  for (int i = 1; i <= count; ++i) {
    const std::optional<Extract> name = extract_between(block.substr(from), "<", ">");
    if (name && name->text.size() <= kTagName) expand_tag(block, name->text, target, capacity, mode);
    closing = block.find(kClosing, closing + 1);
    from = closing + 1;
  }
}

std::string word_list(std::string_view block) {
  BoundedText<kWordListText> list;
  std::string_view separator;
  for (const std::string_view name : {tag::kWord, tag::kRecipient}) {
    const std::string opening = opening_tag(name);
    const std::string closing = closing_tag(name);
    std::string_view rest = block;
    while (const std::optional<Extract> word = extract_between(rest, opening, closing)) {
      rest.remove_prefix(word->after);
      if (word->text.size() > kListedWord) continue;
      append_bounded(list, separator);
      append_bounded(list, word->text);
      separator = ",";
    }
  }
  return std::string(list.view());
}

}  // namespace

void ExpandTokens(std::string_view block, std::string& target, std::size_t capacity, TokenMode mode) {
  if (capacity == 0) return;
  expand_tags(block, target, capacity, mode);
  if (target.find(kWordListToken) == std::string::npos) return;
  (void)replace_all(target, kWordListToken, word_list(block), capacity - 1);
}

}  // namespace pv
