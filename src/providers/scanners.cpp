#include "providers/scanners.h"

// Each provider's call goes into its function here. No scanner library is loaded so far, and without one its slot stays
// as it is: no match, and an empty value for decision scripts.

namespace pv {

void ScanBayesian(SlotIndex, const MessageContext&, const FilterSet&, MatchResults&) {}

void ScanSpamAssassin(SlotIndex, const MessageContext&, const FilterSet&, MatchResults&) {}

void ScanDkim(SlotIndex, const MessageContext&, const FilterSet&, MatchResults&) {}

void ScanAntivirus(SlotIndex, const MessageContext&, const FilterSet&, MatchResults&) {}

}  // namespace pv
