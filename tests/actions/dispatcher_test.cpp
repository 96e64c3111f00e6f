#include "actions/dispatcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "actions/executed_actions.h"
#include "actions/queued_message.h"
#include "actions/token_block.h"

namespace pv {
namespace {

using ::testing::HasSubstr;

constexpr char kAgent[] = R"(SOFTWARE\Post Vane\Post Vane\Agents\MTA\Filters\MTAFILTER)";
constexpr char kFired[] = "All for rule (F) satisfied. Executing associated action (D).\n";
constexpr char kBypassed[] = "Bypassing Action. Status Disabled\n";

// Two filters of the same action table, of which the first has met its SUBJECT criterion.
class Dispatcher : public test::QueuedMessage {
 protected:
  Dispatcher() {
    tree_.set_number(kAgent, "Activity Log Enabled", 2);  // report lines to standard output, a blank before each
    for (int i = 1; i <= 2; ++i) {
      FilterDefinition& filter = set_.filters.emplace_back();
      filter.name.cut("F");
      filter.definition_name.cut("D");
      filter.display_name.cut("Free offers");
      set_.filter_count = i;
      results_.matches.emplace_back();
      results_.filter_count = i;
    }
    meet(1, kSubject, "<MF-W>free</MF-W>");
  }

  void meet(FilterIndex filter, std::size_t slot, std::string_view text) {
    set_.filter(filter).slots[slot].status = 1;
    set_.filter(filter).slots[slot].minimum_matches = 2;
    results_.match(filter).match_count[slot] = 2;
    results_.match(filter).set_matched_text(static_cast<SlotIndex>(slot), text);
  }

  void table(std::string_view text) { tree_.write("conf/FILTERS/ACTIONS/D.TAB", text); }

  FilterOutcome run() {
    platform::OutputCapture capture;
    report_.clear();
    const FilterOutcome outcome = ExecuteFilterActions(message_, set_, results_, report_);
    output_ = capture.take();
    return outcome;
  }

  std::string report(std::string_view executed) const {
    return "Executed\tM1.MAI\tSMTP\tFree offers\t" + std::string(executed) + "\t" +
           std::string(set_.postoffice.view()) +
           "\t[SMTP:ann@example.com]\t10.0.0.1\tCRITERIA=SUBJECT, DATA=<MF-W>free</MF-W>\thello\n";
  }

  FilterSet set_;
  MatchResults results_;
  ReportLine report_;
  std::string output_;
};

TEST_F(Dispatcher, CarriesOutTheActionTable) {
  struct Case {
    const char* what;
    const char* table;
    const char* executed;  // "": no report line
    const char* printed;   // after the announcement, before the report line
    const char* message;   // afterwards
  };
  constexpr char kUnchanged[] = "Subject: hello\r\n\r\nbody\r\n";
  const Case cases[] = {
      {"disabled", "0\t\t\tDELETE\t\r\n", "", kBypassed, kUnchanged},
      {"a blank line is disabled", "\r\n", "", kBypassed, kUnchanged},
      {"2 is not 1", "2\t\t\tDELETE\t\r\n", "", kBypassed, kUnchanged},
      {"unknown", "1\t\t\tDELETE_IT\t\r\n", "", "", kUnchanged},
      {"any case, recorded as written", "1x\t\t\tdelete\t\r\n", "delete", "", ""},
      {"the keyword as last field", "1\t\t\tDELETE\r\n", "DELETE", "", ""},
      {"no line end", "1\t\t\tDELETE", "DELETE", "", ""},
      {"nothing after a stop", "1\t\tX-A|b\tADD_HEADER\t\r\n1\t\t\tSTOP_PROCESSING\t\r\n1\t\t\tDELETE\t\r\n0\r\n",
       "ADD_HEADER,STOP_PROCESSING", "stop processing filters\n", "Subject: hello\r\nX-A: b\r\n\r\nbody\r\n"},
      {"a failure is not recorded, the next action runs",
       "1\t\t\tDELETE\t\r\n1\t\tX-A|b\tADD_HEADER\t\r\n1\t\tp\tADD_SUBJECT_PREFIX\r\n", "DELETE,ADD_SUBJECT_PREFIX", "",
       ""},
      {"copies", "1\t\t\tCOPY_TO_BADMAIL\t\r\n1\t\t\tCOPY_TO_QUARANTINE\t\r\n", "COPY_TO_BADMAIL,COPY_TO_QUARANTINE",
       "", kUnchanged},
      {"a header without value", "1\t\tX-A\tADD_HEADER\t\r\n", "ADD_HEADER", "",
       "Subject: hello\r\nX-A: \r\n\r\nbody\r\n"},
      {"a header without name", "1\t\t|b\tADD_HEADER\t\r\n", "", "", kUnchanged},
      {"no value is left over from the line before", "1\t\tX-A|b\tADD_HEADER\t\r\n1\t\tX-B\tADD_HEADER\t\r\n",
       "ADD_HEADER,ADD_HEADER", "", "Subject: hello\r\nX-A: b\r\nX-B: \r\n\r\nbody\r\n"},
      {"no action is left over from the line before", "1\t\tX-A|b\tADD_HEADER\t\r\n1\r\n", "ADD_HEADER", "",
       "Subject: hello\r\nX-A: b\r\n\r\nbody\r\n"},
      {"tokens in a header", "1\t\tX-A|[PV_SENDER] [PV_WORDLIST] [PV_CRITERIA]\tADD_HEADER\t\r\n", "ADD_HEADER", "",
       "Subject: hello\r\nX-A: ann@example.com free SUBJECT\r\n\r\nbody\r\n"},
      {"tokens in a prefix", "1\t\t[SPAM [PV_IP]] \tADD_SUBJECT_PREFIX\t\r\n", "ADD_SUBJECT_PREFIX", "",
       "Subject: [SPAM 10.0.0.1] hello\r\n\r\nbody\r\n"},
      {"a prefix is encoded", "1\t\t[PV_MSG] [PV_ACCOUNT] \tADD_SUBJECT_PREFIX\t\r\n", "ADD_SUBJECT_PREFIX", "",
       "Subject: M1.MAI a=5Fb hello\r\n\r\nbody\r\n"},
  };
  message_.envelope.account.cut("a_b");
  for (const Case& c : cases) {
    queue(kUnchanged);
    table(c.table);
    EXPECT_EQ(run(), FilterOutcome::kFired) << c.what;
    const std::string line = *c.executed == '\0' ? "" : report(c.executed);
    EXPECT_EQ(report_.view(), line) << c.what;
    EXPECT_EQ(output_, std::string(kFired) + c.printed + (line.empty() ? "" : " " + line)) << c.what;
    EXPECT_EQ(message_text(), c.message) << c.what;
  }
}

TEST_F(Dispatcher, StopsTheWalkThroughTheFilters) {
  meet(2, kSubject, "");
  table("1\t\t\tSTOP_PROCESSING\t\r\n");
  run();
  EXPECT_EQ(output_, std::string(kFired) + "stop processing filters\n " + report("STOP_PROCESSING"));
}

TEST_F(Dispatcher, WithoutTableTheFilterHasFiredAllTheSame) {
  report_.cut("before");
  EXPECT_EQ(run(), FilterOutcome::kFired);
  EXPECT_EQ(output_, kFired);
  EXPECT_EQ(report_.view(), "");
}

TEST_F(Dispatcher, FiresOnOneMetCriterionAndReportsTheLast) {
  table("1\t\t[PV_CRITERIA]\tADD_SUBJECT_PREFIX\t\r\n");
  CriterionSlot& subject = set_.filter(1).slots[kSubject];
  const auto reported = [this] { return run() == FilterOutcome::kNothing ? "" : std::string(report_.view()); };

  subject.minimum_matches = 3;
  EXPECT_EQ(reported(), "") << "one below the minimum";
  meet(1, kBody, "<MF-W>" + std::string(600, 'b') + "</MF-W>");
  EXPECT_THAT(reported(), HasSubstr("\tCRITERIA=BODY, DATA=<MF-W>" + std::string(505, 'b') + "\t"));
  subject.minimum_matches = 2;
  EXPECT_THAT(reported(), HasSubstr("\tCRITERIA=BODY, ")) << "both met";
  set_.filter(1).slots[kBody].status = 2;
  EXPECT_THAT(reported(), HasSubstr("\tCRITERIA=SUBJECT, ")) << "the other not in use";
  set_.filter(1).is_script = true;
  EXPECT_EQ(reported(), "") << "a script decides, and none can run";
}

TEST_F(Dispatcher, HostileValuesStayInTheirColumn) {
  table("1\t\tp\tADD_SUBJECT_PREFIX\t\r\n");
  set_.filter(1).display_name.cut("two\tparts\r\n");
  message_.envelope.sender.cut("a\nExecuted\tb");
  message_.envelope.subject.cut("c\rd\r\n");
  meet(1, kSubject, "<MF-W>x\ty</MF-W>");
  run();
  EXPECT_EQ(report_.view(),
            "Executed\tM1.MAI\tSMTP\ttwo parts\tADD_SUBJECT_PREFIX\t\ta Executed b\t10.0.0.1\t"
            "CRITERIA=SUBJECT, DATA=<MF-W>x y</MF-W>\tc d  \n");
}

TEST_F(Dispatcher, ALineThatIsCutEndsInItsLineFeed) {
  std::string rows;
  for (int i = 0; i < 100; ++i) rows += "1\t\tp\tADD_SUBJECT_PREFIX\t\r\n";
  table(rows);
  message_.envelope.subject.cut(std::string(1000, 's'));
  run();
  EXPECT_EQ(report_.size(), ReportLine::kCapacity - 1);
  EXPECT_TRUE(report_.view().ends_with('\n'));
}

TEST_F(Dispatcher, AMailboxRuleStopsTheWalk) {
  set_.postoffice.cut("Main");
  set_.mailbox.cut("jane");
  meet(2, kSubject, "");
  tree_.write("conf/Postoffices/Main/Mailboxes/jane/RULES/ACTIONS/D.TAB",
              "1\t\t\tUNKNOWN\t\r\n1\t\t\tDelete\r\n0\t\t\tDELETE\t\r\n1\t\t\tDELETE\t\r\n0\t\t\tDELETE\t\r\n");
  EXPECT_EQ(run(), FilterOutcome::kStopped);
  EXPECT_EQ(output_, std::string(kFired) + kBypassed + " " + report("Delete"));
  EXPECT_EQ(message_.envelope.account.view(), "Main");
  EXPECT_EQ(message_.mailbox.view(), "jane");
  EXPECT_TRUE(tree_.exists(test::kMessageFile)) << "the queue keeps its message";
}

TEST_F(Dispatcher, APostofficeActsOnTheOutgoingQueue) {
  set_.postoffice.cut("Main");
  tree_.write("queues/SMTP/Outgoing/Messages/M1.MAI", "A: b\r\n\r\n");
  tree_.write("conf/Postoffices/Main/RULES/ACTIONS/D.TAB", "1\t\tX-A|b\tADD_HEADER\t\r\n");
  EXPECT_EQ(run(), FilterOutcome::kFired);
  EXPECT_EQ(report_.view(), report("ADD_HEADER"));
  EXPECT_EQ(tree_.read("queues/SMTP/Outgoing/Messages/M1.MAI"), "A: b\r\nX-A: b\r\n\r\n");
}

TEST_F(Dispatcher, MatchedTextsThatDoNotFitAreLeftOut) {
  TokenBlock block;
  block.cut(std::string(1013, '.'));
  FilterMatch& match = results_.match(1);
  match.set_matched_text(kSubject, std::string(11, 'a'));
  match.set_matched_text(kTo, "bbbb");
  match.set_matched_text(kSpamAssassin, "cccccc");
  AppendMatchedTexts(1, results_, block);
  EXPECT_EQ(block.view().substr(1013), "bbbbcccccc");
}

TEST_F(Dispatcher, KeywordsBeyondTheCapacityAreNotRecorded) {
  ExecutedActions executed;
  record_executed(std::string(2040, 'a'), executed);
  record_executed("seven77", executed);
  EXPECT_EQ(executed.size(), 2040u);
  record_executed("six666", executed);
  EXPECT_TRUE(executed.view().ends_with(",six666"));
}

}  // namespace
}  // namespace pv
