// The rules of a mailbox, from its tables to its folders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "actions/copy_to_mailbox_folder.h"
#include "actions/prefix_subject_in_mailbox.h"
#include "actions/queued_message.h"
#include "filters/filter_table.h"
#include "filters/match_results.h"

namespace pv {
namespace {

using ::testing::ElementsAre;

constexpr char kQueued[] = "Subject: hello\r\n\r\nbody\r\n";
constexpr char kRules[] = "conf/Postoffices/po/Mailboxes/jane/RULES/";

class MailboxRules : public test::QueuedMessage {
 protected:
  MailboxRules() {
    tree_.write("queues/SMTP/Outgoing/Messages/M1.MAI", kQueued);
    tree_.make_directory("mail/po/MAILROOT/jane");
    message_.envelope.account.cut("po");
    message_.envelope.user.cut("jane");
    reread_directories();
  }
  ~MailboxRules() { forget_agent_settings(); }

  // Runs the rules of a filter that every message satisfies; the keywords that were recorded.
  std::string run(std::string_view actions) {
    tree_.write(std::string(kRules) + "FILTER.TAB", "Rule\t1\tRULE\t\tRule\t\r\n");
    std::string criteria;
    for (int slot = 0; slot < 25; ++slot)
      criteria += slot == kAllMessages ? "1\t\t\t\t\t1\t\r\n" : "0\t\t\t\t\t0\t\r\n";
    tree_.write(std::string(kRules) + "CRITERIA/RULE.TAB", criteria);
    tree_.write(std::string(kRules) + "ACTIONS/RULE.TAB", actions);
    FilterSet set;
    set.postoffice.cut("po");
    set.mailbox.cut("jane");
    LoadFilterSet(set);
    EXPECT_EQ(set.filter_count, 1);
    MatchResults results;
    AllocateMatchResults(set, results);
    results.match(1).match_count[kAllMessages] = 1;
    platform::OutputCapture output;
    ReportLine report;
    outcome_ = ExecuteFilterActions(message_, set, results, report);
    output_ = output.take();
    std::string_view recorded = report.view();
    for (int column = 0; column < 4; ++column)
      recorded.remove_prefix(std::min(recorded.find('\t') + 1, recorded.size()));
    return std::string(recorded.substr(0, recorded.find('\t')));
  }

  std::string folder(const std::string& name) const { return "mail/po/MAILROOT/jane/" + name; }

  FilterOutcome outcome_ = FilterOutcome::kNothing;
  std::string output_;
};

TEST_F(MailboxRules, CopyIntoTheirFolders) {
  struct Case {
    const char* what;
    const char* table;
    const char* recorded;
    bool stopped;
    const char* folder;
  };
  const Case cases[] = {
      {"nothing after junk", "1\t\t\tJUNK\t\r\n1\t\tWork\tCOPY\t\r\n", "JUNK", true, "Junk E-mail"},
      {"nothing after quarantine", "1\t\t\tquarantine\t\r\n1\t\tWork\tCOPY\t\r\n", "quarantine", true, "Quarantine"},
      {"a copy goes on", "1\t\tWork\tCOPY\t\r\n1\t\t\tDELETE\t\r\n", "COPY,DELETE", true, "Work"},
      {"a copy alone", "1\t\tWork\tCOPY\r\n", "COPY", false, "Work"},
      {"a move", "1\t\tWork\tMOVE\r\n1\t\t\tDELETE\t\r\n", "MOVE", true, "Work"},
  };
  for (const Case& c : cases) {
    tree_.remove(folder(""));
    tree_.make_directory(folder(""));
    EXPECT_EQ(run(c.table), c.recorded) << c.what;
    EXPECT_EQ(outcome_, c.stopped ? FilterOutcome::kStopped : FilterOutcome::kFired) << c.what;
    EXPECT_THAT(tree_.names(folder("")), ElementsAre(c.folder, "_FOLDER.DTY")) << c.what;
    EXPECT_THAT(tree_.names(folder(c.folder)), ElementsAre("M1.MAI", "_CHANGE.DTY")) << c.what;
    EXPECT_EQ(tree_.read(folder(c.folder) + "/M1.MAI"), kQueued) << c.what;
    EXPECT_THAT(output_,
                ::testing::HasSubstr("Folder=" + std::string(c.folder) + "::Folder Made Dirty to notify clients\n"))
        << c.what;
  }
}

TEST_F(MailboxRules, GoOnAfterACopyThatFailed) {
  tree_.write(folder("Junk E-mail"), "no directory");
  EXPECT_EQ(run("1\t\t\tJUNK\t\r\n1\t\tWork\tCOPY\t\r\n1\t\t..\tMOVE\t\r\n"), "JUNK,COPY,MOVE");
  EXPECT_EQ(outcome_, FilterOutcome::kFired);
  EXPECT_EQ(tree_.read(folder("Work/M1.MAI")), kQueued);
}

TEST_F(MailboxRules, StayInTheirMailbox) {
  tree_.make_directory("mail/po/MAILROOT/joe/Work");
  for (const char* name : {"", "..", "../joe/Work", "Work/../../joe/Work", "..\\joe\\Work", ".", ".. ", "/", "a:b"}) {
    EXPECT_FALSE(CopyToMailboxFolder(message_, name)) << name;
  }
  EXPECT_FALSE(CopyToMailboxFolder(message_, "No/Parent"));
  EXPECT_THAT(tree_.names("mail/po/MAILROOT/joe/Work"), ElementsAre());
  for (const char* name : {"Work", "Work/Deep", "Work\\Deeper", "/Own/"})
    EXPECT_TRUE(CopyToMailboxFolder(message_, name)) << name;
  EXPECT_EQ(tree_.read(folder("Work/Deeper/M1.MAI")), kQueued);
  EXPECT_EQ(tree_.read(folder("Own/_CHANGE.DTY")).substr(0, 9), "This file");

  message_.envelope.user.cut("../jane");
  EXPECT_FALSE(CopyToMailboxFolder(message_, "Work"));
  message_.envelope.user.cut("jane");
  message_.envelope.account.cut("..");
  EXPECT_FALSE(CopyToMailboxFolder(message_, "Work"));
}

TEST_F(MailboxRules, WithoutUserTheMailboxOfTheRulesIsMeant) {
  message_.envelope.user.clear();
  EXPECT_EQ(run("1\t\tWork\tMOVE\r\n"), "MOVE");
  EXPECT_EQ(tree_.read(folder("Work/M1.MAI")), kQueued);
}

TEST_F(MailboxRules, PrefixTheSubjectOfTheMessageInTheMailbox) {
  tree_.write(folder("M1.MAI"), kQueued);
  EXPECT_EQ(run("1\t\t[x] \tPREFIX-SUBJECT\t\r\n1\t\t\tDELETE\t\r\n"), "PREFIX-SUBJECT,DELETE");
  EXPECT_EQ(tree_.read(folder("M1.MAI")), "Subject: [x] hello\r\n\r\nbody\r\n");
  EXPECT_EQ(tree_.read("queues/SMTP/Outgoing/Messages/M1.MAI"), kQueued) << "the queued one stays";

  message_.store_folder.cut("Work");
  PrefixSubjectInMailbox(message_, "[x] ");
  EXPECT_THAT(tree_.names(folder("Work")), ElementsAre()) << "created, but no message and no flag";
  tree_.write(folder("Work/M1.MAI"), kQueued);
  PrefixSubjectInMailbox(message_, "[x]\r\n");
  EXPECT_EQ(tree_.read(folder("Work/M1.MAI")), "Subject: [x]  hello\r\n\r\nbody\r\n");
}

}  // namespace
}  // namespace pv
