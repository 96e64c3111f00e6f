// The tables of filters, criteria and actions. The first byte of the input separates what follows into FILTER.TAB, a
// criteria table and an action table; the criteria also serve as decision script and as word file. Filters find them
// under the definition names "t" (table) and "s" (script).
#include <cstddef>
#include <string>
#include <string_view>

#include "actions/dispatcher.h"
#include "common/agent_settings.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/filter_table.h"
#include "fuzz_target.h"
#include "match_summary.h"
#include "scan/message_scan.h"

namespace pv::fuzz {
namespace {

constexpr char kMessage[] =
    "From: ann@example.org\r\nTo: joe@example.com\r\nSubject: free offer\r\n\r\nGet it free now\r\n";

struct Tables {
  std::string_view filters;
  std::string_view criteria;
  std::string_view actions;
};

Tables split(std::string_view input) {
  const char separator = input.front();
  input.remove_prefix(1);
  Tables tables;
  tables.filters = take_until(separator, input);
  tables.criteria = take_until(separator, input);
  tables.actions = input;
  return tables;
}

void write_tree(const Tables& tables) {
  const test::ServerTree& tree = server();
  tree.write("conf/FILTERS/FILTER.TAB", tables.filters);
  tree.write("conf/FILTERS/CRITERIA/t.TAB", tables.criteria);
  tree.write("conf/FILTERS/CRITERIA/s.PVS", tables.criteria);
  tree.write("conf/FILTERS/PATTERNS/w", tables.criteria);
  tree.write("conf/FILTERS/ACTIONS/t.TAB", tables.actions);
  tree.write("conf/FILTERS/ACTIONS/s.TAB", tables.actions);
  tree.queue(kMessageId, "Sender=[SMTP:ann@example.org]\r\n", kMessage);
}

void require_loaded_within_limits(const FilterSet& set) {
  require(set.filter_count >= 0 && set.filter_count <= kMaxFilters, "no more filters than the limit");
  require(set.filters.size() == static_cast<std::size_t>(set.filter_count), "one record for each filter");
  for (const FilterDefinition& filter : set.filters) {
    for (const CriterionSlot& slot : filter.slots) {
      require(slot.entry_count >= 0 && slot.entry_count <= kMaxEntries, "entries within the limit");
      require(slot.status != 1 || filter.is_script || slot.minimum_matches >= 1, "a criterion needs a match");
    }
  }
}

// Every evaluator against every slot, whether or not the agent would ask it.
void evaluate_all(const FilterSet& set, MatchResults& results) {
  constexpr char kLine[] = "Content-Disposition: attachment; filename=\"free offer.exe\" name=x\r\n";
  constexpr char kDelimiters[] = " \r'\"\n<>;:]";
  for (SlotIndex slot = 0; slot < kSlotCount; ++slot) {
    EvaluateWordList(slot, "Get it free now\r\n", kDelimiters, set, results);
    EvaluateAddressList(slot, "Ann <ann@example.org>\r\n", kDelimiters, set, results);
    EvaluateEnvelopeValue(slot, kDelimiters, "[SMTP:joe@example.com]", set, results);
    EvaluateAttachmentName(slot, kLine, kDelimiters, set, results);
    EvaluateNumberEquals(slot, 1, set, results);
    EvaluateTag(slot, "T", "text", set, results);
    EvaluateWhitelistedIp(slot, "po", {}, "192.0.2.7", set, results);
  }
  EvaluateHasAttachment(kHasAnAttachment, kLine, kDelimiters, set, results);
  EvaluateSize(kSize, 100, set, results);
}

// As the driver does for a message.
FilterOutcome act(MessageContext message, const FilterSet& set) {
  MatchResults results;
  AllocateMatchResults(set, results);
  results.message = &message;
  EvaluateTag(kAllMessages, tag::kAll, "All Messages", set, results);
  ReportLine line;
  const bool apply = ScanMessage(message, set, results);
  require_within_limits(set, results);
  return apply ? ExecuteFilterActions(message, set, results, line) : FilterOutcome::kNothing;
}

void run(std::string_view input) {
  // The keyword is how a table starts programs.
  if (input.empty() || contains_nocase(input, "EXECUTE_APPLICATION")) return;
  write_tree(split(input));
  MessageContext message = queued_message();
  settings().allow_pattern_caching = input.size() % 2 == 0 ? 0 : 1;
  FilterSet set;
  LoadFilterSet(set);
  require_loaded_within_limits(set);

  MatchResults results;
  AllocateMatchResults(set, results);
  results.message = &message;
  evaluate_all(set, results);
  require(results.filter_count == set.filter_count, "one result for each filter");

  const FilterOutcome outcome = act(message, set);
  require(outcome != FilterOutcome::kStopped, "only a mailbox's rules stop the message");
  if (outcome == FilterOutcome::kNothing) {
    require(server().message(kMessageId) == kMessage, "no filter fired, and the message is as it was");
  }
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
