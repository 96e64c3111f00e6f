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

  // Slot 0 of a system filter whose criteria table holds `bytes`.
  CriterionSlot slot_read_from(std::string_view bytes) {
    tree.filters({"a"});
    tree.write("conf/FILTERS/CRITERIA/a.TAB", bytes);
    FilterSet read;
    printed_by([&] { LoadFilterSet(read); });
    return read.filter(1).slots[0];
  }

  test::ServerTree tree;
  FilterSet set;
};

struct RowCase {
  const char* what;
  std::string row;
  int filters;
  std::string name, definition_name, display_name;
};

TEST_F(FilterTable, Rows) {
  const std::string n64(64, 'n'), d255(255, 'd');
  const RowCase kRows[] = {
      {"the line end stays in the last field", "one\t1\tdef\t-\tShown", 1, "one", "def", "Shown\n"},
      {"a short row shows its last field", "one\t1\tdef", 1, "one", "def\n", "def\n"},
      {"any number but 0 enables", "one\t-3x\tdef\t\ts\t", 1, "one", "def", "s"},
      {"status 0", "one\t0\tdef\t\ts\t", 0, "", "", ""},
      {"no number", "one\tyes\tdef\t\ts\t", 0, "", "", ""},
      {"no tab", "1", 0, "", "", ""},
      {"a name as long as its column", n64 + "\t1\t" + n64 + "\t\t" + d255 + "\t", 1, "", "", d255},
      {"NUL ends a row", std::string("one\t1\tde\0f\t\ts\t", 14), 1, "one", "de", "de"},
      {"UTF-16", std::string("o\0\t\0001\0\t\0d\0", 10), 0, "", "", ""},
  };
  for (const RowCase& c : kRows) {
    SCOPED_TRACE(c.what);
    tree.write("conf/FILTERS/FILTER.TAB", c.row + "\r\n");
    FilterSet read;
    EXPECT_EQ(printed_by([&] { LoadFilterSet(read); }), "Loaded " + std::to_string(c.filters) + " Filters\n");
    ASSERT_EQ(read.filters.size(), static_cast<std::size_t>(c.filters));
    if (c.filters == 0) continue;
    EXPECT_EQ(read.filter(1).name.view(), c.name);
    EXPECT_EQ(read.filter(1).definition_name.view(), c.definition_name);
    EXPECT_EQ(read.filter(1).display_name.view(), c.display_name);
  }
}

TEST_F(FilterTable, OnlyEnabledRowsCountTowardsTheLimit) {
  std::string table;
  for (int i = 1; i <= 100; ++i) table += "f" + std::to_string(i) + "\t1\td\t\ts\t\noff\t0\td\t\ts\t\n";
  tree.write("conf/FILTERS/FILTER.TAB", table);
  EXPECT_EQ(load(), "Loaded 100 Filters\n");
  tree.write("conf/FILTERS/FILTER.TAB", table + "f101\t1\td\t\ts\t\nf102\t1\td\t\ts\t\n");
  ResetFilterSet(set);
  EXPECT_EQ(load(), "Too Many Filters Defined\r\nLoaded 100 Filters\n");
  EXPECT_EQ(set.filters.size(), 100u);
  EXPECT_EQ(set.filter(100).name.view(), "f100");
}

struct CriteriaCase {
  const char* what;
  std::string line;
  int status;
  int minimum;
  std::string data;
};

TEST_F(FilterTable, CriteriaLines) {
  const CriteriaCase kLines[] = {
      {"commas become tabs, an enabled slot needs one match", "1\tSUBJECT\tfree,offer\t\t\t0", 1, 1, "free\toffer"},
      {"a disabled slot keeps its minimum", "0\tSUBJECT\tfree,offer\t\t\t0", 0, 0, "free\toffer"},
      {"a minimum of its own", "1\t\tx\t\t\t3\t", 1, 3, "x"},
      {"a negative minimum", "1\t\tx\t\t\t-2\t", 1, 1, "x"},
      {"no tab, in use", "1", 1, 1, ""},
      {"no tab, not in use", "0", 0, 1, ""},
      {"a minimum too long to be taken", "0\t\tx\t\t\t" + std::string(56, '7') + "\t", 0, 1, "x"},
      {"the last field is the minimum of a short line", "0\t\t5", 0, 5, "5\n"},
      {"a status too long to be taken", std::string(56, '1') + "\t\tx\t\t\t4\t", 0, 4, "x"},
      {"blank", "", 0, 1, ""},
  };
  for (const CriteriaCase& c : kLines) {
    SCOPED_TRACE(c.what);
    const CriterionSlot slot = slot_read_from(c.line + "\r\n");
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

struct ScopeCase {
  const char* what;
  const char* rules;
  const char* postoffice;
  const char* mailbox;
  bool takes_script;
};

TEST_F(FilterTable, EachScopeHasItsDirectory) {
  constexpr ScopeCase kScopes[] = {
      {"server", "conf/FILTERS/", "", "", true},
      {"postoffice", "conf/Postoffices/po/RULES/", "po", "", true},
      {"mailbox", "conf/Postoffices/po/Mailboxes/ann/RULES/", "po", "ann", false},
  };
  const std::string script = "x [PV_SUBJECT],\"from script\")\r\n";
  for (const ScopeCase& c : kScopes) {
    SCOPED_TRACE(c.what);
    const std::string rules = c.rules;
    tree.remove("conf");
    tree.write(rules + "FILTER.TAB", "n\t1\tdef\t\ts\t\r\n");
    tree.write(rules + "CRITERIA/def.TAB", "1\t\tfrom table\t\t\t1\t\r\n");
    tree.write(rules + "CRITERIA/def.PVS", script + '\0' + "after a NUL");
    FilterSet read;
    copy_bounded(read.postoffice, c.postoffice);
    copy_bounded(read.mailbox, c.mailbox);
    printed_by([&] { LoadFilterSet(read); });
    ASSERT_EQ(read.filter_count, 1);
    EXPECT_EQ(read.filter(1).is_script, c.takes_script);
    EXPECT_EQ(read.has_script_filters, c.takes_script);
    EXPECT_EQ(read.filter(1).script_text, c.takes_script ? script : "");
    EXPECT_EQ(read.filter(1).slots[0].data, c.takes_script ? "from script" : "from table");
    EXPECT_EQ(read.filter(1).slots[0].minimum_matches, c.takes_script ? 0 : 1);
  }
}

TEST_F(FilterTable, ScriptThatCannotBeReadIsEmpty) {
  tree.filters({"dir", "big"});
  tree.make_directory("conf/FILTERS/CRITERIA/dir.PVS");
  tree.write("conf/FILTERS/CRITERIA/big.PVS", std::string(kLargestScript + 1, 'x'));
  load();
  for (FilterIndex i = 1; i <= 2; ++i) {
    EXPECT_TRUE(set.filter(i).is_script);
    EXPECT_EQ(set.filter(i).script_text, "");
  }
}

TEST_F(FilterTable, MissingTableIsAnEmptySet) {
  EXPECT_EQ(load(), "Loaded 0 Filters\n");
  tree.make_directory("conf/FILTERS/FILTER.TAB");
  EXPECT_EQ(load(), "Loaded 0 Filters\n");
}

TEST_F(FilterTable, WordFilesAreCachedForEnabledCriteriaOnly) {
  tree.filters({"a", "a"});
  tree.write("conf/FILTERS/PATTERNS/w.txt", "free\r\n\r\nwin");
  tree.write("conf/FILTERS/CRITERIA/a.TAB",
             "1\t\t<REFERENCE><FILE>w.txt</FILE>\t\t\t1\t\n0\t\t<REFERENCE><FILE>off.txt</FILE>\t\t\t1\t\n"
             "1\t\t\t\t\t1\t\n1\t\t<REFERENCE><FILE>none.txt</FILE>\t\t\t1\t\n");
  EXPECT_EQ(load(), "Loaded 2 Filters\n") << "caching is off";
  EXPECT_EQ(set.patterns.size(), 0u);

  settings().allow_pattern_caching = 1;
  ResetFilterSet(set);
  const std::string words = tree.path("conf/FILTERS/PATTERNS/w.txt"),
                    none = tree.path("conf/FILTERS/PATTERNS/none.txt");
  EXPECT_EQ(load(), "Loading " + words + " into pattern cache from simple filter\nLoading " + none +
                        " into pattern cache from simple filter\nLoaded 2 Filters\n");
  ASSERT_NE(set.patterns.find(words), nullptr);
  EXPECT_THAT(set.patterns.find(words)->lines, testing::ElementsAre("free", "win"));
  ASSERT_NE(set.patterns.find(none), nullptr);
  EXPECT_TRUE(set.patterns.find(none)->lines.empty());
}

TEST_F(FilterTable, ReleaseNamesEveryFilterAndALoadStartsAnew) {
  tree.filters({"a", "b"});
  tree.write("conf/FILTERS/CRITERIA/a.PVS", "[PV_BODY],\"<REFERENCE><FILE>w.txt</FILE>\"");
  settings().allow_pattern_caching = 1;
  load();
  EXPECT_EQ(set.patterns.size(), 1u);
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
