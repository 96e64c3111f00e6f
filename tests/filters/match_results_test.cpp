#include "filters/match_results.h"

#include <gtest/gtest.h>

#include <string>

#include "filters/printed_by.h"

namespace pv {
namespace {

using test::printed_by;

TEST(MatchResults, OneEmptyRecordPerFilter) {
  FilterSet set;
  set.filters.resize(3);
  set.filter_count = 3;
  MatchResults results;
  EXPECT_EQ(printed_by([&] { AllocateMatchResults(set, results); }), "Allocating 3 Results\n");
  results.match(3).match_count[24] = 7;
  results.match(3).set_match_value(24, 15, "1");
  EXPECT_EQ(printed_by([&] { ReleaseMatchResults(results); }), "Releasing 3 Results\n");
  printed_by([&] { AllocateMatchResults(set, results); });
  ASSERT_EQ(results.matches.size(), 3u);
  EXPECT_EQ(results.match(3).match_count[24], 0) << "nothing is left of the message before";
  EXPECT_EQ(results.match(3).match_value(24, 15), "");
  EXPECT_EQ(results.match(3).matched_text(24), "");
}

TEST(FilterMatch, TaggedTextIsCut) {
  const std::string fits(1010, 'x');  // 13 bytes of tags
  FilterMatch match;
  match.set_matched_text(3, "MF-W", fits);
  EXPECT_EQ(match.matched_text(3), "<MF-W>" + fits + "</MF-W>");
  match.set_matched_text(3, "MF-W", fits + "y");
  EXPECT_EQ(match.matched_text(3), "<MF-W>" + fits + "y</MF-W");
  match.set_matched_text(3, std::string(1024, 'z'));
  EXPECT_EQ(match.matched_text(3), std::string(1023, 'z'));
  match.set_matched_text(3, "");
  EXPECT_EQ(match.matched_text(3), "");
}

TEST(FilterMatch, ValuesOfSixteenEntries) {
  FilterMatch match;
  match.set_match_value(7, 3, "0123456789abcdef");
  match.set_match_value(7, 15, "last");
  EXPECT_EQ(match.match_value(7, 3), "0123456789abcde") << "cut, and kept when the entries grow";
  EXPECT_EQ(match.match_value(7, 15), "last");
  for (const int outside : {-1, 16}) {
    match.set_match_value(7, outside, "x");
    EXPECT_EQ(match.match_value(7, outside), "") << outside;
  }
}

}  // namespace
}  // namespace pv
