// The same texts evaluated twice: word by word, which is the meaning of a list criterion, and by the compiled words.
#pragma once

#include <string>
#include <vector>

#include "filters/filter_set.h"
#include "filters/match_results.h"

namespace pv::test {

// What evaluating the texts with every list criterion in turn prints and records, as text.
std::string outcome(const std::vector<std::string>& texts, const FilterSet& set, const MessageContext& message);

}  // namespace pv::test
