#include "actions/dispatcher.h"

#include "actions/action_table.h"
#include "actions/decision.h"
#include "actions/executed_actions.h"
#include "actions/executed_line.h"
#include "actions/mailbox_rules.h"
#include "actions/system_actions.h"
#include "actions/token_block.h"
#include "common/output.h"
#include "common/report_log.h"

namespace pv {
namespace {

// One walk through the filters of a message.
struct Walk {
  MessageContext& message;
  const FilterSet& set;
  const MatchResults& results;
  FilterOutcome outcome = FilterOutcome::kNothing;
  bool stop = false;
};

bool passes_over(const ActionLine& line) {
  if (line.enabled()) return false;
  print_text("Bypassing Action. Status Disabled\n");
  return true;
}

// After an action that removed the message, disabled lines are still reported, and the next enabled one ends the table.
ExecutedActions run_mailbox_rules(const FilterDefinition& filter, Walk& walk) {
  copy_bounded(walk.message.envelope.account, walk.set.postoffice);
  copy_bounded(walk.message.mailbox, walk.set.mailbox);
  ExecutedActions executed;
  ActionTable table;
  if (!table.open(action_table_path(walk.message.directories, walk.set, filter))) return executed;
  ActionLine line;
  while (table.next(line)) {
    if (passes_over(line)) continue;
    if (walk.outcome == FilterOutcome::kStopped) break;
    walk.outcome = FilterOutcome::kFired;
    ExecuteMailboxRuleAction(walk.message, line.keyword, line.data, executed, walk.outcome);
    walk.stop = walk.outcome == FilterOutcome::kStopped;
  }
  return executed;
}

ExecutedActions run_system_actions(FilterIndex index, const Decision& decision, Walk& walk) {
  const FilterDefinition& filter = walk.set.filter(index);
  ActionTable table;
  if (!table.open(action_table_path(walk.message.directories, walk.set, filter))) return {};
  FiredFilter fired{walk.message,
                    walk.set,
                    filter,
                    walk.set.postoffice.empty() ? Queue::kInbound : Queue::kOutgoing,
                    make_token_block(walk.message, decision.criterion_name, index, walk.results),
                    ExecutedActions()};
  ActionLine line;
  while (!fired.stop_processing && table.next(line)) {
    if (passes_over(line)) continue;
    walk.outcome = FilterOutcome::kFired;
    run_system_action(line, fired);
  }
  walk.stop = fired.stop_processing;
  return fired.executed;
}

void run_fired_filter(FilterIndex index, const Decision& decision, Walk& walk, ReportLine& report_line) {
  const FilterDefinition& filter = walk.set.filter(index);
  print_parts(
      {"All for rule (", filter.name, ") satisfied. Executing associated action (", filter.definition_name, ").\n"});
  const ExecutedActions executed =
      walk.set.scope() == Scope::kMailbox ? run_mailbox_rules(filter, walk) : run_system_actions(index, decision, walk);
  if (executed.empty()) return;
  report_line = executed_line(walk.message, walk.set, filter, decision.criteria_text, executed);
  report_write(report_line);
}

}  // namespace

FilterOutcome ExecuteFilterActions(MessageContext& message, const FilterSet& set, const MatchResults& results,
                                   ReportLine& report_line) {
  Walk walk{message, set, results};
  for (FilterIndex index = 1; index <= set.filter_count && !walk.stop; ++index) {
    const Decision decision = decide(message, set, index, results);
    if (!decision.fires) continue;
    // A script filter counts as fired only through its enabled actions.
    if (!set.filter(index).is_script) walk.outcome = FilterOutcome::kFired;
    run_fired_filter(index, decision, walk, report_line);
  }
  return walk.outcome;
}

}  // namespace pv
