// The criteria that an external scanner decides. Each asks its provider at most once a message and records the verdict
// for every filter that uses its criterion. While a Bayesian, SpamAssassin or antivirus provider is switched off the
// slot stays as it is; a DKIM provider that cannot be asked leaves the verdict open.
//
// Failure policy: whatever a provider answers is an answer, garbage too. An exception of a provider travels on: it ends
// the message's filtering before any action ran, and the message stays as it was.
#pragma once

#include <cstdint>
#include <string_view>

#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

void ScanBayesian(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results);
void ScanSpamAssassin(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results);
void ScanDkim(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results);
void ScanAntivirus(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results);

// The verdict that a DKIM criterion's text names: 0 for "FAIL", 1 for "PASS", 2 for "INDETERMINATE", in any case, else
// the number it begins with.
std::int32_t dkim_verdict_from_text(std::string_view text);

}  // namespace pv
