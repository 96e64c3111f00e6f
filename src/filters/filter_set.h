// The loaded filters of one scope: the server, a postoffice or a mailbox.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/bounded_text.h"
#include "filters/limits.h"
#include "filters/pattern_cache.h"

namespace pv {

using FilterIndex = int;  // 1-based position of a filter in its set
using SlotIndex = int;    // 0-based criterion type (filters/criteria_keywords.h)

// One criterion of a filter.
struct CriterionSlot {
  std::int32_t status = 0;           // 1: in use; anything else: ignored by evaluators and decision
  std::string data;                  // the values, separated by tabs
  std::int32_t minimum_matches = 0;  // table filters: the match count from which the criterion is met
  std::int32_t entry_count = 0;      // values with a match value of their own: 1 in a table, the tokens in a script
};

// One row of a filter table, with its criteria.
struct FilterDefinition {
  std::array<CriterionSlot, kSlotCount> slots;
  BoundedText<64> name;
  BoundedText<64> definition_name;  // names the criteria file and the action table
  BoundedText<256> display_name;    // as reports show it
  bool is_script = false;           // decided by a script instead of the minimum counts
  std::string script_text;
};

class CompiledFilters;  // filters/compiled_filters.h

// What administrators define filters for.
enum class Scope { kSystem, kPostoffice, kMailbox };

// The filters of one scope, in table order. Once loaded it is immutable and shared by the messages that began with it;
// a reload makes a new one.
struct FilterSet {
  std::vector<FilterDefinition> filters;
  BoundedText<128> postoffice;  // empty: the server's filters
  BoundedText<128> mailbox;     // with a postoffice: that mailbox's filters
  std::int32_t filter_count = 0;
  bool has_script_filters = false;
  PatternCache patterns;  // the word files of the criteria, when "Allow Pattern Caching" is on

  // Made of the above when the set is loaded; without it the evaluators walk through the words one by one.
  std::shared_ptr<const CompiledFilters> compiled;

  FilterDefinition& filter(FilterIndex index) { return filters[static_cast<std::size_t>(index - 1)]; }
  const FilterDefinition& filter(FilterIndex index) const { return filters[static_cast<std::size_t>(index - 1)]; }
  Scope scope() const {
    if (postoffice.empty()) return Scope::kSystem;
    return mailbox.empty() ? Scope::kPostoffice : Scope::kMailbox;
  }
};

}  // namespace pv
