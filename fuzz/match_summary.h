// The results of one message as text, for comparing two runs, and the limits that hold for any results.
#pragma once

#include <string>

#include "filters/match_results.h"

namespace pv::fuzz {

std::string summary(const MatchResults& results);

void require_within_limits(const FilterSet& set, const MatchResults& results);

}  // namespace pv::fuzz
