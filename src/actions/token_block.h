// The tagged values of one fired filter, from which the "[PV_...]" tokens of its actions are filled:
//
//     <MSG>id</MSG><CON>SMTP</CON><ACCOUNT></ACCOUNT><SENDER>a@b</SENDER><IP>192.0.2.7</IP><CRITERIA>BODY</CRITERIA>
//
// followed by the filter's matched texts, which are tagged already.
#pragma once

#include <string_view>

#include "common/bounded_text.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

using TokenBlock = BoundedText<1024>;

// Appends the filter's matched texts in slot order. One that does not fit is left out, and the next ones are tried.
void AppendMatchedTexts(FilterIndex index, const MatchResults& results, TokenBlock& block);

TokenBlock make_token_block(const MessageContext& message, std::string_view criterion_name, FilterIndex index,
                            const MatchResults& results);

}  // namespace pv
