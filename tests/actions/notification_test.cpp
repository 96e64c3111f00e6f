#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "actions/new_message_fixture.h"

namespace pv {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

class Notifications : public test::NewMessages {
 protected:
  void write_template(std::string_view text) { tree_.write("conf/FILTERS/Templates/T.TXT", text); }

  std::string from_template(std::string_view text, const char* keyword = "NOTIFY_SENDER", const char* data = "T") {
    write_template(text);
    EXPECT_TRUE(run(keyword, data)) << keyword;
    const std::string written = this->text();
    remove_new_message();
    return written;
  }

  // The message of a default text after its Message-ID; `to` and the last headers differ.
  std::string default_text(std::string_view to, std::string_view last_headers) const {
    return "Message-ID: " + message_id() +
           "\r\nFrom: \"Message Filter Agent\" <filter@example.org>\r\nTo: " + std::string(to) +
           "\r\nSubject: Message Filter Notification: Virus\r\nDate: " + std::string(rfc822_date_now().view()) +
           "\r\nX-PVFilter: 1\r\n" + std::string(last_headers) +
           "\r\n\r\nPostVane: PostVane Message Scan intercepted the delivery of this message. \r\r\n"
           "Reason: (why)\r\n\r\nMessage headers follow:\r\n\r\nSubject: hello\r\n";
  }
};

constexpr char kBulkLast[] = "Auto-Submitted: auto-replied\r\nPrecedence: bulk\r\n";
constexpr char kBulkFirst[] = "Precedence: bulk\r\nAuto-Submitted: auto-replied\r\n";
constexpr char kReference[] = "<REFERENCE><FILE>T</FILE><ADDRESS>admin</ADDRESS>";

struct Kind {
  const char* keyword;
  const char* data;        // with the template T
  const char* plain_data;  // without template
  const char* to;          // of the default text
  const char* last_headers;
  const char* recipients;
  const char* printed;
};
constexpr Kind kKinds[] = {
    {"NOTIFY_SENDER", "T", "", "<ann@example.com>", kBulkLast, "[SMTP:ann@example.com]",
     "Sending Notification to Sender: ([SMTP:ann@example.com])\n"},
    {"NOTIFY_ADDRESS", kReference, "<REFERENCE><ADDRESS>admin</ADDRESS>", "<admin>", kBulkFirst, "[SMTP:admin]",
     "Sending Notification to address: (admin)\n"},
    {"NOTIFY_RECIPIENTS", "T", "", "Undisclosed-Recipients", kBulkFirst,
     "[SMTP:jane@example.org];[SMTP:joe@example.org]", ""},
};

TEST_F(Notifications, DefaultTextsToTheByte) {
  for (const Kind& kind : kKinds) {
    ASSERT_TRUE(run(kind.keyword, kind.plain_data)) << kind.keyword;
    EXPECT_EQ(text(), default_text(kind.to, kind.last_headers)) << kind.keyword;
    EXPECT_EQ(command(), command_for(kind.recipients)) << kind.keyword;
    EXPECT_THAT(printed_, EndsWith(kind.printed)) << kind.keyword;
    EXPECT_EQ(message_.message_id.view(), "M1.MAI");
    remove_new_message();

    EXPECT_TRUE(run(kind.keyword, kind.data)) << "no such template";
    EXPECT_EQ(text(), default_text(kind.to, kind.last_headers)) << kind.keyword;
    EXPECT_THAT(printed_, HasSubstr(kind.printed + tree_.path("conf/FILTERS/Templates/T.TXT")));
    remove_new_message();
  }
  tree_.make_directory("conf/FILTERS/Templates/T.TXT");
  EXPECT_TRUE(run("NOTIFY_SENDER", "T"));
  EXPECT_EQ(text(), default_text("<ann@example.com>", kBulkLast)) << "a directory is no template";
}

TEST_F(Notifications, APostofficeTellsOfTheOutgoingMessage) {
  use_postoffice("Main", "Outgoing: yes\r\n\r\n");
  write_template("[PV_HEADERS]");
  for (const Kind& kind : kKinds) {
    ASSERT_TRUE(run(kind.keyword, kind.data)) << kind.keyword;
    EXPECT_EQ(text(), "Outgoing: yes\r\nX-PVFilter: 1\r\n") << kind.keyword;
    EXPECT_EQ(command(), command_for(kind.recipients)) << kind.keyword;
    remove_new_message();
  }
}

// The scan would take a later piece of the long line for the end of the headers, and notify of the notification.
TEST_F(Notifications, TheMarkComesFirstWhereAHeaderWouldHideIt) {
  const std::string header = "Long: " + std::string(2041, 'x') + "\r\n";
  use_postoffice("Main", header + "\r\n");
  write_template("[PV_HEADERS]\r\n\r\ntext\r\n");
  ASSERT_TRUE(run("NOTIFY_SENDER", "T"));
  EXPECT_EQ(text(), "X-PVFilter: 1\r\n" + header + "X-PVFilter: 1\r\n\r\ntext\r\n");
}

TEST_F(Notifications, PutTheMarkIntoTheTemplatesHeaders) {
  const std::string x(2047, 'x');
  const struct {
    const char* what;
    std::string source;
    std::string written;
  } cases[] = {
      {"before the first empty line", "A: b\r\n\r\nc\r\n\r\n", "A: b\r\nX-PVFilter: 1\r\n\r\nc\r\n\r\n"},
      {"bare line feeds", "A: b\n\nc\n", "A: b\r\nX-PVFilter: 1\r\n\r\nc\r\n"},
      {"the template's own, in any case", "x-pvfilter: 0\n\nc\n", "x-pvfilter: 0\r\n\r\nc\r\n"},
      {"one in the body comes too late", "A: b\n\nX-PVFilter: 1\n", "A: b\r\nX-PVFilter: 1\r\n\r\nX-PVFilter: 1\r\n"},
      {"at the end", "A: b\r\n", "A: b\r\nX-PVFilter: 1\r\n"},
      {"at the end, on a line of its own", "A: b", "A: b\r\nX-PVFilter: 1\r\n"},
      {"an empty template", "", "X-PVFilter: 1\r\n"},
      {"an empty line that a token left", "[PV_CRITERIA]A: b\n[PV_ACCOUNT]\nc\n",
       "SUBJECTA: b\r\nX-PVFilter: 1\r\n\r\nc\r\n"},
      {"the end of a long line is no empty line", x + "\r\nA: b\n\n",
       "X-PVFilter: 1\r\n" + x + "\r\nA: b\r\nX-PVFilter: 1\r\n\r\n"},
      {"a piece of a long line is no header", x + "X-PVFilter: 1\n\n", x + "X-PVFilter: 1\r\nX-PVFilter: 1\r\n\r\n"},
      {"NUL and stray CR are kept", "A: \0\rb\n\n"s, "A: \0\rb\r\nX-PVFilter: 1\r\n\r\n"s},
  };
  for (const auto& c : cases) EXPECT_EQ(from_template(c.source), c.written) << c.what;
}

TEST_F(Notifications, InsertTheMessagesHeadersEachTime) {
  const struct {
    const char* what;
    std::string message;
    std::string inserted;
  } cases[] = {
      {"up to the empty line", "A: b\r\n c\r\n\r\nD: e\r\n", "A: b\r\n c\r\n"},
      {"bare line feeds", "A: b\n\nD: e\n", "A: b\r\n"},
      {"NUL bytes are kept", "A: \0b\r\nC: d\r\n\r\n"s, "A: \0b\r\nC: d\r\n"s},
      {"all lines without an empty one", "A: b\r\nC: d", "A: b\r\nC: d\r\n"},
      {"a long line", std::string(200000, 'x') + "\r\n\r\n", std::string(200000, 'x') + "\r\n"},
      {"the end of a long line does not end them", std::string(4095, 'x') + "\r\nA: b\r\n\r\n",
       std::string(4095, 'x') + "\r\nA: b\r\n"},
      {"none", "\r\nbody", ""},
  };
  for (const auto& c : cases) {
    queue(c.message);
    for (const Kind& kind : kKinds) {
      EXPECT_EQ(from_template("\nh [PV_HEADERS] [PV_MID]\n-\n[PV_HEADERS]\nend\n", kind.keyword, kind.data),
                "X-PVFilter: 1\r\n\r\n" + c.inserted + "-\r\n" + c.inserted + "end\r\n")
          << c.what << ", " << kind.keyword;
    }
  }
}

TEST_F(Notifications, ReplaceTheTokens) {
  message_.envelope.client_ip.cut("10.0.0.1");
  message_.envelope.account.cut("a_b");
  const std::string date(rfc822_date_now().view());
  const struct {
    const char* line;
    std::string written;
  } cases[] = {
      {"[PV_FILTERNAME], [PV_FILTERNAME]", "Virus, Virus"},
      {"[PV_ACTIONDESC] [PV_BADMAILSENDER] [PV_TIME]", "why filter@example.org " + date},
      {"[PV_MSG] [PV_CON] [PV_IP] [PV_CRITERIA]", "M1.MAI SMTP 10.0.0.1 SUBJECT"},
      {"[PV_SENDER] [PV_MF-W] [PV_WORDLIST]", "ann@example.com fr=3Fe fr?e"},
      {"[PV_ACCOUNT] a_b=?", "a=5Fb a_b=?"},
      {"[PV_SZ] [PV_mid] [PV_", "[PV_SZ] [PV_mid] [PV_"},
  };
  set_matched("<MF-W>fr?e</MF-W>");
  for (const auto& c : cases) {
    for (const Kind& kind : kKinds) {
      EXPECT_EQ(from_template("\n" + std::string(c.line) + "\n", kind.keyword, kind.data),
                "X-PVFilter: 1\r\n\r\n" + c.written + "\r\n")
          << kind.keyword;
    }
  }
  const std::string caught = from_template("\nCaught [PV_MID]\n");
  EXPECT_THAT(caught, EndsWith("Caught " + message_id() + "\r\n"));
}

// The line with its line feed: 1023 bytes for the sender, 2047 for the others.
TEST_F(Notifications, LeaveOutAReplacementThatDoesNotFit) {
  set_.filter(1).display_name.cut("nine nine seventeen");  // as long as its token and 4 bytes
  for (const Kind& kind : kKinds) {
    const std::size_t largest = kind.keyword == "NOTIFY_SENDER"s ? 1023 : 2047;
    for (const std::size_t size : {largest, largest + 1}) {
      const std::string x(size - 20, 'x');  // the name and the line feed fill up to `size`
      const char* shown = size == largest ? "nine nine seventeen" : "[PV_FILTERNAME]";
      EXPECT_THAT(from_template("\n" + x + "[PV_FILTERNAME]\n", kind.keyword, kind.data),
                  EndsWith("\n" + x + shown + "\r\n"))
          << kind.keyword << " " << size;
    }
  }
  for (const std::size_t size : {1023u, 1024u}) {  // of the line, its token included, and the value
    const std::string x(size - 16, 'x');
    EXPECT_THAT(from_template("\n" + x + "[PV_IP]\n"),
                EndsWith("\n" + x + (size == 1023 ? "10.0.0.1" : "[PV_IP]") + "\r\n"));
  }
  const std::string x(2040, 'x');
  EXPECT_THAT(from_template("\n" + x + "[PV_MID] [PV_IP]\n"), EndsWith("\n" + x + "[PV_MID] 10.0.0.1\r\n"))
      << "a token across two pieces is not seen";
}

TEST_F(Notifications, HostileValuesStayOnTheirLine) {
  message_.envelope.sender.cut("[SMTP:a\r\nBcc: b\tc@d]");
  set_.filter(1).display_name.cut("two\rlines\n\n");
  set_matched("<MF-W>x\ny\rz</MF-W>");
  ASSERT_TRUE(run("NOTIFY_SENDER", "", "because\rof"));
  EXPECT_THAT(text(),
              HasSubstr("\r\nTo: <a  Bcc: b\tc@d>\r\nSubject: Message Filter Notification: two lines\r\nDate: "));
  EXPECT_THAT(text(), HasSubstr("Reason: (because\rof)\r\n"));
  EXPECT_EQ(command(), command_for("[SMTP:a")) << "cut where it would begin a line";
  EXPECT_EQ(printed_, "Sending Notification to Sender: ([SMTP:a  Bcc: b\tc@d])\n");
  remove_new_message();
  EXPECT_THAT(from_template("A: [PV_FILTERNAME] [PV_SENDER]\nB: [PV_WORDLIST]\n"),
              "A: two lines a=0D=0ABcc: b=09c@d\r\nB: x y z\r\nX-PVFilter: 1\r\n");
}

TEST_F(Notifications, WithoutAddressesThereAreEmptyOnes) {
  tree_.write("settings.reg", "");
  message_.envelope.sender.cut("ann@example.com");
  ASSERT_TRUE(run("NOTIFY_SENDER", ""));
  EXPECT_THAT(text(), HasSubstr("From: \"Message Filter Agent\" <>\r\nTo: <>\r\n"));
  EXPECT_EQ(command(), command_for("ann@example.com", ""));
}

TEST_F(Notifications, ReadTheReference) {
  write_template("from the template\n");
  const std::string longest(63, 'f');
  tree_.write("conf/FILTERS/Templates/" + longest + ".TXT", "from the template\n");
  const struct {
    const char* what;
    std::string data;
    const char* recipients;  // "": the action fails
    bool from_template = true;
  } cases[] = {
      {"whole", kReference, "[SMTP:admin]"},
      {"a bracketed address", "<REFERENCE><FILE>T</FILE><ADDRESS>[SF:admin]</ADDRESS>", "[SF:admin]"},
      {"an empty address", "<REFERENCE><FILE>T</FILE><ADDRESS></ADDRESS>", "[SMTP:]"},
      {"no file", "<REFERENCE><ADDRESS>admin</ADDRESS>", "[SMTP:admin]", false},
      {"63 bytes of file", "<REFERENCE><FILE>" + longest + "</FILE><ADDRESS>a</ADDRESS>", "[SMTP:a]"},
      {"64 bytes of file", "<REFERENCE><FILE>" + longest + "f</FILE><ADDRESS>a</ADDRESS>", "[SMTP:a]", false},
      {"no address", "<REFERENCE><FILE>T</FILE>", ""},
      {"half an address", "<REFERENCE><ADDRESS>admin", ""},
      {"lower case", "<reference><FILE>T</FILE><ADDRESS>admin</ADDRESS>", ""},
      {"not at the start", " <REFERENCE><ADDRESS>admin</ADDRESS>", ""},
  };
  for (const auto& c : cases) {
    const bool queued = *c.recipients != '\0';
    EXPECT_EQ(run("NOTIFY_ADDRESS", c.data), queued) << c.what;
    EXPECT_EQ(command(), queued ? command_for(c.recipients) : "") << c.what;
    EXPECT_EQ(text().starts_with("from the template"), queued && c.from_template) << c.what;
    if (queued) remove_new_message();
  }
  run("NOTIFY_ADDRESS", "<REFERENCE>");
  EXPECT_EQ(printed_, "No recipient address defined for notification\n");
}

TEST_F(Notifications, WithoutMessageNothingIsQueued) {
  tree_.remove(test::kMessageFile);
  for (const Kind& kind : kKinds) EXPECT_FALSE(run(kind.keyword, kind.data)) << kind.keyword;
  EXPECT_THAT(tree_.names(test::kNewMessages), ElementsAre());
  EXPECT_THAT(tree_.names(test::kInbound), ElementsAre("M1.MAI", "Messages"));
}

}  // namespace
}  // namespace pv
