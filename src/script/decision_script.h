// Filters decided by a script.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/bounded_text.h"
#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

// Runs the decision script of one filter and returns its verdict: 1 fires the filter, anything else does not, and 0
// also stands for a script that could not be run. `result_text` receives the script's result text with a verdict other
// than 0.
std::int32_t RunDecisionScript(const MessageContext& message, const FilterSet& set, FilterIndex filter,
                               const MatchResults& results, BoundedText<1024>& result_text);

// The program that a filter's script becomes once its tokens are replaced: the script is the body of a function. Its
// first line is line kScriptStartsAfter + 1 of the program.
std::string decision_program(std::string_view script);
inline constexpr int kScriptStartsAfter = 10;

}  // namespace pv
