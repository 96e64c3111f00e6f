#include "filters/script_tokens.h"

#include <gtest/gtest.h>

#include <string>

#include "common/agent_settings.h"
#include "filters/criteria_keywords.h"
#include "filters/printed_by.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using test::printed_by;

// The second of two filters, as a script filter's text fills it.
struct ScriptTokens : testing::Test {
  std::string parse(std::string_view script) {
    set = FilterSet();
    set.filters.resize(2);
    set.filter_count = 2;
    return printed_by([&] { ParseScriptFilter(set, script); });
  }
  const CriterionSlot& slot(Slot number) const { return set.filters[1].slots[static_cast<std::size_t>(number)]; }

  FilterSet set;
};

TEST_F(ScriptTokens, Conditions) {
  const struct {
    const char* what;
    std::string script;
    int entries;
    std::string data;
  } kTokens[] = {
      {"no token at all", "If PV_SUBJECT] Then [PV_", 0, ""},
      {"white space around the comma", "f([PV_SUBJECT] \r\n\t, \t\r\n\"free\")", 1, "free"},
      {"a blank after the comma belongs to the text", "f([PV_SUBJECT], free)", 1, " free"},
      {"a blank before the comma shifts the text", "f([PV_SUBJECT] ,free)", 1, ",free"},
      {"letter case of the name", "[PV_subject],\"a\" [PV_Subject]", 2, "a\t\r"},
      {"letter case of the mark", "[pv_SUBJECT]", 0, ""},
      {"an unknown name takes its condition along", "[PV_X],\"[PV_SUBJECT]\"", 0, ""},
      {"a token inside a condition", "f([PV_BODY],[PV_SUBJECT])", 0, ""},
      {"no closing quote ends the parsing", "[PV_SUBJECT],\"free [PV_SUBJECT]", 1, ""},
      {"no closing bracket ends the parsing", "[PV_SUBJECT],free [PV_SUBJECT]", 1, ""},
      {"an empty first entry is not separated", "[PV_SUBJECT],\"\" [PV_SUBJECT],\"b\"", 2, "b"},
      {"a name of 1024 characters", "[PV_" + std::string(1024, 'x') + "],\"a [PV_SUBJECT] b\"", 1, "\r"},
      {"a name of 1023 characters", "[PV_" + std::string(1023, 'x') + "],\"a [PV_SUBJECT] b\"", 0, ""},
      {"NUL ends the script", std::string("[PV_SUBJECT]\0[PV_SUBJECT]", 25), 1, "\r"},
  };
  for (const auto& c : kTokens) {
    SCOPED_TRACE(c.what);
    parse(c.script);
    EXPECT_EQ(slot(kSubject).entry_count, c.entries);
    EXPECT_EQ(slot(kSubject).status, c.entries > 0 ? 1 : 0);
    EXPECT_EQ(slot(kSubject).data, c.data);
    EXPECT_EQ(set.filters[0].slots[0].entry_count, 0) << "only the last filter is filled";
  }
}

TEST_F(ScriptTokens, SixteenEntriesAreCounted) {
  std::string script, printed, data;
  for (int i = 1; i <= kMaxEntries + 1; ++i) {
    script += "f([PV_BODY],w) ";
    if (i > kMaxEntries) continue;
    printed += "Setting Critieria:1:w\n";
    data += i > 1 ? "\tw" : "w";
  }
  EXPECT_EQ(parse(script + "[PV_SIZE]"), printed + "Setting Critieria:7:\r\n");
  EXPECT_EQ(slot(kBody).data, data);
}

TEST_F(ScriptTokens, HostileScriptsOfAMegabyteEnd) {
  for (const std::string_view unit : {"[PV_", "[PV_SUBJECT]", "[PV_X] ,)", "[PV_]\""}) {
    std::string script;
    while (script.size() < (1u << 20)) script += unit;
    parse(script);
    EXPECT_EQ(slot(kSubject).entry_count, unit == "[PV_SUBJECT]" ? kMaxEntries : 0) << unit;
  }
}

TEST_F(ScriptTokens, ReferencedWordFilesAreCachedOnce) {
  const test::ServerTree tree;
  (void)reread_directories();
  settings().allow_pattern_caching = 1;
  const std::string path = tree.path("conf/FILTERS/PATTERNS/w.txt");
  const std::string entry = "Setting Critieria:0:<REFERENCE><FILE>w.txt</FILE>\n";
  const std::string token = "[PV_SUBJECT],\"<REFERENCE><FILE>w.txt</FILE>\" ";
  EXPECT_EQ(parse(token + token), entry + "Loading " + path + " into pattern cache\n" + entry);
  EXPECT_EQ(set.patterns.size(), 1u);
  forget_agent_settings();
}

}  // namespace
}  // namespace pv
