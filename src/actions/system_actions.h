// The actions of server-wide and postoffice filters, by keyword.
#pragma once

#include <string_view>
#include <vector>

#include "actions/action_table.h"
#include "actions/executed_actions.h"
#include "actions/token_block.h"
#include "filters/filter_set.h"
#include "queue/message_context.h"

namespace pv {

// A fired filter while its actions are carried out.
struct FiredFilter {
  MessageContext& message;
  const FilterSet& set;
  const FilterDefinition& filter;
  Queue queue;  // which copy of the message its scope acts on
  TokenBlock tokens;
  ExecutedActions executed;
  bool stop_processing = false;  // no further action or filter for this message
};

// Carries out one enabled action and records its keyword when it was done. A keyword that is not known does nothing.
void run_system_action(const ActionLine& line, FiredFilter& fired);

// Every keyword that is known.
std::vector<std::string_view> system_action_keywords();

}  // namespace pv
