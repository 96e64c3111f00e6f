// The criteria that an external scanner decides. Each asks its provider at most once a message and records the verdict
// for every filter that uses its criterion; while the provider is not loaded it is not asked and the slot stays as it
// is.
#pragma once

#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

void ScanBayesian(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results);
void ScanSpamAssassin(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results);
void ScanDkim(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results);
void ScanAntivirus(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results);

}  // namespace pv
