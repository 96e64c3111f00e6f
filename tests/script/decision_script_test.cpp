#include "script/decision_script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/agent_settings.h"
#include "filters/criteria_keywords.h"
#include "filters/script_tokens.h"
#include "platform/com.h"
#include "script/fake_script_control.h"

namespace pv {
namespace {

using test::FakeScriptControls;
using test::FakeScripting;

constexpr char kPrologue[] =
    "Dim PVResultData\r\nPVResultData = \"SCRIPT\"\r\nFunction PV_GetResultData()\r\nPV_GetResultData=PVResultData\r\n"
    "End Function\r\nFunction CriteriaMet(Value,Condition)\r\n\tCriteriaMet=(Value<>0)\r\nEnd Function\r\n"
    "Function PV_Execute\r\n\tFilterResult=0\r\n";
constexpr char kEpilogue[] = "\r\nPV_Execute = FilterResult\r\nEnd Function\r\n";

// A set of one script filter, and a message that met nothing yet.
struct Case {
  explicit Case(std::string script) {
    set.filters.emplace_back();
    set.filter_count = 1;
    set.filter(1).is_script = true;
    set.filter(1).script_text = std::move(script);
    testing::internal::CaptureStdout();
    ParseScriptFilter(set, set.filter(1).script_text);
    testing::internal::GetCapturedStdout();
    AllocateMatchResults(set, results);
    envelope.client_ip.cut("10.0.0.1");
    envelope.account.cut("example");
    envelope.sender.cut("[SMTP:a@b.c]");
    envelope.recipients = "[SMTP:d@e.f];[SMTP:g@h.i]";
    envelope.subject.cut("Hello");
  }

  std::int32_t run() {
    testing::internal::CaptureStdout();
    const std::int32_t verdict = RunDecisionScript(message, set, 1, results, result_text);
    output = testing::internal::GetCapturedStdout();
    return verdict;
  }

  FilterSet set;
  MatchResults results;
  MessageContext message;
  Envelope& envelope = message.envelope;
  BoundedText<1024> result_text;
  std::string output;
};

// The script between prologue and epilogue, as the host received it.
std::string generated(Case& filter) {
  FakeScripting scripting;
  const FakeScriptControls controls(scripting);
  filter.run();
  const std::string program = scripting.calls.at(2).substr(std::string("AddCode ").size());
  EXPECT_EQ(program.rfind(kPrologue, 0), 0U);
  EXPECT_EQ(program.substr(program.size() - (sizeof kEpilogue - 1)), kEpilogue);
  return program.substr(sizeof kPrologue - 1, program.size() - (sizeof kPrologue - 1) - (sizeof kEpilogue - 1));
}

struct EnvelopeCase {
  const char* what;
  const char* script;
  const char* sender;
  const char* subject;
  const char* generated;
};

TEST(DecisionScript, EnvelopeTokensAreReplacedInTheirOrder) {
  constexpr EnvelopeCase kCases[] = {
      {"every token, every time", "%IPADDRESS% %IPADDRESS% %POSTOFFICE% %RECIPIENTS%", "", "",
       "10.0.0.1 10.0.0.1 example [SMTP:d@e.f];[SMTP:g@h.i]"},
      {"the stored sender and the bare one", "%SENDER%,%SENDERADDRESS%", "[SMTP:a@b.c]", "", "[SMTP:a@b.c],a@b.c"},
      {"a sender without a colon", "%SENDERADDRESS%", "a@b.c", "", "a@b.c"},
      {"a sender that ends in its colon", "<%SENDERADDRESS%>", "SMTP:", "", "<>"},
      {"only the subject's quotes are doubled", "\"%SUBJECT%\" %SENDER%", "a\"b", "say \"hi\"",
       "\"say \"\"hi\"\"\" a\"b"},
      {"an inserted value is not searched for its own token", "%SENDER%", "x%SENDER%y", "", "x%SENDER%y"},
      {"a later token in a value is replaced in its turn", "%SENDER%", "%SUBJECT%", "late", "late"},
      {"an earlier token in a value stays", "%SUBJECT%", "a", "%SENDER%", "%SENDER%"},
      {"case matters", "%sender%", "a", "", "%sender%"},
  };
  for (const EnvelopeCase& c : kCases) {
    Case filter(c.script);
    filter.envelope.sender.cut(c.sender);
    filter.envelope.subject.cut(c.subject);
    EXPECT_EQ(generated(filter), c.generated) << c.what;
  }
}

TEST(DecisionScript, LiteralModeKeepsEnvelopeTokensAndReplacesCriteria) {
  Case filter("%SENDER% [PV_SUBJECT]");
  settings().script_literal_mode = 0;
  EXPECT_EQ(generated(filter), "%SENDER% 0");
  settings().script_literal_mode = 1;
}

TEST(DecisionScript, EachOccurrenceOfACriterionReceivesItsValue) {
  Case filter("[PV_BODY] [PV_SUBJECT] [PV_SUBJECT] [PV_SUBJECT] [PV_subject] [PV_NONE]");
  filter.results.match(1).set_match_value(kSubject, 0, "1");
  filter.results.match(1).set_match_value(kSubject, 2, "0");
  filter.results.match(1).set_match_value(kSubject, 3, "\xE4 surplus");
  // The token in another case counts as a fourth entry, and is not replaced.
  EXPECT_EQ(generated(filter), "0 1 0 0 [PV_subject] [PV_NONE]");
  EXPECT_EQ(filter.output,
            "Checking Filter[1]Criteria[0]::(1)->49\nSetting True value 1\n"
            "Checking Filter[1]Criteria[0]::()->0\nSetting False\n"
            "Checking Filter[1]Criteria[0]::(0)->48\nSetting False\n"
            "Checking Filter[1]Criteria[0]::(\xE4 surplus)->-28\nSetting True value \xE4 surplus\n"
            "Checking Filter[1]Criteria[1]::()->0\nSetting False\n");
}

TEST(DecisionScript, ASubjectThatHoldsATokenIsPartOfTheText) {
  Case filter("%SUBJECT%[PV_BODY]");
  filter.envelope.subject.cut("[PV_BODY]");
  filter.results.match(1).set_match_value(kBody, 0, "1");
  EXPECT_EQ(generated(filter), "1[PV_BODY]");
}

struct VerdictCase {
  const char* what;
  const char* script;
  std::int32_t verdict;
  const char* result_text;
};

TEST(DecisionScript, RealScriptsDecide) {
  constexpr VerdictCase kCases[] = {
      {"a criterion that is met",
       "If CriteriaMet([PV_SUBJECT],\"win\") Or CriteriaMet([PV_SPAM_PROBABILITY],\"90\") Then FilterResult = 1", 1,
       "SCRIPT"},
      {"a number that is not zero but looks so", "If CriteriaMet([PV_BODY],\"x\") Then FilterResult = 1", 0, ""},
      {"a result text of its own", "PVResultData = \"Rule 7\" : FilterResult = 1", 1, "Rule 7"},
      {"true is not one", "FilterResult = True", -1, "SCRIPT"},
      {"never assigned", "", 0, ""},
      {"an envelope value between quotes", "If \"%SENDERADDRESS%\" = \"a@b.c\" Then FilterResult = 1", 1, "SCRIPT"},
      {"a mistake", "If Then", 0, ""},
      {"a run-time error", "FilterResult = 1 / 0", 0, ""},
  };
  platform::initialise_com();  // as the driver does for a message
  for (const VerdictCase& c : kCases) {
    Case filter(c.script);
    filter.results.match(1).set_match_value(kSubject, 0, "1");
    filter.results.match(1).set_match_value(kBody, 0, "0.00");
    EXPECT_EQ(filter.run(), c.verdict) << c.what;
    EXPECT_EQ(filter.result_text.view(), c.result_text) << c.what;
  }
  platform::uninitialise_com();
}

}  // namespace
}  // namespace pv
