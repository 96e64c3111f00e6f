// Filters made by hand and the results of one message, for the tests of the evaluators.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "common/agent_settings.h"
#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "support/server_tree.h"

namespace pv::test {

class Evaluation : public testing::Test {
 protected:
  Evaluation() {
    forget_agent_settings();
    start_message();
    EXPECT_TRUE(message.envelope.sender.assign("[SMTP:ann@example.org]"));
    EXPECT_TRUE(message.directories.configuration.assign(server.path("conf")));
  }
  ~Evaluation() override { forget_agent_settings(); }

  // Adds a filter with one slot in use. The values are written with tabs, as a loaded set holds them.
  void add(SlotIndex slot, std::string_view data, int entry_count = 1, int status = 1) {
    CriterionSlot& criterion = set.filters.emplace_back().slots[static_cast<std::size_t>(slot)];
    criterion.data = data;
    criterion.entry_count = entry_count;
    criterion.status = status;
    ++set.filter_count;
    start_message();
  }
  void only(SlotIndex slot, std::string_view data, int entry_count = 1, int status = 1) {
    set.filters.clear();
    set.filter_count = 0;
    add(slot, data, entry_count, status);
  }

  // Forgets what was found.
  void start_message() {
    results = MatchResults();
    results.filter_count = set.filter_count;
    results.matches.resize(static_cast<std::size_t>(set.filter_count));
    results.message = &message;
  }

  int count(SlotIndex slot, FilterIndex filter = 1) const {
    return results.match(filter).match_count[static_cast<std::size_t>(slot)];
  }
  std::string matched(SlotIndex slot) const { return std::string(results.match(1).matched_text(slot)); }
  // A filter's count, matched text, and the match values of the first two entries in brackets.
  std::string found(SlotIndex slot, FilterIndex filter = 1) const {
    const FilterMatch& match = results.match(filter);
    std::string all = std::to_string(count(slot, filter)).append(match.matched_text(slot));
    for (const int entry : {0, 1}) all.append("[").append(match.match_value(slot, entry)).append("]");
    return all;
  }

  ServerTree server;
  MessageContext message;
  FilterSet set;
  MatchResults results;
};

}  // namespace pv::test
