#include "actions/mailbox_rules.h"

#include "common/text_search.h"

namespace pv {
namespace {

// Nothing is done on disk: the mailbox simply does not receive the message.
bool discard(MessageContext&, std::string_view) {
  return true;
}

struct MailboxRule {
  std::string_view keyword;
  bool (*run)(MessageContext& message, std::string_view data);  // true: the message left the mailbox
};
// The rules that copy into folders or mark the subject join here, a row each.
constexpr MailboxRule kMailboxRules[] = {{"DELETE", discard}};

}  // namespace

void ExecuteMailboxRuleAction(MessageContext& message, std::string_view keyword, std::string_view data,
                              ExecutedActions& executed, FilterOutcome& outcome) {
  for (const MailboxRule& rule : kMailboxRules) {
    if (!equals_nocase(keyword, rule.keyword)) continue;
    record_executed(keyword, executed);
    if (rule.run(message, data)) outcome = FilterOutcome::kStopped;
    return;
  }
}

}  // namespace pv
