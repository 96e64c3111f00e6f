#include "actions/mailbox_rules.h"

#include "actions/copy_to_mailbox_folder.h"
#include "actions/prefix_subject_in_mailbox.h"
#include "common/text_search.h"

namespace pv {
namespace {

// Nothing is done on disk: the mailbox simply does not receive the message.
bool discard(MessageContext&, std::string_view) {
  return true;
}

bool junk(MessageContext& message, std::string_view) {
  return CopyToMailboxFolder(message, "Junk E-mail");
}

bool quarantine(MessageContext& message, std::string_view) {
  return CopyToMailboxFolder(message, "Quarantine");
}

bool move(MessageContext& message, std::string_view folder) {
  return CopyToMailboxFolder(message, folder);
}

bool copy(MessageContext& message, std::string_view folder) {
  [[maybe_unused]] const bool copied = CopyToMailboxFolder(message, folder);
  return false;
}

bool prefix_subject(MessageContext& message, std::string_view prefix) {
  PrefixSubjectInMailbox(message, prefix);
  return false;
}

struct MailboxRule {
  std::string_view keyword;
  bool (*run)(MessageContext& message, std::string_view data);  // true: the message left the mailbox
};
constexpr MailboxRule kMailboxRules[] = {
    {"DELETE", discard}, {"JUNK", junk}, {"QUARANTINE", quarantine},
    {"COPY", copy},      {"MOVE", move}, {"PREFIX-SUBJECT", prefix_subject},
};

}  // namespace

std::vector<std::string_view> mailbox_rule_keywords() {
  std::vector<std::string_view> keywords;
  for (const MailboxRule& rule : kMailboxRules) keywords.push_back(rule.keyword);
  return keywords;
}

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
