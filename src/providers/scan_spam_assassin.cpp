// SPAMASSASSIN: 1 for spam and 0 for clean mail, against the numbers of a criterion.
#include <optional>
#include <string>

#include "common/fields.h"
#include "filters/list_criteria.h"
#include "providers/counters.h"
#include "providers/scanner_criteria.h"
#include "providers/scanner_provider.h"
#include "providers/scanners.h"

namespace pv {
namespace {

constexpr int kClean = 0;
constexpr int kSpam = 1;

int verdict_of(std::string_view reply) {
  const std::string_view passed = element(reply, "<PASS>", "</PASS>");
  return passed.empty() || leading_number(passed) == 1 ? kClean : kSpam;
}

int ask_spam_assassin(const ScannerProvider& provider, const ScannerRequest& request) {
  ProviderReply reply;
  const bool answered = ask_provider(provider.execute, request, PV_REPLY_SIZE, reply) != 0;
  const int verdict = answered ? verdict_of(reply.view()) : kClean;
  counters.sa_total_scans.increment();
  if (verdict == kSpam) counters.sa_detections.increment();
  return verdict;
}

// The first number counts twice, once as the criterion's whole data and once as its first entry.
void compare(int verdict, SlotIndex slot, const CriterionSlot& criterion, FilterMatch& match) {
  const std::string shown = std::to_string(verdict);
  if (leading_number(criterion.data) == verdict) count_match(slot, match);
  for (int entry = 0; entry < entries_of(criterion); ++entry) {
    if (leading_number(criterion_entry(criterion, entry)) != verdict) continue;
    count_match(slot, match);
    match.set_match_value(slot, entry, shown);
  }
  match.set_matched_text(slot, "PASS", shown);
}

}  // namespace

void ScanSpamAssassin(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results) {
  const ScannerProvider& provider = scanner_providers().spam_assassin;
  if (!provider.can_scan()) return;
  std::optional<int> verdict;
  for (FilterIndex i = 1; i <= set.filter_count; ++i) {
    const CriterionSlot& criterion = set.filter(i).slots[static_cast<std::size_t>(slot)];
    if (criterion.status == 1) {
      if (!verdict) verdict = ask_spam_assassin(provider, request_of_files(message, set));
      compare(*verdict, slot, criterion, results.match(i));
    }
    counters.sa_total_scans.publish();
    counters.sa_detections.publish();
  }
}

}  // namespace pv
