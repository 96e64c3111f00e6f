// The compiled words against the walk word by word. The first byte of the input says how they are compared and where
// they stand; behind it come a text, up to a NUL, and the data of one filter a line.
#include <cstddef>
#include <string>
#include <string_view>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "filters/compiled_filters.h"
#include "filters/evaluate_criterion.h"
#include "fuzz_target.h"
#include "match_summary.h"

namespace pv::fuzz {
namespace {

constexpr std::size_t kMostFilters = 20;
constexpr std::size_t kMostText = 2047;  // bytes, as of a line

struct Choices {
  explicit Choices(unsigned char byte)
      : exact((byte & 1) != 0), entries((byte >> 1 & 1) + 1), in_file((byte & 4) != 0), cached((byte & 8) != 0) {}
  bool exact;
  int entries;
  bool in_file;  // the first filter names a word file, with the lines of all
  bool cached;
};

void add_filter(std::string_view data, int entries, FilterSet& set) {
  FilterDefinition& filter = set.filters.emplace_back();
  for (const ListCriterion& criterion : kListCriteria) {
    filter.slots[static_cast<std::size_t>(criterion.slot)] = {1, std::string(data), 1, entries};
  }
  ++set.filter_count;
}

FilterSet filters_of(std::string_view lines, const Choices& choices) {
  FilterSet set;
  if (choices.in_file) {
    server().write("conf/FILTERS/PATTERNS/w", lines);
    if (choices.cached) set.patterns.load(server().path("conf/FILTERS/PATTERNS/w"), "%s\n");
    add_filter("<REFERENCE><FILE>w</FILE>", 1, set);
  }
  while (!lines.empty() && set.filters.size() < kMostFilters) {
    add_filter(take_until('\n', lines), choices.entries, set);
  }
  return set;
}

std::string found_in(std::string_view text, const FilterSet& set) {
  const MessageContext message = queued_message();
  MatchResults results;
  AllocateMatchResults(set, results);
  results.message = &message;
  for (const ListCriterion& criterion : kListCriteria) test::evaluate(criterion, text, set, results);
  return summary(results);
}

void run(std::string_view input) {
  if (input.empty()) return;
  const Choices choices(static_cast<unsigned char>(input.front()));
  input.remove_prefix(1);
  const std::string_view text = take_until('\0', input).substr(0, kMostText);
  forget_agent_settings();
  server().set_number(kAgentKey, "Case Sensitivity", choices.exact ? 1 : 0);
  settings().allow_pattern_caching = choices.cached ? 1 : 0;
  FilterSet set = filters_of(input, choices);
  const std::string walked = found_in(text, set);
  compile_filters(set);
  require(found_in(text, set) == walked, "compiled words find what the walk finds");
  require(found_in(text, set) == walked, "and again");
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
