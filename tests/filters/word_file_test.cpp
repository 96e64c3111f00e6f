#include "filters/word_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/agent_settings.h"
#include "filters/printed_by.h"
#include "support/native_path.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using test::printed_by;
using testing::ElementsAre;

TEST(ResolveWordFile, PathByScope) {
  const std::string name254(254, 'n'), long_path(1017, 'p');
  const struct {
    const char* what;
    std::string value;
    const char* postoffice;
    const char* mailbox;
    std::string path;  // empty: no reference
  } kReferences[] = {
      {"empty, any scope", "", "po", "ann", "/c/FILTERS/PATTERNS/MTAFILTER-GENERAL.TXT"},
      {"server", "<REFERENCE><FILE>a.txt</FILE>", "", "", "/c/FILTERS/PATTERNS/a.txt"},
      {"postoffice", "<REFERENCE><FILE>a.txt</FILE>", "po", "", "/c/Postoffices/po/RULES/a.txt"},
      {"mailbox", "<REFERENCE><FILE>a.txt</FILE>", "po", "ann", "/c/Postoffices/po/Mailboxes/ann/RULES/a.txt"},
      {"a path of its own", "<REFERENCE> x <FILE>a</FILE> y <PATH>/srv</PATH>\n", "po", "", "/srv/a"},
      {"a path that is not closed", "<REFERENCE><PATH>/srv<FILE>a</FILE>", "", "", "/c/FILTERS/PATTERNS/a"},
      {"lower-case marker", "<reference><FILE>a</FILE>", "", "", ""},
      {"marker not at the start", " <REFERENCE><FILE>a</FILE>", "", "", ""},
      {"no file", "<REFERENCE>free", "", "", ""},
      {"longest name", "<REFERENCE><FILE>" + name254 + "</FILE>", "", "", "/c/FILTERS/PATTERNS/" + name254},
      {"name too long", "<REFERENCE><FILE>n" + name254 + "</FILE>", "", "", ""},
      {"longest path", "<REFERENCE><PATH>" + long_path + "</PATH><FILE>a.txt</FILE>", "", "", long_path + "/a.txt"},
      {"formed path too long", "<REFERENCE><PATH>p" + long_path + "</PATH><FILE>a.txt</FILE>", "", "", ""},
  };
  for (const auto& c : kReferences) {
    FilterSet set;
    copy_bounded(set.postoffice, c.postoffice);
    copy_bounded(set.mailbox, c.mailbox);
    WordFilePath path;
    EXPECT_EQ(ResolveWordFile(set, "/c", c.value, path), !c.path.empty()) << c.what;
    EXPECT_EQ(test::native_path(path), test::native_path(c.path)) << c.what;
  }
}

TEST(LoadPatternFile, NonEmptyLines) {
  const std::string long_line(100000, 'x');
  const struct {
    const char* what;
    std::string bytes;
    std::vector<std::string> lines;
  } kFiles[] = {
      {"empty lines are dropped", "free\r\nwin\r\n\r\n", {"free", "win"}},
      {"a lone carriage return stays", "a\rb\r\n \r\n", {"a\rb", " "}},
      {"a line is cut at its NUL, not the file", std::string("a\0b\n\0c\nd\0", 9), {"a", "d"}},
      {"a NUL before a block's end", std::string("a\0", 2) + long_line + "\nb", {"a", "b"}},
      {"lines of any length", long_line + "\r\n" + long_line + "y", {long_line, long_line + "y"}},
  };
  const test::TemporaryDirectory directory;
  for (const auto& c : kFiles) {
    directory.write("w.txt", c.bytes);
    PatternFile file;
    file.lines = {"left over"};
    LoadPatternFile(directory.path("w.txt"), file);
    EXPECT_EQ(file.lines, c.lines) << c.what;
  }
  PatternFile file;
  LoadPatternFile(directory.path(), file);
  EXPECT_TRUE(file.lines.empty()) << "a directory";
}

TEST(PatternCache, AFileIsLoadedOnceForEachSpellingOfItsPath) {
  const test::TemporaryDirectory directory;
  directory.write("w.txt", "free");
  const std::string path = directory.path("w.txt");
  PatternCache cache;
  const auto load = [&] { return printed_by([&] { cache.load(path, "Loading %s\n"); }); };
  EXPECT_EQ(load(), "Loading " + path + "\n");
  directory.write("w.txt", "changed");
  EXPECT_EQ(load(), "");
  EXPECT_THAT(cache.find(path)->lines, ElementsAre("free"));
  EXPECT_EQ(cache.find(directory.path("W.TXT")), nullptr);
}

class WordFileMatch : public testing::Test {
 protected:
  ~WordFileMatch() override { forget_agent_settings(); }
  // How many lines of a file of these bytes match, read from the file and from the cache.
  std::vector<int> counts(std::string_view bytes) const {
    tree.write("w.txt", bytes);
    const std::string path = tree.path("w.txt");
    const WordFileTest test{"Win a FREE car", " ", 1, 2, "MF-W"};
    FilterMatch match, cached;
    printed_by([&] {
      PatternCache cache;
      cache.load(path, "%s\n");
      EXPECT_TRUE(MatchWordFile(test, path, match));
      EXPECT_TRUE(MatchWordFileCached(test, cache, path, cached));
    });
    return {match.match_count[1], cached.match_count[1]};
  }
  const test::ServerTree tree;
};

TEST_F(WordFileMatch, Lines) {
  EXPECT_THAT(counts("lost\nfree"), ElementsAre(1, 1)) << "the last line needs no end";
  EXPECT_THAT(counts(std::string("free\0 of charge\ncar\n", 20)), ElementsAre(2, 2)) << "NUL ends a line";
  EXPECT_THAT(counts(std::string(2047, 'x') + "free\n"), ElementsAre(1, 0)) << "a long line is read in pieces";
  EXPECT_THAT(counts("freedom\r\n\r\n"), ElementsAre(0, 0));
}

TEST_F(WordFileMatch, CaseSensitivityIsASetting) {
  tree.set_number(R"(SOFTWARE\Post Vane\Post Vane\Agents\MTA\Filters\MTAFILTER)", "Case Sensitivity", 1);
  EXPECT_THAT(counts("free\nFREE\nwin\n"), ElementsAre(1, 1));
}

}  // namespace
}  // namespace pv
