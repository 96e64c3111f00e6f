#include <gmock/gmock.h>

#include <random>
#include <string>
#include <string_view>

#include "common/fields.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/evaluation_fixture.h"
#include "filters/list_criteria.h"
#include "filters/printed_by.h"

namespace pv {
namespace {

using EvaluateLists = test::Evaluation;

constexpr std::string_view kWordDelimiters = " \r'\"\n";
constexpr std::string_view kAddressDelimiters = "' \r'\"\n<>;";
constexpr std::string_view kNameDelimiters = "\r'\"\n;";
constexpr std::string_view kOffers = "<REFERENCE><FILE>offers.txt</FILE>";
constexpr std::string_view kOffersFile = "conf/FILTERS/PATTERNS/offers.txt";

struct ListCase {
  const char* what;
  std::string_view data;
  int entry_count;
  std::string_view text;
  std::string_view found;
};

constexpr ListCase kWordLists[] = {
    {"one word of two", "viagra\tcialis", 1, "Buy Cialis now", "1<MF-W>cialis</MF-W>[1][]"},
    {"entries have values of their own", "viagra\tcialis", 2, "Buy Cialis now", "1<MF-W>cialis</MF-W>[][1]"},
    {"an entry beyond the fields takes the last", "buy\tnow", 3, "now", "2<MF-W>now</MF-W>[][1]"},
    {"but not when there is only one", "now", 2, "now", "1<MF-W>now</MF-W>[1][]"},
    {"17 entries", "a\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta", 17, "a", "16<MF-W>a</MF-W>[1][1]"},
};

TEST_F(EvaluateLists, CountWordsAndNameTheLast) {
  for (const ListCase& c : kWordLists) {
    only(kSubject, c.data, c.entry_count);
    EvaluateWordList(kSubject, c.text, kWordDelimiters, set, results);
    EXPECT_EQ(found(kSubject), c.found) << c.what;
  }
}

TEST_F(EvaluateLists, AddUpOverTheLinesOfAMessage) {
  add(kBody, "free\toffer");
  add(kBody, "win");
  for (const std::string_view line : {"a free offer\n", "no match\n", "free to win\n"}) {
    EvaluateWordList(kBody, line, kWordDelimiters, set, results);
  }
  EXPECT_EQ(found(kBody, 1), "3<MF-W>free</MF-W>[1][]");
  EXPECT_EQ(found(kBody, 2), "1<MF-W>win</MF-W>[1][]");
}

TEST_F(EvaluateLists, FollowTheCaseSensitivitySetting) {
  server.set_number(kAgentKey, "Case Sensitivity", 1);
  only(kSubject, "cialis\tBuy");
  EvaluateWordList(kSubject, "Buy Cialis now", kWordDelimiters, set, results);
  EvaluateAddressList(kSubject, "BUY", kWordDelimiters, set, results);
  EvaluateEnvelopeValue(kSubject, kWordDelimiters, "BUY", set, results);
  EvaluateAttachmentName(kSubject, "name=BUY", kWordDelimiters, set, results);
  EXPECT_EQ(found(kSubject), "1<MF-W>Buy</MF-W>[1][]");
}

void evaluate_envelope(SlotIndex slot, std::string_view text, std::string_view delimiters, const FilterSet& set,
                       MatchResults& results) {
  EvaluateEnvelopeValue(slot, delimiters, text, set, results);
}

struct Evaluator {
  const char* name;
  decltype(&EvaluateWordList) run;
  std::size_t value_capacity;
  const char* inline_tag;
  const char* file_tag;
  const char* inline_lines;  // printed for one match among two words
};

constexpr Evaluator kEvaluators[] = {
    {"word list", EvaluateWordList, 2048, "MF-W", "MF-W",
     "Message General Criteria met against [offer] in specified word list.\n"},
    {"address list", EvaluateAddressList, 1024, "MF-R", "MF-W",
     "Processing Recipient List of 2 delimiters\r\nMessage sender/recipient criteria met\n"},
    {"envelope value", evaluate_envelope, 1024, "MF-E", "MF-E", ""},
};

std::string tagged(std::string_view tag, std::string_view value) {
  return "<" + std::string(tag) + ">" + std::string(value) + "</" + std::string(tag) + ">";
}

TEST_F(EvaluateLists, PrintAndTagInlineMatches) {
  for (const Evaluator& evaluator : kEvaluators) {
    only(kToOrCc, "free\toffer");
    const auto run = [&] { evaluator.run(kToOrCc, "an offer", kWordDelimiters, set, results); };
    EXPECT_EQ(test::printed_by(run), evaluator.inline_lines) << evaluator.name;
    EXPECT_EQ(found(kToOrCc), "1" + tagged(evaluator.inline_tag, "offer") + "[1][]") << evaluator.name;
  }
}

TEST_F(EvaluateLists, EveryMatchingLineOfAWordFileCounts) {
  server.write(kOffersFile, "free\r\n\r\nlose\r\nwin\r\n");
  server.write("conf/FILTERS/PATTERNS/MTAFILTER-GENERAL.TXT", "free\r\n");
  for (const Evaluator& evaluator : kEvaluators) {
    only(kFrom, std::string("now\t") + std::string(kOffers), 2);
    const auto run = [&] { evaluator.run(kFrom, "free to win", kWordDelimiters, set, results); };
    EXPECT_THAT(test::printed_by(run),
                testing::EndsWith("Message General Criteria met against [free] in specified word file.\n"
                                  "Message General Criteria met against [win] in specified word file.\n"));
    EXPECT_EQ(found(kFrom), "2" + tagged(evaluator.file_tag, "win") + "[][1]") << evaluator.name;
    only(kFrom, "");
    evaluator.run(kFrom, "free", kWordDelimiters, set, results);
    EXPECT_EQ(matched(kFrom), tagged(evaluator.file_tag, "free")) << evaluator.name << ": the general word file";
  }
}

TEST_F(EvaluateLists, AMissingWordFileMakesTheReferenceAWord) {
  for (const std::uint32_t caching : {0U, 1U}) {
    settings().allow_pattern_caching = caching;
    for (const Evaluator& evaluator : kEvaluators) {
      only(kFrom, kOffers);
      evaluator.run(kFrom, kOffers, kWordDelimiters, set, results);
      EXPECT_EQ(matched(kFrom), tagged(evaluator.inline_tag, kOffers)) << evaluator.name << " caching " << caching;
    }
  }
}

TEST_F(EvaluateLists, WithCachingTheFileCountsAsItWasLoaded) {
  settings().allow_pattern_caching = 1;
  server.write(kOffersFile, "free\r\n");
  set.patterns.load(server.path(kOffersFile), "%s\n");
  server.remove(kOffersFile);
  for (const Evaluator& evaluator : kEvaluators) {
    only(kFrom, kOffers);
    const auto run = [&] { evaluator.run(kFrom, "free", kWordDelimiters, set, results); };
    EXPECT_EQ(test::printed_by(run), "Message Criteria (Tag=" + std::string(evaluator.file_tag) +
                                         ") met against [free] in specified word file.\n");
    EXPECT_EQ(matched(kFrom), tagged(evaluator.file_tag, "free")) << evaluator.name;
  }
}

// Values at the limit of an evaluator's buffer: the only entry is cut, one of several is emptied.
TEST_F(EvaluateLists, ValuesBeyondTheLimitAreCutOrEmptied) {
  for (const Evaluator& evaluator : kEvaluators) {
    const std::string filler(evaluator.value_capacity - 1 - std::string_view("\toffer").size(), 'x');
    const auto counted = [&](const std::string& data, int entries, std::string_view text) {
      only(kFrom, data, entries);
      evaluator.run(kFrom, text, kWordDelimiters, set, results);
      return count(kFrom);
    };
    EXPECT_EQ(counted(filler + "\toffers", 1, "offer"), 1) << evaluator.name;
    EXPECT_EQ(counted(filler + "\toffers", 1, "offers"), 0) << evaluator.name;

    const std::string longest(evaluator.value_capacity - 1, 'x');
    EXPECT_EQ(counted(longest + "\toffer", 2, longest), 1) << evaluator.name;
    EXPECT_EQ(counted("x" + longest + "\toffer", 2, "x" + longest), 0) << evaluator.name;
  }
}

struct SenderCase {
  const char* what;
  std::string_view sender;
  std::string_view word;
  std::string_view text;
  std::string_view matched;  // empty: no match
};

constexpr SenderCase kSenders[] = {
    {"the bare address", "[SMTP:ann@example.org]", "[PV_SENDER]", " <Ann@example.org>", "ann@example.org"},
    {"twice", "[SMTP:ann]", "[PV_SENDER]+[PV_SENDER]", "ann+ann", "ann+ann"},
    {"no sender, so no word", "", "[PV_SENDER]", "[PV_SENDER]", ""},
    {"another spelling is a word", "[SMTP:ann]", "[pv_sender]", "[PV_SENDER]", "[pv_sender]"},
};

TEST_F(EvaluateLists, TheSenderIsPutIntoWords) {
  for (const SenderCase& c : kSenders) {
    ASSERT_TRUE(message.envelope.sender.assign(c.sender));
    only(kFrom, c.word);
    const std::string output =
        test::printed_by([&] { EvaluateWordList(kFrom, c.text, kAddressDelimiters, set, results); });
    EXPECT_EQ(matched(kFrom), c.matched.empty() ? "" : tagged("MF-W", c.matched)) << c.what;
    EXPECT_THAT(output, testing::HasSubstr(std::string(c.matched))) << c.what;
    start_message();
    EvaluateAddressList(kFrom, c.text, kAddressDelimiters, set, results);
    EXPECT_EQ(matched(kFrom), c.matched.empty() ? "" : tagged("MF-R", c.matched)) << c.what;
  }
}

TEST_F(EvaluateLists, AWordThatTheSenderMakesTooLongStaysAsWritten) {
  const std::string sender(40, 's');
  ASSERT_TRUE(message.envelope.sender.assign("[SMTP:" + sender + "]"));
  const auto counted = [&](decltype(&EvaluateWordList) evaluate, std::size_t size, bool replaced) {
    const std::string rest(size - sender.size(), 'x');
    only(kFrom, "[PV_SENDER]" + rest);
    evaluate(kFrom, (replaced ? sender : "[PV_SENDER]") + rest, kWordDelimiters, set, results);
    return count(kFrom);
  };
  EXPECT_EQ(counted(EvaluateWordList, 2046, true), 1);
  EXPECT_EQ(counted(EvaluateWordList, 2047, false), 1);
  EXPECT_EQ(counted(EvaluateAddressList, 1023, true), 1);
  EXPECT_EQ(counted(EvaluateAddressList, 1024, false), 1);
}

struct AttachmentCase {
  const char* what;
  std::string_view data;
  std::string_view line;
  std::string_view found;
  std::string_view printed;
};

constexpr char kBadQuotes[] = "No closing quotation for attachment\nNo closing quotation for attachment\n";
constexpr AttachmentCase kAttachments[] = {
    {"a quoted file name", "*.exe\t*.bat", "x; filename=\"Run Me.EXE\"\r\n", "1<MF-A>*.exe</MF-A>[1][]",
     "Attachment Criteria Met\n"},
    {"each word meets the file name or the name", "a.exe\tb.txt", "name=a.exe; filename=b.txt",
     "2<MF-A>b.txt</MF-A>[1][]", "Attachment Criteria Met\nAttachment Criteria Met\n"},
    {"a name behind a file name is hidden by it", "c.txt", "filename=b.exe; name=c.txt", "0[][]", ""},
    {"no attribute", "*", "Content-Type: text/plain", "0[][]", ""},
    {"names have no word files", kOffers, "name=a.exe", "0[][]", ""},
    {"nor the sender in a word", "[PV_SENDER]", "name=ann@example.org", "0[][]", ""},
    {"a malformed name, of both attributes", "*", "filename=\"a.exe", "0[][]", kBadQuotes},
};

TEST_F(EvaluateLists, WordsMatchTheAttachmentName) {
  server.write(kOffersFile, "*\r\n");
  for (const AttachmentCase& c : kAttachments) {
    only(kBody, c.data);
    const auto run = [&] { EvaluateAttachmentName(kBody, c.line, kNameDelimiters, set, results); };
    EXPECT_EQ(test::printed_by(run), c.printed) << c.what;
    EXPECT_EQ(found(kBody), c.found) << c.what;
  }
  only(kBody, "a\tb");
  const auto run = [&] { EvaluateAttachmentName(kBody, "filename=\"a", kNameDelimiters, set, results); };
  EXPECT_EQ(test::printed_by(run), std::string(kBadQuotes) + kBadQuotes) << "reported for every word";
}

TEST(ListCriteria, WordsAreTheCountedFields) {
  std::mt19937 random(20240612);
  for (int n = 0; n < 3000; ++n) {
    std::string value(random() % (n % 100 == 0 ? 3000 : 12), '\0');
    for (char& c : value) c = "ab\t"[random() % 3];
    Words words(value);
    const int fields = count_fields(value, "\t");
    for (int number = 1; number <= fields; ++number) {
      BoundedText<4096> field;
      ASSERT_TRUE(split_field(value, "\t", number, field));
      ASSERT_EQ(words.next(), field.view()) << number << " of [" << value << "]";
    }
    EXPECT_EQ(words.next(), std::nullopt) << "[" << value << "]";
  }
}

}  // namespace
}  // namespace pv
