// "[PV_SENDER]" in a criterion's word stands for the bare address of the message's sender.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "common/bounded_text.h"
#include "filters/limits.h"
#include "queue/message_context.h"

namespace pv {

// Whether a word stands for another one in each message.
bool holds_sender_token(std::string_view word);

// Puts the sender into words, for one call of an evaluator. The address is taken from the envelope when the first word
// asks for it.
class SenderToken {
 public:
  // `message` is borrowed; without one the sender is empty.
  explicit SenderToken(const MessageContext* message) : message_(message) {}

  // The word with every token (in this spelling) replaced. A word that would have `capacity` bytes or more stays as it
  // is. What is returned lives as long as `word`, and until the next call.
  std::string_view put_into(std::string_view word, std::size_t capacity);

 private:
  std::string_view sender();

  const MessageContext* message_;
  std::optional<BoundedText<512>> sender_;
  BoundedText<kWordListValue> word_;
};

}  // namespace pv
