#include "filters/filter_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/agent_settings.h"
#include "filters/printed_by.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using test::printed_by;
using testing::EndsWith;

class FilterTable : public testing::Test {
 protected:
  FilterTable() { (void)reread_directories(); }
  ~FilterTable() override { forget_agent_settings(); }

  std::string load() {
    return printed_by([this] { LoadFilterSet(set); });
  }

  test::ServerTree tree;
  FilterSet set;
};

TEST_F(FilterTable, Rows) {
  const std::string n64(64, 'n'), d255(255, 'd');
  const struct {
    const char* what;
    std::string row;
    std::string names;
  } kRows[] = {
      {"the line end stays in the last field", "one\t1\tdef\t-\tShown", "one|def|Shown\n"},
      {"any number but 0 enables", "one\t-3x\tdef\t\ts\t", "one|def|s"},
      {"status 0", "one\t0\tdef\t\ts\t", ""},
      {"no tab", "1", ""},
      {"a name as long as its column", n64 + "\t1\t" + n64 + "\t\t" + d255 + "\t", "||" + d255},
      {"NUL ends a row", std::string("one\t1\tde\0f\t\ts\t", 14), "one|de|de"},
      {"UTF-16", std::string("o\0\t\0001\0\t\0d\0", 10), ""},
  };
  for (const auto& c : kRows) {
    tree.write("conf/FILTERS/FILTER.TAB", c.row + "\r\n");
    FilterSet read;
    printed_by([&] { LoadFilterSet(read); });
    std::string names;
    for (const FilterDefinition& filter : read.filters) {
      names.append(filter.name).append("|").append(filter.definition_name).append("|").append(filter.display_name);
    }
    EXPECT_EQ(names, c.names) << c.what;
  }
}

TEST_F(FilterTable, OnlyEnabledRowsCountTowardsTheLimit) {
  std::string table;
  for (int i = 1; i <= 100; ++i) table += "f\t1\td\t\ts\t\noff\t0\td\t\ts\t\n";
  tree.write("conf/FILTERS/FILTER.TAB", table);
  EXPECT_EQ(load(), "Loaded 100 Filters\n");
  tree.write("conf/FILTERS/FILTER.TAB", table + "f\t1\td\t\ts\t\nf\t1\td\t\ts\t\n");
  ResetFilterSet(set);
  EXPECT_EQ(load(), "Too Many Filters Defined\r\nLoaded 100 Filters\n");
  EXPECT_EQ(set.filters.size(), 100u);
}

TEST_F(FilterTable, CriteriaLines) {
  const struct {
    const char* what;
    std::string line;
    int status;
    int minimum;
    std::string data;
  } kLines[] = {
      {"commas become tabs, an enabled slot needs one match", "1\tSUBJECT\tfree,offer\t\t\t0", 1, 1, "free\toffer"},
      {"a disabled slot keeps its minimum", "0\tSUBJECT\tfree,offer\t\t\t0", 0, 0, "free\toffer"},
      {"a negative minimum", "1\t\tx\t\t\t-2\t", 1, 1, "x"},
      {"no tab, in use", "1", 1, 1, ""},
      {"no tab, not in use", "0", 0, 1, ""},
      {"a minimum too long to be taken", "0\t\tx\t\t\t" + std::string(56, '7') + "\t", 0, 1, "x"},
      {"blank", "", 0, 1, ""},
  };
  tree.filters({"a"});
  for (const auto& c : kLines) {
    SCOPED_TRACE(c.what);
    tree.write("conf/FILTERS/CRITERIA/a.TAB", c.line + "\r\n");
    FilterSet read;
    printed_by([&] { LoadFilterSet(read); });
    const CriterionSlot& slot = read.filter(1).slots[0];
    EXPECT_EQ(slot.status, c.status);
    EXPECT_EQ(slot.data, c.data);
    EXPECT_EQ(slot.minimum_matches, c.minimum);
    EXPECT_EQ(slot.entry_count, 1);
  }
}

TEST_F(FilterTable, CriteriaTableEndsAtTheLastSlot) {
  tree.filters({"a", "b", "c"});
  std::string thirty;
  for (int i = 0; i < 30; ++i) thirty += "1\t\tw" + std::to_string(i) + "\t\t\t1\t\n";
  tree.write("conf/FILTERS/CRITERIA/a.TAB", thirty);
  tree.write("conf/FILTERS/CRITERIA/b.TAB",
             std::string(2047, ' ') + "1\t\tpiece\t\t\t1\t\n" + std::string(1 << 20, '1'));
  tree.make_directory("conf/FILTERS/CRITERIA/c.TAB");
  EXPECT_EQ(load(), "Loaded 3 Filters\n");
  EXPECT_EQ(set.filter(1).slots[24].data, "w24");
  EXPECT_EQ(set.filter(2).slots[0].status, 0) << "the first piece of a long line is a line";
  EXPECT_EQ(set.filter(2).slots[1].data, "piece");
  for (const CriterionSlot& slot : set.filter(3).slots) EXPECT_EQ(slot.entry_count, 0);
}

TEST_F(FilterTable, EachScopeHasItsDirectory) {
  const struct {
    std::string rules;
    const char* postoffice;
    const char* mailbox;
    bool takes_script;
  } kScopes[] = {
      {"conf/FILTERS/", "", "", true},
      {"conf/Postoffices/po/RULES/", "po", "", true},
      {"conf/Postoffices/po/Mailboxes/ann/RULES/", "po", "ann", false},
  };
  const std::string script = "x [PV_SUBJECT],\"from script\")\r\n";
  for (const auto& c : kScopes) {
    SCOPED_TRACE(c.rules);
    tree.remove("conf");
    tree.write(c.rules + "FILTER.TAB", "n\t1\tdef\t\ts\t\r\n");
    tree.write(c.rules + "CRITERIA/def.TAB", "1\t\tfrom table\t\t\t1\t\r\n");
    tree.write(c.rules + "CRITERIA/def.PVS", script + '\0' + "after a NUL");
    FilterSet read;
    copy_bounded(read.postoffice, c.postoffice);
    copy_bounded(read.mailbox, c.mailbox);
    printed_by([&] { LoadFilterSet(read); });
    EXPECT_EQ(read.filter(1).is_script, c.takes_script);
    EXPECT_EQ(read.has_script_filters, c.takes_script);
    EXPECT_EQ(read.filter(1).script_text, c.takes_script ? script : "");
    EXPECT_EQ(read.filter(1).slots[0].data, c.takes_script ? "from script" : "from table");
  }
}

TEST_F(FilterTable, WhatCannotBeReadIsEmpty) {
  EXPECT_EQ(load(), "Loaded 0 Filters\n") << "no table";
  tree.filters({"dir", "big"});
  tree.make_directory("conf/FILTERS/CRITERIA/dir.PVS");
  tree.write("conf/FILTERS/CRITERIA/big.PVS", std::string(kLargestScript + 1, 'x'));
  load();
  for (const FilterIndex i : {1, 2}) {
    EXPECT_TRUE(set.filter(i).is_script);
    EXPECT_EQ(set.filter(i).script_text, "");
  }
}

TEST_F(FilterTable, WordFilesAreCachedForEnabledCriteriaOnly) {
  tree.filters({"a", "a"});
  tree.write("conf/FILTERS/PATTERNS/w.txt", "free\r\n\r\nwin");
  tree.write("conf/FILTERS/CRITERIA/a.TAB",
             "1\t\t<REFERENCE><FILE>w.txt</FILE>\t\t\t1\t\n0\t\t<REFERENCE><FILE>off.txt</FILE>\t\t\t1\t\n"
             "1\t\t\t\t\t1\t\n");
  EXPECT_EQ(load(), "Loaded 2 Filters\n") << "caching is off";
  settings().allow_pattern_caching = 1;
  ResetFilterSet(set);
  const std::string words = tree.path("conf/FILTERS/PATTERNS/w.txt");
  EXPECT_EQ(load(), "Loading " + words + " into pattern cache from simple filter\nLoaded 2 Filters\n");
  ASSERT_NE(set.patterns.find(words), nullptr);
  EXPECT_THAT(set.patterns.find(words)->lines, testing::ElementsAre("free", "win"));
}

TEST_F(FilterTable, ReleaseNamesEveryFilterAndALoadStartsAnew) {
  tree.filters({"a", "b"});
  tree.write("conf/FILTERS/CRITERIA/a.PVS", "[PV_BODY],\"<REFERENCE><FILE>w.txt</FILE>\"");
  settings().allow_pattern_caching = 1;
  load();
  EXPECT_EQ(printed_by([this] { ReleaseFilterSet(set); }),
            "Releasing 2 Filters\nReleasing Filter 1\nReleasing Filter 2\n");
  EXPECT_TRUE(set.filters.empty());
  EXPECT_EQ(set.patterns.size(), 0u);
  tree.filters({"c"});
  ResetFilterSet(set);
  EXPECT_FALSE(set.has_script_filters);
  EXPECT_THAT(load(), EndsWith("Loaded 1 Filters\n"));
  EXPECT_EQ(set.filter(1).definition_name.view(), "c");
}

}  // namespace
}  // namespace pv
