#include "filters/word_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/agent_settings.h"
#include "filters/printed_by.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using test::printed_by;
using testing::ElementsAre;

struct ReferenceCase {
  const char* what;
  std::string value;
  const char* postoffice;
  const char* mailbox;
  std::string path;  // empty: no reference
};

TEST(ResolveWordFile, PathByScope) {
  const std::string name254(254, 'n'), long_path(1017, 'p');
  const ReferenceCase kReferences[] = {
      {"empty, any scope", "", "po", "ann", "/c/FILTERS/PATTERNS/MTAFILTER-GENERAL.TXT"},
      {"server", "<REFERENCE><FILE>a.txt</FILE>", "", "", "/c/FILTERS/PATTERNS/a.txt"},
      {"postoffice", "<REFERENCE><FILE>a.txt</FILE>", "po", "", "/c/Postoffices/po/RULES/a.txt"},
      {"mailbox", "<REFERENCE><FILE>a.txt</FILE>", "po", "ann", "/c/Postoffices/po/Mailboxes/ann/RULES/a.txt"},
      {"a path of its own", "<REFERENCE><PATH>/srv</PATH><FILE>a.txt</FILE>", "po", "", "/srv/a.txt"},
      {"the path last, text between", "<REFERENCE> x <FILE>a</FILE> y <PATH>/s</PATH>\n", "", "", "/s/a"},
      {"a name with separators", "<REFERENCE><FILE>x/../a</FILE>", "", "", "/c/FILTERS/PATTERNS/x/../a"},
      {"a path that is not closed", "<REFERENCE><PATH>/srv<FILE>a</FILE>", "", "", "/c/FILTERS/PATTERNS/a"},
      {"lower-case marker", "<reference><FILE>a</FILE>", "", "", ""},
      {"marker not at the start", " <REFERENCE><FILE>a</FILE>", "", "", ""},
      {"no file", "<REFERENCE>free", "", "", ""},
      {"longest name", "<REFERENCE><FILE>" + name254 + "</FILE>", "", "", "/c/FILTERS/PATTERNS/" + name254},
      {"name too long", "<REFERENCE><FILE>n" + name254 + "</FILE>", "", "", ""},
      {"longest path", "<REFERENCE><PATH>" + long_path + "</PATH><FILE>a.txt</FILE>", "", "", long_path + "/a.txt"},
      {"formed path too long", "<REFERENCE><PATH>p" + long_path + "</PATH><FILE>a.txt</FILE>", "", "", ""},
      {"path text too long", "<REFERENCE><PATH>" + std::string(1024, 'p') + "</PATH><FILE></FILE>", "", "", ""},
  };
  for (const ReferenceCase& c : kReferences) {
    FilterSet set;
    copy_bounded(set.postoffice, c.postoffice);
    copy_bounded(set.mailbox, c.mailbox);
    WordFilePath path;
    EXPECT_EQ(ResolveWordFile(set, "/c", c.value, path), !c.path.empty()) << c.what;
    EXPECT_EQ(path.view(), c.path) << c.what;
  }
}

struct LinesCase {
  const char* what;
  std::string bytes;
  std::vector<std::string> lines;
};

TEST(LoadPatternFile, NonEmptyLines) {
  const std::string long_line(100000, 'x');
  const LinesCase kFiles[] = {
      {"empty lines are dropped", "free\r\nwin\r\n\r\n", {"free", "win"}},
      {"a lone carriage return stays", "a\rb\r\n \r\n", {"a\rb", " "}},
      {"a line is cut at its NUL, not the file", std::string("a\0b\n\0c\nd\0", 9), {"a", "d"}},
      {"a NUL before a block's end", std::string("a\0", 2) + long_line + "\nb", {"a", "b"}},
      {"lines of any length", long_line + "\r\n" + long_line + "y", {long_line, long_line + "y"}},
  };
  const test::TemporaryDirectory directory;
  for (const LinesCase& c : kFiles) {
    directory.write("w.txt", c.bytes);
    PatternFile file;
    file.lines = {"left over"};
    LoadPatternFile(directory.path("w.txt"), file);
    EXPECT_EQ(file.lines, c.lines) << c.what;
  }
  for (const char* unreadable : {"", "none.txt"}) {
    PatternFile file;
    LoadPatternFile(directory.path(unreadable), file);
    EXPECT_TRUE(file.lines.empty()) << unreadable;
  }
}

TEST(PatternCache, PathsAreKeptAsSpelt) {
  const test::TemporaryDirectory directory;
  directory.write("w.txt", "free");
  const std::string path = directory.path("w.txt"), other = directory.path("W.TXT");
  PatternCache cache;
  const auto load = [&](const std::string& name) {
    return printed_by([&] { cache.load(name, "Loading %s into pattern cache\n"); });
  };
  EXPECT_EQ(load(path), "Loading " + path + " into pattern cache\n");
  directory.write("w.txt", "changed");
  EXPECT_EQ(load(path), "") << "loaded once";
  EXPECT_THAT(cache.find(path)->lines, ElementsAre("free"));
  EXPECT_EQ(cache.find(other), nullptr);
  load(other);
  EXPECT_EQ(cache.size(), 2u);
}

class WordFileMatch : public testing::Test {
 protected:
  ~WordFileMatch() override { forget_agent_settings(); }
  std::string words(std::string_view bytes) const {
    tree.write("w.txt", bytes);
    return tree.path("w.txt");
  }
  const test::ServerTree tree;
  const WordFileTest test{"Win a FREE car", " ", 1, 2, "MF-W"};
  FilterMatch match;
};

TEST_F(WordFileMatch, EveryMatchingLineCountsAndTheLastOneIsNamed) {
  const std::string path = words("free\r\nlost\r\n\r\nwin\r\n");
  PatternCache cache;
  FilterMatch cached;
  EXPECT_FALSE(MatchWordFileCached(test, cache, path, cached)) << "not loaded";
  cache.load(path, "%s\n");
  EXPECT_EQ(printed_by([&] { EXPECT_TRUE(MatchWordFile(test, path, match)); }),
            "Message General Criteria met against [free] in specified word file.\n"
            "Message General Criteria met against [win] in specified word file.\n");
  EXPECT_EQ(printed_by([&] { EXPECT_TRUE(MatchWordFileCached(test, cache, path, cached)); }),
            "Message Criteria (Tag=MF-W) met against [free] in specified word file.\n"
            "Message Criteria (Tag=MF-W) met against [win] in specified word file.\n");
  for (const FilterMatch* const found : {&match, &cached}) {
    EXPECT_EQ(found->match_count[1], 2);
    EXPECT_EQ(found->matched_text(1), "<MF-W>win</MF-W>");
    EXPECT_EQ(found->match_value(1, 2), "1");
    EXPECT_EQ(found->match_value(1, 1), "");
  }
}

struct CountCase {
  const char* what;
  std::string bytes;
  int count;
};

TEST_F(WordFileMatch, Lines) {
  const CountCase kFiles[] = {
      {"the last line needs no end", "lost\nfree", 1},
      {"NUL ends a line", std::string("free\0 of charge\ncar\n", 20), 2},
      {"a long line goes on as a line of its own", std::string(2047, 'x') + "free\n", 1},
      {"nothing matches", "freedom\r\n\r\n", 0},
  };
  for (const CountCase& c : kFiles) {
    FilterMatch counted;
    printed_by([&] { EXPECT_TRUE(MatchWordFile(test, words(c.bytes), counted)); });
    EXPECT_EQ(counted.match_count[1], c.count) << c.what;
  }
  EXPECT_FALSE(MatchWordFile(test, tree.path("none.txt"), match)) << "missing";
  EXPECT_FALSE(MatchWordFile(test, tree.path("conf"), match)) << "a directory";
}

TEST_F(WordFileMatch, CaseSensitivityIsASetting) {
  tree.set_number(R"(SOFTWARE\Post Vane\Post Vane\Agents\MTA\Filters\MTAFILTER)", "Case Sensitivity", 1);
  const std::string path = words("free\nFREE\nwin\n");
  PatternCache cache;
  FilterMatch cached;
  printed_by([&] {
    cache.load(path, "%s\n");
    EXPECT_TRUE(MatchWordFile(test, path, match));
    EXPECT_TRUE(MatchWordFileCached(test, cache, path, cached));
  });
  EXPECT_EQ(match.match_count[1], 1);
  EXPECT_EQ(cached.match_count[1], 1);
}

}  // namespace
}  // namespace pv
