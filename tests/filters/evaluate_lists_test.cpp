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
#include "filters/word_file.h"

namespace pv {
namespace {

using EvaluateLists = test::Evaluation;

constexpr std::string_view kWordDelimiters = " \r'\"\n";
constexpr std::string_view kAddressDelimiters = "' \r'\"\n<>;";
constexpr std::string_view kNameDelimiters = "\r'\"\n;";

struct ListCase {
  const char* what;
  std::string_view data;
  int entry_count;
  std::string_view text;
  int count;
  std::string_view matched;
  std::string_view values;  // of the first two entries
};

constexpr ListCase kWordLists[] = {
    {"one word of two", "viagra\tcialis", 1, "Buy Cialis now", 1, "<MF-W>cialis</MF-W>", "[1][]"},
    {"every word counts, the last one is named", "buy\tcialis", 1, "Buy Cialis now", 2, "<MF-W>cialis</MF-W>", "[1][]"},
    {"entries have values of their own", "viagra\tcialis", 2, "Buy Cialis now", 1, "<MF-W>cialis</MF-W>", "[][1]"},
    {"an entry beyond the fields takes the last", "buy\tnow", 3, "now", 2, "<MF-W>now</MF-W>", "[][1]"},
    {"but not when there is only one", "now", 2, "now", 1, "<MF-W>now</MF-W>", "[1][]"},
    {"a leading tab hides the last word", "\tbuy\tnow", 1, "now", 0, "", "[][]"},
    {"a leading tab hides no other", "\tbuy\tnow", 1, "buy", 1, "<MF-W>buy</MF-W>", "[1][]"},
    {"more entries than are kept", "a\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta\ta", 18, "a", 16,
     "<MF-W>a</MF-W>", "[1][1]"},
};

TEST_F(EvaluateLists, CountWordsAndNameTheLast) {
  for (const ListCase& c : kWordLists) {
    only(kSubject, c.data, c.entry_count);
    EvaluateWordList(kSubject, c.text, kWordDelimiters, set, results);
    EXPECT_EQ(count(kSubject), c.count) << c.what;
    EXPECT_EQ(matched(kSubject), c.matched) << c.what;
    EXPECT_EQ(values(kSubject, 2), c.values) << c.what;
  }
}

TEST_F(EvaluateLists, AddUpOverTheLinesOfAMessage) {
  add(kBody, "free\toffer");
  add(kBody, "nothing");
  add(kBody, "win\t[PV_SENDER]");
  for (const std::string_view line : {"a free offer\n", "no match\n", "free to win\n"}) {
    EvaluateWordList(kBody, line, kWordDelimiters, set, results);
  }
  EXPECT_EQ(count(kBody, 1), 3);
  EXPECT_EQ(matched(kBody, 1), "<MF-W>free</MF-W>");
  EXPECT_EQ(count(kBody, 2), 0);
  EXPECT_EQ(matched(kBody, 3), "<MF-W>win</MF-W>");
  EXPECT_EQ(count(kSubject, 1), 0);
}

TEST_F(EvaluateLists, LeaveFiltersAloneThatDoNotUseTheSlot) {
  for (const int status : {0, 2, -1}) {
    only(kSubject, "free", 1, status);
    const std::string output = test::printed_by([&] {
      EvaluateWordList(kSubject, "free", kWordDelimiters, set, results);
      EvaluateAddressList(kSubject, "free", kWordDelimiters, set, results);
      EvaluateEnvelopeValue(kSubject, kWordDelimiters, "free", set, results);
      EvaluateAttachmentName(kSubject, "name=\"free", kWordDelimiters, set, results);
    });
    EXPECT_EQ(count(kSubject), 0) << status;
    EXPECT_EQ(output, "") << status;
  }
}

TEST_F(EvaluateLists, FollowTheCaseSensitivitySetting) {
  server.set_number(kAgentKey, "Case Sensitivity", 1);
  only(kSubject, "cialis\tBuy");
  EvaluateWordList(kSubject, "Buy Cialis now", kWordDelimiters, set, results);
  EXPECT_EQ(matched(kSubject), "<MF-W>Buy</MF-W>");
  EXPECT_EQ(count(kSubject), 1);
  EvaluateAddressList(kSubject, "BUY", kWordDelimiters, set, results);
  EvaluateEnvelopeValue(kSubject, kWordDelimiters, "BUY", set, results);
  EvaluateAttachmentName(kSubject, "name=BUY", kWordDelimiters, set, results);
  EXPECT_EQ(count(kSubject), 1);
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
  const char* file_lines;    // printed for the lines free and win of a word file
};

constexpr char kTwoFileLines[] =
    "Message General Criteria met against [free] in specified word file.\n"
    "Message General Criteria met against [win] in specified word file.\n";
constexpr Evaluator kWordFileEvaluators[] = {
    {"word list", EvaluateWordList, 2048, "MF-W", "MF-W",
     "Message General Criteria met against [offer] in specified word list.\n", kTwoFileLines},
    {"address list", EvaluateAddressList, 1024, "MF-R", "MF-W",
     "Processing Recipient List of 2 delimiters\r\nMessage sender/recipient criteria met\n", kTwoFileLines},
    {"envelope value", evaluate_envelope, 1024, "MF-E", "MF-E", "", kTwoFileLines},
};

std::string tagged(std::string_view tag, std::string_view value) {
  return "<" + std::string(tag) + ">" + std::string(value) + "</" + std::string(tag) + ">";
}

TEST_F(EvaluateLists, PrintAndTagInlineMatches) {
  for (const Evaluator& evaluator : kWordFileEvaluators) {
    only(kToOrCc, "free\toffer");
    const auto run = [&] { evaluator.run(kToOrCc, "an offer", kWordDelimiters, set, results); };
    EXPECT_EQ(test::printed_by(run), evaluator.inline_lines) << evaluator.name;
    EXPECT_EQ(matched(kToOrCc), tagged(evaluator.inline_tag, "offer")) << evaluator.name;
    EXPECT_EQ(values(kToOrCc, 1), "[1]") << evaluator.name;
  }
}

TEST_F(EvaluateLists, TheLastMatchOfASlotIsNamedWhicheverEvaluatorFoundIt) {
  add(kToOrCc, "ann@example.org");
  EvaluateEnvelopeValue(kToOrCc, ":]\r\n", "[SMTP:ann@example.org];[SMTP:bob@example.org]", set, results);
  EXPECT_EQ(matched(kToOrCc), "<MF-E>ann@example.org</MF-E>");
  EvaluateAddressList(kToOrCc, " \"Ann\" <ann@example.org>\r\n", kAddressDelimiters, set, results);
  EXPECT_EQ(matched(kToOrCc), "<MF-R>ann@example.org</MF-R>");
  EXPECT_EQ(count(kToOrCc), 2);
}

constexpr std::string_view kOffers = "<REFERENCE><FILE>offers.txt</FILE>";

TEST_F(EvaluateLists, EveryMatchingLineOfAWordFileCounts) {
  server.write("conf/FILTERS/PATTERNS/offers.txt", "free\r\n\r\nlose\r\nwin\r\n");
  for (const Evaluator& evaluator : kWordFileEvaluators) {
    only(kFrom, std::string("now\t") + std::string(kOffers), 2);
    const auto run = [&] { evaluator.run(kFrom, "free to win", kWordDelimiters, set, results); };
    EXPECT_THAT(test::printed_by(run), testing::EndsWith(evaluator.file_lines)) << evaluator.name;
    EXPECT_EQ(count(kFrom), 2) << evaluator.name;
    EXPECT_EQ(matched(kFrom), tagged(evaluator.file_tag, "win")) << evaluator.name;
    EXPECT_EQ(values(kFrom, 2), "[][1]") << evaluator.name;

    start_message();
    evaluator.run(kFrom, kOffers, "", set, results);
    EXPECT_EQ(count(kFrom), 0) << evaluator.name << ": the value itself is no list then";
  }
}

TEST_F(EvaluateLists, AnEmptyValueIsTheGeneralWordFile) {
  server.write("conf/FILTERS/PATTERNS/MTAFILTER-GENERAL.TXT", "free\r\n");
  for (const Evaluator& evaluator : kWordFileEvaluators) {
    only(kFrom, "");
    evaluator.run(kFrom, "free", kWordDelimiters, set, results);
    EXPECT_EQ(matched(kFrom), tagged(evaluator.file_tag, "free")) << evaluator.name;
  }
}

TEST_F(EvaluateLists, AMissingWordFileMakesTheReferenceAWord) {
  for (const std::uint32_t caching : {0U, 1U}) {
    settings().allow_pattern_caching = caching;
    for (const Evaluator& evaluator : kWordFileEvaluators) {
      only(kFrom, kOffers);
      evaluator.run(kFrom, kOffers, kWordDelimiters, set, results);
      EXPECT_EQ(matched(kFrom), tagged(evaluator.inline_tag, kOffers)) << evaluator.name << " caching " << caching;
    }
  }
}

TEST_F(EvaluateLists, WithCachingTheFileCountsAsItWasLoaded) {
  settings().allow_pattern_caching = 1;
  server.write("conf/FILTERS/PATTERNS/offers.txt", "free\r\n");
  WordFilePath path;
  ASSERT_TRUE(ResolveWordFile(set, message.directories.configuration, kOffers, path));
  set.patterns.load(path, "%s\n");
  server.remove("conf/FILTERS/PATTERNS/offers.txt");
  for (const Evaluator& evaluator : kWordFileEvaluators) {
    only(kFrom, kOffers);
    const auto run = [&] { evaluator.run(kFrom, "free", kWordDelimiters, set, results); };
    EXPECT_EQ(test::printed_by(run), "Message Criteria (Tag=" + std::string(evaluator.file_tag) +
                                         ") met against [free] in specified word file.\n");
    EXPECT_EQ(matched(kFrom), tagged(evaluator.file_tag, "free")) << evaluator.name;
  }
}

// Values at the limit of an evaluator's buffer: the only entry is cut, one of several is emptied.
TEST_F(EvaluateLists, ValuesBeyondTheLimitAreCutOrEmptied) {
  for (const Evaluator& evaluator : kWordFileEvaluators) {
    const std::string filler(evaluator.value_capacity - 1 - std::string_view("\toffer").size(), 'x');
    const auto counted = [&](const std::string& data, int entries, std::string_view text) {
      only(kFrom, data, entries);
      evaluator.run(kFrom, text, kWordDelimiters, set, results);
      return count(kFrom);
    };
    EXPECT_EQ(counted(filler + "\toffer", 1, "offer"), 1) << evaluator.name;
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
    {"within a pattern", "[SMTP:ann@example.org]", "*[PV_SENDER]*", "x ann@example.org.net", "*ann@example.org*"},
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

TEST_F(EvaluateLists, TheSenderIsNotPutIntoEnvelopeWordsAndFileNames) {
  add(kAccount, "[PV_SENDER]");
  EvaluateEnvelopeValue(kAccount, ":]\r\n", "ann@example.org", set, results);
  EvaluateAttachmentName(kAccount, "name=ann@example.org", kNameDelimiters, set, results);
  EXPECT_EQ(count(kAccount), 0);
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

TEST_F(EvaluateLists, WithoutAMessageThereIsNoSenderAndNoConfiguration) {
  for (const Evaluator& evaluator : kWordFileEvaluators) {
    only(kFrom, "[PV_SENDER]x\t" + std::string(kOffers) + "\tfree");
    results.message = nullptr;
    evaluator.run(kFrom, "free", kWordDelimiters, set, results);
    EXPECT_EQ(count(kFrom), 1) << evaluator.name;
  }
}

struct AttachmentCase {
  const char* what;
  std::string_view data;
  std::string_view line;
  int count;
  std::string_view matched;
};

constexpr AttachmentCase kAttachments[] = {
    {"a quoted file name", "*.exe\t*.bat", "x; filename=\"Run Me.EXE\"\r\n", 1, "<MF-A>*.exe</MF-A>"},
    {"the name when the file name does not match", "a.exe", "name=a.exe; filename=b.txt", 1, "<MF-A>a.exe</MF-A>"},
    {"the file name before the name", "b.txt", "name=a.exe; filename=b.txt", 1, "<MF-A>b.txt</MF-A>"},
    {"each word for itself", "a.exe\tb.txt", "name=a.exe; filename=b.txt", 2, "<MF-A>b.txt</MF-A>"},
    {"a name behind a file name is hidden by it", "c.txt", "filename=b.exe; name=c.txt", 0, ""},
    {"no attribute", "*", "Content-Type: text/plain", 0, ""},
    {"an empty name", "*", "name=\"\"", 1, "<MF-A>*</MF-A>"},
};

TEST_F(EvaluateLists, WordsMatchTheAttachmentName) {
  for (const AttachmentCase& c : kAttachments) {
    only(kHasAttachmentsMatching, c.data);
    const std::string output = test::printed_by(
        [&] { EvaluateAttachmentName(kHasAttachmentsMatching, c.line, kNameDelimiters, set, results); });
    std::string lines;
    for (int i = 0; i < c.count; ++i) lines += "Attachment Criteria Met\n";
    EXPECT_EQ(output, lines) << c.what;
    EXPECT_EQ(matched(kHasAttachmentsMatching), c.matched) << c.what;
    EXPECT_EQ(count(kHasAttachmentsMatching), c.count) << c.what;
  }
}

TEST_F(EvaluateLists, AMalformedAttachmentNameIsReportedForEveryWord) {
  add(kHasAttachmentsMatching, "a\tb\tc");
  const std::string output = test::printed_by(
      [&] { EvaluateAttachmentName(kHasAttachmentsMatching, "filename=\"a.exe", kNameDelimiters, set, results); });
  std::string lines;
  for (int i = 0; i < 3 * 2; ++i) lines += "No closing quotation for attachment\n";  // "filename", then "name"
  EXPECT_EQ(output, lines);
  EXPECT_EQ(count(kHasAttachmentsMatching), 0);
}

TEST_F(EvaluateLists, AttachmentNamesHaveNoWordFiles) {
  server.write("conf/FILTERS/PATTERNS/offers.txt", "*\r\n");
  add(kHasAttachmentsMatching, kOffers);
  EvaluateAttachmentName(kHasAttachmentsMatching, "name=a.exe", kNameDelimiters, set, results);
  EXPECT_EQ(count(kHasAttachmentsMatching), 0);
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
