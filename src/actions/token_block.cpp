#include "actions/token_block.h"

#include "common/formats.h"
#include "queue/addresses.h"

namespace pv {

void AppendMatchedTexts(FilterIndex index, const MatchResults& results, TokenBlock& block) {
  for (SlotIndex slot = 0; slot < kSlotCount; ++slot) {
    const std::string_view text = results.match(index).matched_text(slot);
    if (block.size() + text.size() < TokenBlock::kCapacity) append_bounded(block, text);
  }
}

TokenBlock make_token_block(const MessageContext& message, std::string_view criterion_name, FilterIndex index,
                            const MatchResults& results) {
  BoundedText<2048> sender;
  ExtractAddress(message.envelope.sender, sender);
  TokenBlock block = format_text(
      "<MSG>%s</MSG><CON>%s</CON><ACCOUNT>%s</ACCOUNT><SENDER>%s</SENDER><IP>%s</IP><CRITERIA>%.*s</CRITERIA>",
      message.message_id.c_str(), message.connector.c_str(), message.envelope.account.c_str(), sender.c_str(),
      message.envelope.client_ip.c_str(), static_cast<int>(criterion_name.size()), criterion_name.data());
  AppendMatchedTexts(index, results, block);
  return block;
}

}  // namespace pv
