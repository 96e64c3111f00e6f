#include "filters/sender_token.h"

#include "common/text_search.h"
#include "queue/addresses.h"

namespace pv {
namespace {

constexpr std::string_view kToken = "[PV_SENDER]";

}  // namespace

bool holds_sender_token(std::string_view word) {
  return word.find(kToken) != std::string_view::npos;
}

std::string_view SenderToken::put_into(std::string_view word, std::size_t capacity) {
  if (!holds_sender_token(word)) return word;
  const bool whole = word_.assign(word) && replace_all(word_, kToken, sender(), capacity);
  return whole ? word_.view() : word;
}

std::string_view SenderToken::sender() {
  if (!sender_) {
    sender_.emplace();
    if (message_) StripAddressType(message_->envelope.sender, *sender_);
  }
  return *sender_;
}

}  // namespace pv
