#include "scan/message_scan.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "filters/criteria_keywords.h"
#include "platform/output_capture.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using namespace std::string_literals;

struct Scanned {
  bool applied = false;
  std::int32_t count = 0;
  std::string output;
};

// Scans real files for one filter with one criterion.
class MessageScan : public ::testing::Test {
 protected:
  void SetUp() override {
    message_.connector.cut("SMTP");
    message_.message_id.cut("A.MAI");
    message_.directories.connector_root.cut(tree_.path("queues"));
    message_.envelope.sender.cut("[SMTP:ann@example.com]");
  }

  // The words "*" count what is handed to the slot; "abc*" counts the texts that begin so.
  void use_criterion(SlotIndex slot, std::string_view words) {
    set_ = FilterSet();
    CriterionSlot& criterion = set_.filters.emplace_back().slots[static_cast<std::size_t>(slot)];
    criterion.status = 1;
    criterion.data = words;
    criterion.minimum_matches = 1;
    criterion.entry_count = 1;
    set_.filter_count = 1;
  }

  Scanned scan(std::string_view bytes) {
    tree_.write(set_.postoffice.empty() ? "queues/SMTP/Inbound/Messages/A.MAI" : "queues/SMTP/Outgoing/Messages/A.MAI",
                bytes);
    return scan_file();
  }

  Scanned scan_file() {
    platform::OutputCapture capture;
    MatchResults results;
    AllocateMatchResults(set_, results);
    results.message = &message_;
    Scanned scanned;
    scanned.applied = ScanMessage(message_, set_, results);
    for (const FilterMatch& match : results.matches) {
      for (const std::int32_t count : match.match_count) scanned.count += count;
    }
    scanned.output = capture.take();
    return scanned;
  }

  test::ServerTree tree_;
  MessageContext message_;
  FilterSet set_;
};

struct CountCase {
  const char* what;
  SlotIndex slot;
  std::int32_t count;
  const char* words;
  std::string message;
};

class HeaderSection : public MessageScan {};
class BodySection : public MessageScan {};

TEST_F(HeaderSection, FeedsEveryCriterionItsLines) {
  const CountCase cases[] = {
      {"a value begins after the blanks", kSubject, 1, "Win*", "Subject: \t Win money\r\n\r\n"},
      {"a value keeps its line end", kSubject, 1, "Win*\r\n", "Subject: Win money\r\n\r\n"},
      {"names in any case", kSubject, 1, "*", "sUBJECT:x\r\n\r\n"},
      {"a name begins the line", kSubject, 0, "*", " Subject: x\r\nX-Subject: x\r\n\r\n"},
      {"a folded subject is not joined", kSubject, 1, "*", "Subject: a\r\n b\r\n\r\n"},
      {"the header criterion sees all lines, the empty one too", kHeadersContain, 3, "*", "Subject: a\r\n b\r\n\r\nx"},
      {"the header criterion sees the name", kHeadersContain, 1, "Subject*", "Subject: a\r\n\r\n"},
      {"a body line is no header", kSubject, 0, "*", "A: b\r\n\r\nSubject: x\r\n"},
      {"a bare line feed ends the section", kSubject, 0, "*", "A: b\n\nSubject: x\n"},
      {"a NUL does not end the section", kSubject, 1, "*", "A: b\r\n\0\r\nSubject: x\r\n\r\n"s},
      {"a text ends at its NUL", kSubject, 0, "free", "Subject: a\0 free\r\n\r\n"s},
      {"a long line counts in pieces", kHeadersContain, 3, "*", "A: " + std::string(4000, 'x') + "\r\n\r\n"},
      {"folded recipients, slot TO", kTo, 3, "*", "To: a\r\n b\r\n\tc\r\n\r\n"},
      {"folded recipients, slot TOorCC", kToOrCc, 3, "*", "To: a\r\n b\r\n\tc\r\n\r\n"},
      {"folded recipients, header criterion once a line", kHeadersContain, 4, "*", "To: a\r\n b\r\nB: c\r\n\r\n"},
      {"the first value starts after the colon", kTo, 1, "a*", "To: a\r\n a\r\n\r\n"},
      {"further values are not trimmed", kTo, 1, " a*", "To: a\r\n a\r\n\r\n"},
      {"the file ends in a folded header", kTo, 2, "*", "To: a\r\n b"},
      {"copies", kCc, 2, "*", "CC: a\r\n b\r\n\r\n"},
      {"copies count for TOorCC", kToOrCc, 1, "*", "Cc: a\r\n\r\n"},
      {"a sender is no recipient", kToOrCc, 0, "*", "From: a\r\n\r\n"},
      {"a header right after a folded one", kFrom, 2, "*", "To: a\r\n b\r\nFrom: c\r\n d\r\n\r\n"},
      {"a subject right after an address", kSubject, 1, "*", "To: a\r\nSubject: c\r\n\r\n"},
      {"an address as last header", kBody, 1, "*", "To: a\r\n\r\nx\r\n"},
      {"priority 1", kPriority, 1, "High *", "X-Priority: 1 (Highest)\r\n\r\n"},
      {"priority 2 has no word", kPriority, 0, "*", "X-Priority: 2\r\n\r\n"},
      {"priority 3", kPriority, 1, "Normal *", "X-Priority: 3\r\n\r\n"},
      {"priority 5", kPriority, 1, "Low *", "X-Priority:5\r\n\r\n"},
      {"a priority without value", kPriority, 0, "*", "X-Priority:"},
      {"a priority in words", kPriority, 1, "urgent", "X-MSMail-Priority: urgent\r\n\r\n"},
      {"SPF", kSpf, 1, "fail", "Received-SPF: fail\r\n\r\n"},
  };
  for (const CountCase& c : cases) {
    use_criterion(c.slot, c.words);
    const Scanned scanned = scan(c.message);
    EXPECT_TRUE(scanned.applied) << c.what;
    EXPECT_EQ(scanned.count, c.count) << c.what;
  }
}

std::string multipart(std::string_view body) {
  return "Content-Type: multipart/mixed; boundary=\"xx\"\r\n\r\n" + std::string(body);
}

TEST_F(BodySection, FeedsTextPartHeadersAndAttachments) {
  const std::string attachment =
      "--xx\r\nContent-Disposition: attachment; filename=\"a b.txt\"\r\nContent-Transfer-Encoding: BASE64\r\n\r\n"
      "ZnJlZQ==\r\n--xx\r\nContent-Type: text/plain\r\n\r\nfree\r\n--xx--\r\n";
  const std::string block = "A: b\r\n\r\nBEGIN \r\nX: name=\"a.exe\"\r\nend \r\n";
  const CountCase cases[] = {
      {"an empty body line has text", kBody, 2, "*", "A: b\r\n\r\n\r\nx\r\n"},
      {"a line that begins with NUL has none", kBody, 0, "*", "A: b\r\n\r\n\0x\r\n"s},
      {"a megabyte without line end", kBody, 489, "*", "A: b\r\n\r\n" + std::string(1000000, 'x')},
      {"the lines of part headers", kBoundaryHeadersContain, 6, "*", multipart(attachment)},
      {"base64 is skipped up to the next boundary", kBody, 7, "*", multipart(attachment)},
      {"only base64 is skipped", kBody, 1, "free", multipart(attachment)},
      {"an attachment is announced once", kHasAnAttachment, 1, "", multipart(attachment + attachment)},
      {"a name with a blank", kHasAttachmentsMatching, 1, "a b.txt", multipart(attachment)},
      {"base64 on a line of its own", kBody, 1, "Zn*",
       multipart("--xx\r\nContent-Transfer-Encoding:\r\n base64\r\n\r\nZn")},
      {"a boundary counts anywhere in a line", kBoundaryHeadersContain, 2, "*", multipart("> --xxy\r\nA: b\r\n")},
      {"a boundary in another case", kBoundaryHeadersContain, 0, "*", multipart("--XX\r\nA: b\r\n")},
      {"a part header ends at NUL", kHasAnAttachment, 0, "", multipart("--xx\r\n\0\r\nname=\"x\"\r\n"s)},
      {"a name outside part headers", kHasAnAttachment, 0, "", multipart("name=\"x\"\r\n")},
      {"a nested boundary is not known", kBoundaryHeadersContain, 2, "*",
       multipart("--xx\r\nContent-Type: multipart/alternative; boundary=\"yy\"\r\n\r\n--yy\r\nA: b\r\n")},
      {"the later boundary replaces the first", kBoundaryHeadersContain, 2, "*",
       "X: boundary=yy\r\n" + multipart("--yy\r\n\r\n--xx\r\nA: b\r\n")},
      {"a boundary right after an address", kBoundaryHeadersContain, 1, "*", "To: a\r\n" + multipart("--xx\r\n")},
      {"an extension in a block", kHasAttachmentsMatching, 1, "exe", block},
      {"a block needs the blank", kHasAnAttachment, 0, "", "A: b\r\n\r\nbegin\r\nX: name=\"a.exe\"\r\n"},
      {"a block ends", kHasAnAttachment, 0, "", "A: b\r\n\r\nbegin \r\nend \r\nX: name=\"a.exe\"\r\n"},
      {"a name without quotes in a block", kHasAnAttachment, 0, "", "A: b\r\n\r\nbegin \r\nname=a.exe\r\n"},
      {"no blocks in a multipart", kHasAnAttachment, 0, "", multipart("begin \r\nX: name=\"a.exe\"\r\n")},
      {"block lines are body text", kBody, 3, "*", block},
  };
  for (const CountCase& c : cases) {
    use_criterion(c.slot, c.words);
    EXPECT_EQ(scan(c.message).count, c.count) << c.what;
  }
}

TEST_F(MessageScan, LeavesAMessageAloneThatWasFilteredBefore) {
  struct Case {
    const char* what;
    const char* postoffice;
    const char* mailbox;
    const char* message;
    bool applied;
  };
  const Case cases[] = {
      {"marked, in any case", "", "", "A: b\r\nx-pvfilter: 1\r\n\r\n", false},
      {"marked after an address", "", "", "To: a\r\n b\r\nX-PVFilter: 1\r\n\r\n", false},
      {"the mark needs its blank", "", "", "X-PVFilter:1\r\n\r\n", true},
      {"a folded line is no mark", "", "", "A: b\r\n X-PVFilter: 1\r\n\r\n", true},
      {"the body may hold it", "", "", "A: b\r\n\r\nX-PVFilter: 1\r\n", true},
      {"a postoffice's mark means nothing to the server", "", "", "X-PV-POFilter: \r\n\r\n", true},
      {"the server's mark means nothing to a postoffice", "Main", "", "X-PVFilter: 1\r\n\r\n", true},
      {"marked by this postoffice", "Main", "", "X-PV-POFilter: MAIN\r\n\r\n", false},
      {"marked by another postoffice", "Main", "", "X-PV-POFilter: Main2\r\n\r\n", true},
      {"a mailbox looks at no mark", "Main", "jane", "X-PV-POFilter: Main\r\nX-PVFilter: 1\r\n\r\n", true},
  };
  for (const Case& c : cases) {
    set_.postoffice.cut(c.postoffice);
    set_.mailbox.cut(c.mailbox);
    EXPECT_EQ(scan(c.message).applied, c.applied) << c.what;
  }
}

TEST_F(MessageScan, StopsAtTheMark) {
  use_criterion(kHeadersContain, "*");
  EXPECT_EQ(scan("A: b\r\nX-PVFilter: 1\r\nC: d\r\n\r\n").count, 1);
}

TEST_F(MessageScan, ComparesTheSizeOfTheFile) {
  use_criterion(kSize, "9");
  EXPECT_EQ(scan("A: b\r\n\r\nxx").count, 1);
  EXPECT_EQ(scan("A: b\r\n\r\nx").count, 0);
}

constexpr char kStart[] = "Allocating 0 Results\nProcessing Message... \r\nMessage Size detected as ";

TEST_F(MessageScan, AppliesNothingToWhatIsNoFile) {
  const std::string output = std::string(kStart) + "0\r\nProcessing Message Content... \r\n";
  Scanned scanned = scan_file();
  EXPECT_FALSE(scanned.applied);
  EXPECT_EQ(scanned.output, output);

  tree_.make_directory("queues/SMTP/Inbound/Messages/A.MAI");
  scanned = scan_file();
  EXPECT_FALSE(scanned.applied);
  EXPECT_EQ(scanned.output, output);
}

TEST_F(MessageScan, PrintsItsFindings) {
  const std::string multipart_message =
      "From: \t ann\r\n x\r\nTo:jane\r\nCc: joe\r\nX: boundary=xx\r\n\r\n"
      "--xx\r\nA: filename=\"a\r\nB: name=b\r\nContent-Transfer-Encoding: base64\r\n";
  EXPECT_EQ(scan(multipart_message).output,
            std::string(kStart) + std::to_string(multipart_message.size()) +
                "\r\nProcessing Message Content... \r\n"
                "From Found:ann\r\n\nTo Found:jane\r\n\nMime Encapsulatation detected\n"
                "No closing quotation for attachment\nNo closing quotation for attachment\n"
                "Attachment Found:B: name=b\r\n\nSkipping encoded attachment\n");
  EXPECT_EQ(scan("\r\nbegin \r\nFileName=\"b\"\r\n").output, std::string(kStart) +
                                                                 "24\r\nProcessing Message Content... \r\n"
                                                                 "Binhex Attachment Found:FileName=\"b\"\r\n\n");
}

}  // namespace
}  // namespace pv
