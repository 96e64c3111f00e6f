#include "filters/compiled_filters.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "common/registry_access.h"
#include "filters/evaluation.h"
#include "filters/evaluation_fixture.h"
#include "filters/walks.h"
#include "platform/output_capture.h"

namespace pv {
namespace {

using namespace std::string_view_literals;

class CompiledWalks : public test::Evaluation {
 protected:
  // Both walks over the texts; `what` names the case.
  void expect_same(const std::vector<std::string>& texts, const std::string& what) {
    set.compiled.reset();
    const std::string plain = test::outcome(texts, set, message);
    compile_filters(set);
    ASSERT_EQ(test::outcome(texts, set, message), plain) << what;
    ASSERT_EQ(test::outcome(texts, set, message), plain) << what << ", the second message";
    matched_ += plain.find("</MF-") != std::string::npos ? 1 : 0;
  }

  // The same criterion in every slot that lists are in.
  void add_everywhere(const std::string& data, int entries) {
    FilterDefinition& filter = set.filters.emplace_back();
    for (const ListCriterion& criterion : kListCriteria) {
      filter.slots[static_cast<std::size_t>(criterion.slot)] = {1, data, 1, entries};
    }
    ++set.filter_count;
  }
  void forget_filters() {
    set.filters.clear();
    set.filter_count = 0;
    set.compiled.reset();
    set.patterns.clear();
  }

  int matched_ = 0;  // cases in which anything matched
};

using CompiledWalksConcurrent = CompiledWalks;

struct ShapeCase {
  const char* what;
  std::string data;
  std::vector<std::string> texts;
};

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

TEST_F(CompiledWalks, WalkAsThePlainOnes) {
  const std::string stars = repeated("*a", 1000);
  const ShapeCase kShapes[] = {
      {"at both ends and in the middle", "free\toffer", {"free offer", "an offer of free", "free", "offer\r\n"}},
      {"parts of other words", "free\tfreedom\tdom", {"freedom", "freedom free", "dom freedom", "free dom"}},
      {"only the first occurrence counts", "free", {"freedom is free", "free freedom", "xfree free", "free xfree"}},
      {"delimiters inside words",
       "free offer\tfree  offer\t'x'\ta b a b c",
       {"a free offer", "free  offer", "'x'", "a b a b a b c"}},
      {"delimiters at the ends of words", " free\tfree \t \t  ", {" free", "free ", "free  x", "  ", " ", "x  free"}},
      {"words that are ends of others", "a b c\tb c\tc\tc d", {"a b c", "x b c d", "a b c d", "a b x c"}},
      {"the same word many times", "free\tfree\tFREE\tFree", {"Free", "free free"}},
      {"empty words and none at all", "\t\tfree\t", {"free", ""}},
      {"asterisks in every place",
       "free*\t*free\t*free*\tfr*ee\t*r*e*\t*\tf*r*e",
       {"freedom", "x free", "Xfreex", "fr ee", "freeE"}},
      {"the opposite case as a second chance", "*y*Xab\t*Xab", {"xab y", "y xab", "Xab y", "ab"}},
      {"two adjacent asterisks", "**free**\tfr**ee\t**\ta***b", {"x**FREE**x", "fr**ee", "fr*ee", "**", "a***b"}},
      {"a thousand asterisks", stars + "\t" + stars + "*", {repeated("a", 1500), repeated("ab", 999), "a"}},
      {"words longer than the text",
       repeated("x", 300) + "\t" + repeated("x", 299) + "*",
       {"x", repeated("x", 299), repeated("x", 300)}},
      {"bytes above 127",
       "caf\xE9\t\xC4\xD6\t*\xFF*\t\xE9*",
       {"CAF\xE9", "caf\xC9", "\xE4\xF6", "\xC4\xD6", "x\xFFx", "\xE9x"}},
      {"NULs",
       std::string("a\0b\ta\t*\0*\t\0"sv),
       {std::string("a\0b"sv), std::string("\0a"sv), std::string("x \0"sv), "a"}},
      {"the sender in words",
       "[PV_SENDER]\t*[PV_SENDER]*\t[pv_sender]\tx[PV_SENDER]",
       {"ann@example.org", "<ann@example.org>", "[pv_sender]", "[PV_SENDER]"}},
      {"attachment names",
       "*.exe\ta b\tname",
       {"filename=\"x.exe\"", "name=a.exe; filename=\"a b\"", "filename=\"a", "name=\"a b; filename=x.exe", "name="}},
      {"long tokens that differ in the middle",
       repeated("a", 20) + "1" + repeated("b", 20) + "\t" + repeated("a", 20) + "2" + repeated("b", 20),
       {repeated("a", 20) + "2" + repeated("b", 20)}},
      {"pieces of every length",
       "*a*\t*ab*\t*abc*\t*abcd*\t*abcde*\t*abcdefg*\t*abcdefgh*",
       {"xabcdefgh", "abcde", "bcdefgh", "ABCDEFG"}},
  };
  for (const ShapeCase& c : kShapes) {
    for (const std::uint32_t exact : {0U, 1U}) {
      forget_agent_settings();
      server.set_number(kAgentKey, "Case Sensitivity", exact);
      forget_filters();
      add_everywhere(c.data, 1);
      add_everywhere(c.data, 2);
      expect_same(c.texts, std::string(c.what) + (exact != 0 ? ", exact" : ""));
    }
  }
}

// Texts and words of one small vocabulary, so that they meet in every way.
class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}
  std::size_t below(std::size_t limit) { return random_() % limit; }
  std::string piece() {
    static constexpr std::string_view kPieces[] = {"a",     "b", "ab",     "aa",       "free", "Free",
                                                   "offer", "x", "xyz",    "now",      "cash", "\xE9t\xE9",
                                                   "0",     ".", "winner", "guarantee"};
    return std::string(kPieces[below(std::size(kPieces))]);
  }
  std::string joint() {
    static constexpr std::string_view kJoints[] = {" ", " ", " ", "",  "",     "'",  "\"",   ";",
                                                   "<", ">", ":", "]", "\r\n", "  ", "name="};
    return std::string(kJoints[below(std::size(kJoints))]);
  }
  std::string text(std::size_t pieces) {
    std::string text;
    for (std::size_t i = 0; i < pieces; ++i) text += piece() + joint();
    return text;
  }
  std::string word() {
    std::string word = below(20) == 0 ? "[PV_SENDER]" : "";
    const std::size_t pieces = below(4);
    for (std::size_t i = 0; i <= pieces; ++i)
      word += piece() + (below(3) == 0 ? joint() : "") + (below(6) == 0 ? "*" : "");
    if (below(8) == 0) word.insert(0, "*");
    if (below(40) == 0) word.clear();
    return word;
  }
  std::string list(std::size_t words, char separator) {
    std::string list;
    for (std::size_t i = 0; i < words; ++i) list += word() + separator;
    return list;
  }

 private:
  std::mt19937 random_;
};

TEST_F(CompiledWalks, WalkAsThePlainOnesOverGeneratedTexts) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    Generator generator(seed);
    forget_agent_settings();
    server.set_number(kAgentKey, "Case Sensitivity", seed % 2);
    settings().allow_pattern_caching = seed % 3 == 0 ? 1 : 0;
    forget_filters();
    server.write("conf/FILTERS/PATTERNS/a.txt", generator.list(generator.below(60), '\n'));
    server.write("conf/FILTERS/PATTERNS/b.txt", generator.list(generator.below(60), '\n'));
    if (seed % 4 == 0) server.remove("conf/FILTERS/PATTERNS/b.txt");
    for (const char* name : {"a.txt", "b.txt"}) {
      if (settings().allow_pattern_caching != 0)
        set.patterns.load(server.path(std::string("conf/FILTERS/PATTERNS/") + name), "%s\n");
    }
    for (std::size_t filters = generator.below(12) + 1; filters > 0; --filters) {
      static constexpr std::string_view kValues[] = {"<REFERENCE><FILE>a.txt</FILE>", "<REFERENCE><FILE>b.txt</FILE>",
                                                     ""};
      const std::size_t kind = generator.below(6);
      std::string data(kind < 3 ? kValues[kind] : std::string_view());
      if (kind >= 3) data = generator.list(generator.below(seed % 10 == 0 ? 400 : 12), '\t');
      if (kind == 5) data += std::string(kValues[0]) + "\t" + generator.word();
      add_everywhere(data, static_cast<int>(generator.below(4)) + 1);
    }
    std::vector<std::string> texts;
    texts.reserve(20);
    for (int i = 0; i < 20; ++i) texts.push_back(generator.text(generator.below(i == 0 ? 500 : 25)));
    texts.front().resize(std::min<std::size_t>(texts.front().size(), 2047));
    expect_same(texts, "seed " + std::to_string(seed));
  }
  EXPECT_GT(matched_, 50);
}

TEST_F(CompiledWalks, AnEditOfAWordFileTakesEffectWithTheNextMessage) {
  const char* const kFile = "conf/FILTERS/PATTERNS/offers.txt";
  only(kSubject, "<REFERENCE><FILE>offers.txt</FILE>");
  compile_filters(set);
  const auto counted = [&](std::string_view text) {
    start_message();
    EvaluateWordList(kSubject, text, kWordDelimiters, set, results);
    return count(kSubject);
  };
  EXPECT_EQ(counted("<REFERENCE><FILE>offers.txt</FILE>"), 1) << "a missing file makes the value a word";
  const struct {
    const char* what;
    const char* lines;  // nullptr: no file
    const char* text;
  } kEdits[] = {
      {"made", "free\r\n", "free"},
      {"same size, at once", "gift\r\n", "gift"},
      {"grown", "gift\r\nwin\r\n", "win"},
      {"gone", nullptr, "<REFERENCE><FILE>offers.txt</FILE>"},
      {"back", "win", "win"},
  };
  for (const auto& edit : kEdits) {
    if (edit.lines != nullptr) {
      server.write(kFile, edit.lines);
    } else {
      server.remove(kFile);
    }
    EXPECT_EQ(counted(edit.text), 1) << edit.what;
    EXPECT_EQ(counted("free <REFERENCE>"), std::string_view(edit.text) == "free" ? 1 : 0) << edit.what;
  }
}

TEST_F(CompiledWalks, AMessageInProgressSeesAnEditOnceItHasWaited) {
  server.write("conf/FILTERS/PATTERNS/offers.txt", "free\r\n");
  only(kBody, "<REFERENCE><FILE>offers.txt</FILE>");
  compile_filters(set);
  EvaluateWordList(kBody, "win", kWordDelimiters, set, results);
  server.write("conf/FILTERS/PATTERNS/offers.txt", "win\r\n");
  ++results.moment;
  EvaluateWordList(kBody, "win", kWordDelimiters, set, results);
  EXPECT_EQ(count(kBody), 1);
}

// An edit while others filter: nobody mixes two states of the file, and what begins behind the edit sees it.
TEST_F(CompiledWalksConcurrent, MessagesFollowEditsOfAWordFile) {
  const char* const kFile = "conf/FILTERS/PATTERNS/offers.txt";
  server.write(kFile, "free\r\nboth\r\n");
  only(kBody, "<REFERENCE><FILE>offers.txt</FILE>");
  compile_filters(set);
  const auto matched = [&](std::string_view text) {
    MatchResults own;
    AllocateMatchResults(set, own);
    own.message = &message;
    EvaluateWordList(kBody, text, kWordDelimiters, set, own);
    return own.match(1).match_count[kBody];
  };
  platform::OutputCapture quiet;
  std::atomic<bool> done{false};
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  threads.reserve(3);
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&] {
      while (!done) wrong += matched("free") > 1 || matched("free both") > 2 || matched("other") != 0 ? 1 : 0;
    });
  }
  for (int edit = 0; edit < 60; ++edit) {
    const bool free = edit % 2 != 0;
    server.write(kFile, free ? "free\r\nboth\r\n" : "gift\r\nboth\r\n");
    wrong += matched(free ? "free" : "gift") != 1 || matched(free ? "gift" : "free") != 0 ? 1 : 0;
  }
  done = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

TEST_F(CompiledWalks, FollowTheMessagesConfigurationDirectory) {
  server.write("conf/FILTERS/PATTERNS/a.txt", "free\r\n");
  server.write("other/FILTERS/PATTERNS/a.txt", "win\r\n");
  only(kSubject, "<REFERENCE><FILE>a.txt</FILE>");
  compile_filters(set);
  for (const auto& [directory, word] : {std::pair("conf", "free"), std::pair("other", "win")}) {
    start_message();
    EXPECT_TRUE(message.directories.configuration.assign(server.path(directory)));
    EvaluateWordList(kSubject, word, kWordDelimiters, set, results);
    EXPECT_EQ(count(kSubject), 1) << directory;
  }
}

}  // namespace
}  // namespace pv
