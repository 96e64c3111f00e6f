// The four scans against scanner libraries that answer what a test says.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation_fixture.h"
#include "platform/output_capture.h"
#include "providers/load_scanners.h"
#include "providers/scanner_library.h"
#include "providers/scanner_provider.h"
#include "providers/scanners.h"
#include "support/native_path.h"

namespace pv {
namespace {

using test::install_scanner;
using test::native_path;
using test::ScannerLibrary;

constexpr auto kFillsAll = ScannerScript::kFillsAll;

// What a request says of the files of message A.MAI in a queue below /q.
std::string files(const std::string& queue) {
  return "<FILENAME>/q" + native_path(queue + "/Messages/A.MAI") + "</FILENAME><CMDFILE>/q" +
         native_path(queue + "/A.MAI") + "</CMDFILE>";
}

// A server on which one scanner is loaded, and the filters of one message.
class Scan : public test::Evaluation {
 protected:
  Scan() {
    EXPECT_TRUE(message.message_id.assign("A.MAI"));
    EXPECT_TRUE(message.connector.assign("SMTP"));
    EXPECT_TRUE(message.directories.connector_root.assign("/q"));
  }
  ~Scan() override {
    release_scanners();
    finish_publishing_counters();
  }

  void load(const char* name, const char* kind, void (*loader)()) {
    install_scanner(server, kind, name);
    server.set_number(kRootKey, "Update Statistics", 1);
    server.set_number(kAgentKey, "Bayesian Filtering Status", 1);
    server.set_number(kAgentKey, "SpamAssassin Enabled", 1);
    server.set_number(kSmtpKey, "Domain Keys Status", 1);
    server.set_number(kAgentKey, "Antivirus Status", 1);
    read_general_settings();
    read_server_settings();
    read_scanner_settings();
    read_antivirus_setting();
    platform::OutputCapture output;
    loader();
    scanner = std::make_unique<ScannerLibrary>(server, name);
  }

  void answer(const char* reply, std::int32_t result = 1, ScannerScript::Behaviour how = ScannerScript::kAnswers) {
    ScannerScript script;
    script.reply = reply;
    script.result = result;
    script.behaviour = how;
    scanner->set(script);
  }

  // What a slot shows after a scan of one filter.
  std::string scanned(void (*scan)(SlotIndex, const MessageContext&, const FilterSet&, MatchResults&), SlotIndex slot,
                      const char* data, int entries = 1) {
    only(slot, data, entries);
    scan(slot, message, set, results);
    return found(slot);
  }

  // The stored counters, "total/detected".
  static std::string stored(const char* total, const char* detected) {
    finish_publishing_counters();
    return std::to_string(reg_read_dword_or(kCountersKey, total, 999)) + "/" +
           std::to_string(reg_read_dword_or(kCountersKey, detected, 999));
  }

  std::unique_ptr<ScannerLibrary> scanner;
};

struct ReplyCase {
  const char* what;
  const char* reply;
  std::int32_t result;
  const char* data;
  int entries;
  const char* found;
  ScannerScript::Behaviour how = ScannerScript::kAnswers;
};

constexpr ReplyCase kBayesian[] = {
    {"counted as the whole data and as the entry", "<SP>99</SP>", 1, "90", 1,
     "2<BFV>99.000000</BFV><BFT>90.000000</BFT>[99.000000][]"},
    {"each entry, the last threshold shown", "x<SP> 97.5 %</SP>", -1, "98\t90", 2,
     "1<BFV>97.500000</BFV><BFT>90.000000</BFT>[][97.500000]"},
    {"entries not examined do not count", "<SP>97.5</SP>", 1, "98\t90", 1,
     "0<BFV>97.500000</BFV><BFT>98.000000</BFT>[][]"},
    {"no entry at all", "<SP>97.5</SP>", 1, "90", 0, "1<BFV>97.500000</BFV><BFT>90.000000</BFT>[][]"},
    {"equal is not above", "<SP>90</SP>", 1, "90", 1, "0<BFV>90.000000</BFV><BFT>90.000000</BFT>[][]"},
    {"an entry without a field is 0", "<SP>1</SP>", 1, "90", 2, "1<BFV>1.000000</BFV><BFT>0.000000</BFT>[][1.000000]"},
    {"the probability is single, the threshold double", "<SP>0.1</SP>", 1, "0.1", 1,
     "2<BFV>0.100000</BFV><BFT>0.100000</BFT>[0.100000][]"},
    {"no answer", "<SP>99</SP>", 0, "-1", 1, "2<BFV>0.000000</BFV><BFT>-1.000000</BFT>[0.000000][]"},
    {"no element", "99", 1, "0", 1, "0<BFV>0.000000</BFV><BFT>0.000000</BFT>[][]"},
    {"tags of another case", "<sp>99</sp>", 1, "0", 1, "0<BFV>0.000000</BFV><BFT>0.000000</BFT>[][]"},
    {"no closing tag", "<SP>99", 1, "0", 1, "0<BFV>0.000000</BFV><BFT>0.000000</BFT>[][]"},
    {"no number", "<SP>nan</SP>", 1, "0", 1, "0<BFV>0.000000</BFV><BFT>0.000000</BFT>[][]"},
    {"a value longer than its place", "<SP>1e12</SP>", 1, "0", 1,
     "2<BFV>999999995904.000000</BFV><BFT>0.000000</BFT>[999999995904.00][]"},
    {"a buffer without an end", "<SP>99</SP>", 1, "90", 1, "2<BFV>99.000000</BFV><BFT>90.000000</BFT>[99.000000][]",
     kFillsAll},
    {"a buffer without an end or an element", "<SP>", 1, "0", 1, "0<BFV>0.000000</BFV><BFT>0.000000</BFT>[][]",
     kFillsAll},
};

TEST_F(Scan, Bayesian) {
  load("PVFLTMBF", "whole", load_bayesian_scanner);
  read_scanner_settings();
  for (const ReplyCase& c : kBayesian) {
    answer(c.reply, c.result, c.how);
    EXPECT_EQ(scanned(ScanBayesian, kSpamProbability, c.data, c.entries), c.found) << c.what;
  }
}

constexpr ReplyCase kSpamAssassinCases[] = {
    {"passed", "<PASS>1</PASS>", 1, "1", 1, "0<PASS>0</PASS>[][]"},
    {"passed, counted twice", "<PASS>1</PASS>", 1, "0", 1, "2<PASS>0</PASS>[0][]"},
    {"spam, counted twice", "<PASS>0</PASS>", 1, "1", 1, "2<PASS>1</PASS>[1][]"},
    {"any other number is spam", "<PASS>2</PASS>", 1, "0\t1", 2, "1<PASS>1</PASS>[][1]"},
    {"no number is spam", "<PASS>no</PASS>", 1, "1", 1, "2<PASS>1</PASS>[1][]"},
    {"blank is spam", "<PASS> </PASS>", 1, "1", 1, "2<PASS>1</PASS>[1][]"},
    {"white space before the number", "<PASS>\v\f\r\n\t 1x</PASS>", 1, "1", 1, "0<PASS>0</PASS>[][]"},
    {"empty is passed", "<PASS></PASS>", 1, "1", 1, "0<PASS>0</PASS>[][]"},
    {"missing is passed", "", 1, "1", 1, "0<PASS>0</PASS>[][]"},
    {"no answer is passed", "<PASS>0</PASS>", 0, "1", 1, "0<PASS>0</PASS>[][]"},
    {"a buffer without an end", "<PASS>0</PASS>", 1, "1", 1, "2<PASS>1</PASS>[1][]", kFillsAll},
};

TEST_F(Scan, SpamAssassin) {
  load("PVFLTMSA", "whole", load_spam_assassin_scanner);
  for (const ReplyCase& c : kSpamAssassinCases) {
    answer(c.reply, c.result, c.how);
    EXPECT_EQ(scanned(ScanSpamAssassin, kSpamAssassin, c.data, c.entries), c.found) << c.what;
  }
}

constexpr ReplyCase kDkimCases[] = {
    {"pass", "<RESULT>1</RESULT>", 1, "Pass", 1, "1[1][]"},
    {"the execute result does not matter", "<RESULT>1</RESULT>", 0, "PASS", 1, "1[1][]"},
    {"fail, by name and number", "<RESULT>-3</RESULT>", 1, "fail\t0", 2, "2[-3][-3]"},
    {"open", "<RESULT>17</RESULT>", 1, "2\tindeterminate", 2, "2[17][17]"},
    {"another verdict", "<RESULT>1</RESULT>", 1, "FAIL\t2", 2, "0[][]"},
    {"no element is a failure", "", 1, "FAIL", 1, "1[0][]"},
    {"an empty element is a failure", "<RESULT></RESULT>", 1, "FAIL", 1, "1[0][]"},
    {"no whole data", "<RESULT>1</RESULT>", 1, "1", 0, "0[][]"},
    {"an entry without a field is 0", "<RESULT>0</RESULT>", 1, "PASS", 2, "1[][0]"},
    {"a buffer without an end", "<RESULT>1</RESULT>", 1, "PASS", 1, "1[1][]", kFillsAll},
};

TEST_F(Scan, Dkim) {
  load("PVDomainKeys", "whole", load_dkim_scanner);
  for (const ReplyCase& c : kDkimCases) {
    answer(c.reply, c.result, c.how);
    EXPECT_EQ(scanned(ScanDkim, kDkim, c.data, c.entries), c.found) << c.what;
  }
}

struct SenderCase {
  const char* what;
  const char* sender;
  const char* connector;
  std::int32_t authenticated;
  const char* domain_and_sender;  // of the request; empty: none is sent
};

constexpr SenderCase kSenders[] = {
    {"a sender", "[SMTP:ann@example.org]", "SMTP", 0, "<DOMAIN>example.org</DOMAIN><SENDER>ann</SENDER>"},
    {"the connector in another case", "[SMTP:ann@example.org]", "smtp", 0,
     "<DOMAIN>example.org</DOMAIN><SENDER>ann</SENDER>"},
    {"another connector", "[SMTP:ann@example.org]", "LS", 0, ""},
    {"authenticated", "[SMTP:ann@example.org]", "SMTP", 1, ""},
    {"no at sign", "[SMTP:ann]", "SMTP", 0, ""},
    {"no colon", "ann@example.org", "SMTP", 0, ""},
    {"empty", "", "SMTP", 0, ""},
    {"blanks and line ends after the marks", "[SMTP: \r\nann@ \nexample.org]", "SMTP", 0,
     "<DOMAIN>example.org</DOMAIN><SENDER>ann</SENDER>"},
    {"empty parts are there", "[SMTP:@]", "SMTP", 0, "<DOMAIN></DOMAIN><SENDER></SENDER>"},
    {"no bracket at the end", "[SMTP:ann@example.org", "SMTP", 0, "<DOMAIN>example.org</DOMAIN><SENDER>ann</SENDER>"},
    {"a second at sign", "[SMTP:a@b@c]", "SMTP", 0, "<DOMAIN>b@c</DOMAIN><SENDER>a</SENDER>"},
};

TEST_F(Scan, DkimAsksForMailFromOutsideOnly) {
  load("PVDomainKeys", "whole", load_dkim_scanner);
  answer("<RESULT>1</RESULT>");
  for (const SenderCase& c : kSenders) {
    const std::size_t before = scanner->calls().size();
    EXPECT_TRUE(message.envelope.sender.assign(c.sender));
    EXPECT_TRUE(message.connector.assign(c.connector));
    message.envelope.authentication_status = c.authenticated;
    const bool asks = *c.domain_and_sender != '\0';
    EXPECT_EQ(scanned(ScanDkim, kDkim, "INDETERMINATE\t1", 2), asks ? "1[][1]" : "1[100][]") << c.what;
    const std::string asked = scanner->calls().substr(before);
    const std::string request =
        "<COMMAND>VERIFY</COMMAND>" + files("/" + std::string(c.connector) + "/Inbound") + c.domain_and_sender;
    EXPECT_EQ(asked, asks ? "execute " + request + " " + std::to_string(request.size()) + " 1024\n" : "") << c.what;
  }
}

struct RequestCase {
  const char* what;
  const char* postoffice;
  const char* queue;
};

TEST_F(Scan, RequestsNameTheFilesOfTheQueue) {
  const RequestCase cases[] = {{"the server's filters", "", "Inbound"}, {"a postoffice's", "po", "Outgoing"}};
  load("PVFLTMBF", "whole", load_bayesian_scanner);
  const std::unique_ptr<ScannerLibrary> bayesian = std::move(scanner);
  load("PVFLTMSA", "whole", load_spam_assassin_scanner);
  for (const RequestCase& c : cases) {
    only(kSpamProbability, "90");
    EXPECT_TRUE(set.postoffice.assign(c.postoffice));
    set.filters[0].slots[kSpamAssassin] = set.filters[0].slots[kSpamProbability];
    const std::string request = files(std::string("/SMTP/") + c.queue);
    const std::string sized = "execute " + request + " " + std::to_string(request.size());
    ScanBayesian(kSpamProbability, message, set, results);
    ScanSpamAssassin(kSpamAssassin, message, set, results);
    EXPECT_TRUE(bayesian->calls().ends_with(sized + " 0\n")) << c.what << bayesian->calls();
    EXPECT_TRUE(scanner->calls().ends_with(sized + " 1024\n")) << c.what << scanner->calls();
  }
}

TEST_F(Scan, ALongRequestIsCut) {
  load("PVFLTMBF", "whole", load_bayesian_scanner);
  EXPECT_TRUE(message.directories.connector_root.assign(std::string(1010, 'q')));
  only(kSpamProbability, "90");
  ScanBayesian(kSpamProbability, message, set, results);
  const std::string calls = scanner->calls();
  EXPECT_TRUE(calls.ends_with(" 2047 0\n"));
  EXPECT_EQ(calls.find("</FILENAME>"), std::string("execute <FILENAME>").size() + 1023) << "a path is cut to 1023";
}

struct VirusCase {
  const char* what;
  const char* kind;
  std::int32_t result;
  const char* text;
  const char* found;
  ScannerScript::Behaviour how = ScannerScript::kAnswers;
};

TEST_F(Scan, Antivirus) {
  const VirusCase cases[] = {
      {"a virus counts once a filter", "whole", 1, "Eicar & co", "1Eicar & co[1][1]"},
      {"no virus", "whole", 0, "clean", "0[0][0]"},
      {"another number is no virus", "whole", -5, "failed", "0[-5][-5]"},
      {"a text without an end", "whole", 1, "", nullptr, kFillsAll},
      {"no entry", "fallback_names", 1, "", "0[0][0]"},
  };
  for (const VirusCase& c : cases) {
    release_scanners();
    server.remove(std::string("app/PVAVGEN") + LIBRARY_SUFFIX);
    load("PVAVGEN", c.kind, load_antivirus_scanner);
    answer(c.text, c.result, c.how);
    only(kHasVirus, "whatever\tthis", 2);
    ScanAntivirus(kHasVirus, message, set, results);
    const std::string all = "1" + std::string(1023, 'x') + "[1][1]";
    EXPECT_EQ(found(kHasVirus), c.found != nullptr ? c.found : all) << c.what;
    const bool asked = std::string_view(c.kind) == "whole";
    EXPECT_EQ(scanner->calls(), asked ? "scan MTAFILTER A.MAI SMTP 20\n" : "") << c.what;
    scanner.reset();
  }
}

TEST_F(Scan, AProviderThatIsOffLeavesItsSlotButDkimStaysOpen) {
  for (const char* name : {"PVFLTMBF", "PVFLTMSA", "PVDomainKeys", "PVAVGEN"}) install_scanner(server, "whole", name);
  EXPECT_EQ(scanned(ScanBayesian, kSpamProbability, "-1"), "0[][]");
  EXPECT_EQ(scanned(ScanSpamAssassin, kSpamAssassin, "0"), "0[][]");
  EXPECT_EQ(scanned(ScanAntivirus, kHasVirus, "0"), "0[][]");
  EXPECT_EQ(scanned(ScanDkim, kDkim, "2"), "1[100][]");
}

TEST_F(Scan, OneQuestionAMessageHoweverManyFilters) {
  load("PVFLTMBF", "whole", load_bayesian_scanner);
  answer("<SP>96</SP>");
  only(kSpamProbability, "90");
  add(kSpamProbability, "97");
  add(kSpamProbability, "10", 1, /*status=*/2);
  ScanBayesian(kSpamProbability, message, set, results);
  EXPECT_EQ(scanner->number_of_calls(), 1);
  EXPECT_EQ(found(kSpamProbability, 1), "2<BFV>96.000000</BFV><BFT>90.000000</BFT>[96.000000][]");
  EXPECT_EQ(found(kSpamProbability, 2), "0<BFV>96.000000</BFV><BFT>97.000000</BFT>[][]");
  EXPECT_EQ(found(kSpamProbability, 3), "0[][]") << "not in use";
  EXPECT_EQ(stored("Bayesian Total Scans", "Bayesian Detections"), "1/1");
}

TEST_F(Scan, CountersCountScansAndDetections) {
  load("PVFLTMBF", "whole", load_bayesian_scanner);
  only(kSubject, "none that asks");
  ScanBayesian(kSpamProbability, message, set, results);
  for (const char* reply : {"<SP>95</SP>", "<SP>95.00001</SP>", "none"}) {
    answer(reply);
    scanned(ScanBayesian, kSpamProbability, "99");
  }
  answer("<SP>99</SP>", 0);
  scanned(ScanBayesian, kSpamProbability, "99");
  EXPECT_EQ(stored("Bayesian Total Scans", "Bayesian Detections"), "4/1");

  load("PVFLTMSA", "whole", load_spam_assassin_scanner);
  answer("<PASS>0</PASS>");
  scanned(ScanSpamAssassin, kSpamAssassin, "0");
  answer("<PASS>0</PASS>", 0);
  scanned(ScanSpamAssassin, kSpamAssassin, "0");
  EXPECT_EQ(stored("SA Total Scans", "SA Detections"), "2/1");

  load("PVDomainKeys", "whole", load_dkim_scanner);
  EXPECT_EQ(stored("DKIM Scans", "DKIM Detections"), "999/999") << "not before a verification";
  answer("<RESULT>1</RESULT>");
  scanned(ScanDkim, kDkim, "PASS");
  EXPECT_EQ(stored("DKIM Scans", "DKIM Detections"), "1/0");
  answer("");
  scanned(ScanDkim, kDkim, "PASS");
  message.envelope.authentication_status = 1;
  scanned(ScanDkim, kDkim, "PASS");
  EXPECT_EQ(stored("DKIM Scans", "DKIM Detections"), "2/1");

  load("PVAVGEN", "whole", load_antivirus_scanner);
  answer("bad", 1);
  only(kHasVirus, "1");
  add(kHasVirus, "1");
  add(kHasVirus, "1");
  ScanAntivirus(kHasVirus, message, set, results);
  EXPECT_EQ(stored("Antivirus Total Scans", "Antivirus Detected"), "1/3");
}

TEST_F(Scan, WithoutStatisticsNothingIsCounted) {
  load("PVAVGEN", "whole", load_antivirus_scanner);
  settings().update_statistics = 0;
  answer("bad", 1);
  scanned(ScanAntivirus, kHasVirus, "1");
  settings().update_statistics = 1;
  answer("bad", 1);
  scanned(ScanAntivirus, kHasVirus, "1");
  EXPECT_EQ(stored("Antivirus Total Scans", "Antivirus Detected"), "1/1");
}

TEST_F(Scan, AnExceptionOfAProviderTravelsOn) {
  if (!SCANNERS_THROW) GTEST_SKIP() << "exceptions do not leave a library of this system";
  load("PVFLTMBF", "whole", load_bayesian_scanner);
  answer("", 1, ScannerScript::kThrows);
  EXPECT_THROW(scanned(ScanBayesian, kSpamProbability, "1"), std::runtime_error);
}

// Filters that use all four scanners, for messages on several threads.
class ConcurrentScan : public Scan {
 protected:
  static constexpr int kThreads = 4;
  static constexpr int kMessages = 50;

  void add_all_slots() {
    for (int i = 0; i < 3; ++i) {
      FilterDefinition& filter = set.filters.emplace_back();
      for (const SlotIndex slot : {kSpamProbability, kSpamAssassin, kDkim, kHasVirus}) {
        CriterionSlot& criterion = filter.slots[static_cast<std::size_t>(slot)];
        criterion.status = 1;
        criterion.entry_count = 1;
        criterion.data = "1";
      }
      ++set.filter_count;
    }
  }

  void scan_messages() {
    for (int i = 0; i < kMessages; ++i) {
      MatchResults own;
      own.matches.resize(static_cast<std::size_t>(set.filter_count));
      ScanBayesian(kSpamProbability, message, set, own);
      ScanSpamAssassin(kSpamAssassin, message, set, own);
      ScanDkim(kDkim, message, set, own);
      ScanAntivirus(kHasVirus, message, set, own);
      if (own.match(1).match_count[kSpamProbability] != 2 || own.match(3).match_count[kHasVirus] != 1) ++wrong;
    }
  }

  std::atomic<int> wrong{0};
};

TEST_F(ConcurrentScan, NoCountIsLostAndTheLastIsStored) {
  const std::pair<const char*, void (*)()> loads[] = {{"PVFLTMBF", load_bayesian_scanner},
                                                      {"PVFLTMSA", load_spam_assassin_scanner},
                                                      {"PVDomainKeys", load_dkim_scanner},
                                                      {"PVAVGEN", load_antivirus_scanner}};
  std::vector<std::unique_ptr<ScannerLibrary>> scanners;
  for (const auto& [name, loader] : loads) {
    load(name, "whole", loader);
    ScannerScript script;
    script.noted = false;
    script.reply = "<SP>99</SP><PASS>0</PASS><RESULT>0</RESULT>";
    scanner->set(script);
    scanners.push_back(std::move(scanner));
  }
  add_all_slots();
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back([this] { scan_messages(); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  const std::string all = std::to_string(kThreads * kMessages);
  EXPECT_EQ(stored("Bayesian Total Scans", "Bayesian Detections"), all + "/" + all);
  EXPECT_EQ(stored("SA Total Scans", "SA Detections"), all + "/" + all);
  EXPECT_EQ(stored("DKIM Scans", "DKIM Detections"), all + "/" + all);
  EXPECT_EQ(stored("Antivirus Total Scans", "Antivirus Detected"),
            all + "/" + std::to_string(3 * kThreads * kMessages));
}

}  // namespace
}  // namespace pv
