// HASVIRUS: whether the message carries a virus, and which; whatever the criterion's data.
#include <optional>
#include <string>

#include "common/output.h"
#include "filters/list_criteria.h"
#include "providers/counters.h"
#include "providers/scanner_criteria.h"
#include "providers/scanner_provider.h"
#include "providers/scanners.h"

namespace pv {
namespace {

using ResultText = PluginText<PV_RESULT_TEXT_SIZE>;

std::int32_t ask_antivirus(const AntivirusProvider& provider, const MessageContext& message, ResultText& text) {
  if (provider.execute == nullptr) return 0;
  // Published before the call, which may take long: the number then includes the message under scan.
  counters.antivirus_total_scans.increment();
  counters.antivirus_total_scans.publish();
  hand_over_output();
  return provider.execute("MTAFILTER", message.message_id.c_str(), message.connector.c_str(), text.buffer());
}

}  // namespace

void ScanAntivirus(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results) {
  const AntivirusProvider& provider = scanner_providers().antivirus;
  if (provider.status != provider_status::kOn) return;
  ResultText text;
  std::optional<std::int32_t> verdict;
  for_each_criterion(slot, set, results, [&](const CriterionSlot& criterion, FilterMatch& match) {
    if (!verdict) verdict = ask_antivirus(provider, message, text);
    if (*verdict == 1) {
      counters.antivirus_detected.increment();
      counters.antivirus_detected.publish();
      count_match(slot, match);
      match.set_matched_text(slot, text.view());
    }
    set_all_match_values(slot, criterion, std::to_string(*verdict), match);
  });
}

}  // namespace pv
