// The actions of a mailbox's rules.
#pragma once

#include <string_view>
#include <vector>

#include "actions/dispatcher.h"
#include "actions/executed_actions.h"
#include "queue/message_context.h"

namespace pv {

// Carries out one enabled action. A known keyword is recorded whatever becomes of it; `outcome` becomes kStopped when
// the message left the mailbox by it.
void ExecuteMailboxRuleAction(MessageContext& message, std::string_view keyword, std::string_view data,
                              ExecutedActions& executed, FilterOutcome& outcome);

// Every keyword that is known.
std::vector<std::string_view> mailbox_rule_keywords();

}  // namespace pv
