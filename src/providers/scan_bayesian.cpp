// SPAM_PROBABILITY: a probability from 0 to 100 against the thresholds of a criterion, which it must exceed.
#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "filters/list_criteria.h"
#include "providers/counters.h"
#include "providers/decimal_number.h"
#include "providers/scanner_criteria.h"
#include "providers/scanner_provider.h"
#include "providers/scanners.h"

namespace pv {
namespace {

constexpr double kDetection = 95.0;  // what is above counts as detected, whatever the thresholds

float single_precision(double number) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(number, -kLargest, kLargest));
}

// Without an answer the probability is 0.
float ask_bayesian(const ScannerProvider& provider, const ScannerRequest& request) {
  ProviderReply reply;
  float probability = 0;
  if (ask_provider(provider.execute, request, 0, reply) != 0) {
    probability = single_precision(leading_decimal(element(reply.view(), "<SP>", "</SP>")));
  }
  counters.bayesian_total_scans.increment();
  if (probability > kDetection) counters.bayesian_detections.increment();
  return probability;
}

// The first threshold counts twice, once as the criterion's whole data and once as its first entry.
void compare(float probability, SlotIndex slot, const CriterionSlot& criterion, FilterMatch& match) {
  const std::string shown = six_decimals(probability);
  double threshold = leading_decimal(criterion.data);
  if (threshold < probability) count_match(slot, match);
  for (int entry = 0; entry < entries_of(criterion); ++entry) {
    threshold = leading_decimal(criterion_entry(criterion, entry));
    if (threshold >= probability) continue;
    count_match(slot, match);
    match.set_match_value(slot, entry, shown);
  }
  match.set_matched_text(slot, "<BFV>" + shown + "</BFV><BFT>" + six_decimals(threshold) + "</BFT>");
}

}  // namespace

void ScanBayesian(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results) {
  const ScannerProvider& provider = scanner_providers().bayesian;
  if (!provider.can_scan()) return;
  std::optional<float> probability;
  for (FilterIndex i = 1; i <= set.filter_count; ++i) {
    const CriterionSlot& criterion = set.filter(i).slots[static_cast<std::size_t>(slot)];
    if (criterion.status == 1) {
      if (!probability) probability = ask_bayesian(provider, request_of_files(message, set));
      compare(*probability, slot, criterion, results.match(i));
    }
    counters.bayesian_total_scans.publish();
    counters.bayesian_detections.publish();
  }
}

}  // namespace pv
