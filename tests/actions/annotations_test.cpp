#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "actions/append_annotations.h"
#include "actions/multipart.h"
#include "actions/queued_message.h"

namespace pv {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;

constexpr char kDelivered[] = "queues/LS/Outgoing/Messages/M1.MAI";

class Annotations : public test::QueuedMessage {
 protected:
  Annotations() {
    request_.postoffice.cut("System");
    request_.header_name.cut("Top");
    request_.footer_name.cut("Bottom");
    request_.header = 1;
    request_.footer = 1;
    tree_.write("conf/POSTOFFICES/System/Annotations/TOP.TXT", "[top]\r\n");
    tree_.write("conf/POSTOFFICES/System/Annotations/Bottom.txt", "[bottom]");
  }

  // What becomes of a message in whose text "|" stands for a line end.
  std::string annotated(std::string text) {
    for (std::size_t at = text.find('|'); at != std::string::npos; at = text.find('|', at)) text.replace(at, 1, "\r\n");
    tree_.write(kDelivered, text);
    succeeded_ = AppendAnnotations(message_, request_);
    EXPECT_THAT(tree_.names("queues/LS/Outgoing/Messages"), ElementsAre("M1.MAI"));
    text = tree_.read(kDelivered);
    for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at))
      text.replace(at, 2, "|");
    return text;
  }

  AnnotationRequest request_;
  bool succeeded_ = false;
};

struct AnnotationCase {
  const char* what;
  std::string before;
  std::string after;
};

TEST_F(Annotations, StandRoundTheTextOfAPlainMessage) {
  const std::string x(2047, 'x');
  const AnnotationCase cases[] = {
      {"the mark and both", "A: b||text|",
       "A: b|X-PVFilter: 1||"
       "|[top]||"
       "text|"
       "|[bottom]|"},
      {"a text without line end", "A: b||text",
       "A: b|X-PVFilter: 1||"
       "|[top]||"
       "text"
       "|[bottom]|"},
      {"no text", "A: b||",
       "A: b|X-PVFilter: 1||"
       "|[top]||"
       "|[bottom]|"},
      {"NUL bytes and stray CRs stay", "A: \0b||a\0b\rc|"s,
       "A: \0b|X-PVFilter: 1||"
       "|[top]||"
       "a\0b\rc|"
       "|[bottom]|"s},
      {"bare line feeds become CR LF", "A: b\n\ntext\n",
       "A: b|X-PVFilter: 1||"
       "|[top]||"
       "text|"
       "|[bottom]|"},
      {"a long line", "A: b||" + x + x + "|",
       "A: b|X-PVFilter: 1||"
       "|[top]||" +
           x + x +
           "|"
           "|[bottom]|"},
      {"a header line that fills the buffer", "A" + x + "|B: c||t|",
       "A" + x +
           "|B: c|X-PVFilter: 1||"
           "|[top]||"
           "t|"
           "|[bottom]|"},
      {"the same, and its line end comes alone", x + "|B: c||t|",
       x + "|B: c|X-PVFilter: 1||"
           "|[top]||"
           "t|"
           "|[bottom]|"},
      {"a file that ends inside its headers", "A: b|C: d|",
       "A: b|X-PVFilter: 1|C: d|"
       "|[top]||"
       "|[bottom]|"},
      {"without line end", "A: b|C: d",
       "A: b|X-PVFilter: 1|C: d|"
       "|[top]||"
       "|[bottom]|"},
      {"in a folded one", "A: b| c|",
       "A: b| c|X-PVFilter: 1|"
       "|[top]||"
       "|[bottom]|"},
      {"an empty file", "",
       "X-PVFilter: 1|"
       "|[top]||"
       "|[bottom]|"},
      {"another name that begins alike", "X-PVFilter:1||t|",
       "X-PVFilter:1|X-PVFilter: 1||"
       "|[top]||"
       "t|"
       "|[bottom]|"},
      {"a mark in the text", "A: b||X-PVFilter: 1|",
       "A: b|X-PVFilter: 1||"
       "|[top]||"
       "X-PVFilter: 1|"
       "|[bottom]|"},
  };
  for (const AnnotationCase& c : cases) {
    EXPECT_EQ(annotated(c.before), c.after) << c.what;
    EXPECT_TRUE(succeeded_) << c.what;
  }
}

// "#" stands for the header block of a message with the boundary "b".
TEST_F(Annotations, StandRoundEveryTextPart) {
  const std::string headers = "Content-Type: multipart/mixed;| boundary=\"b\"|";
  const std::string plain = "Content-Type: text/plain;| charset=x||";
  const AnnotationCase cases[] = {
      {"text and its HTML alternative", "#pre|--b|" + plain + "one|--b|content-type: TEXT/HTML;||two|--b--|",
       "#pre|--b|" + plain +
           "|[top]||one||[bottom]|--b|content-type: TEXT/HTML;||"
           "|[top]||two||[bottom]|--b--|"},
      {"text behind the end is dropped", "#--b|" + plain + "one|--b--|behind|",
       "#--b|" + plain + "|[top]||one||[bottom]|--b--|"},
      {"parameters on the same line", "#--b|Content-Type: text/plain; charset=x||one|--b--|",
       "#--b|Content-Type: text/plain; charset=x||one|--b--|"},
      {"no semicolon", "#--b|Content-Type: text/plain||one|--b--|", "#--b|Content-Type: text/plain||one|--b--|"},
      {"another part", "#--b|Content-Type: image/png;||one|--b--|", "#--b|Content-Type: image/png;||one|--b--|"},
      {"a part without type is like the one before", "#--b||zero|--b|" + plain + "one|--b||two|--b--|",
       "#--b||zero|--b|" + plain +
           "|[top]||one||[bottom]|--b||"
           "|[top]||two||[bottom]|--b--|"},
      {"the last type of a part counts", "#--b|Content-Type: image/png;|" + plain + "one|--b--|",
       "#--b|Content-Type: image/png;|" + plain + "|[top]||one||[bottom]|--b--|"},
      {"white space behind a marker", "#--b \t|" + plain + "one|--b-- |",
       "#--b \t|" + plain + "|[top]||one||[bottom]|--b--|"},
      {"a multipart within, with a longer boundary",
       "#--b|Content-Type: multipart/x;| boundary=\"bc\"||--bc|" + plain + "one|--bc--|--b|" + plain + "two|--b--|",
       "#--b|Content-Type: multipart/x;| boundary=\"bc\"||--bc|" + plain + "one|--bc--|--b|" + plain +
           "|[top]||two||[bottom]|--b--|"},
      {"no part at all", "#pre|amble", "#pre|amble"},
      {"an end before any part", "#--b--|text|", "#--b--|text|"},
      {"no end", "#--b|" + plain + "one|two", "#--b|" + plain + "|[top]||one|two|[bottom]|"},
      {"a part without empty line", "#--b|Content-Type: text/plain;|--b|" + plain + "one|--b--|",
       "#--b|Content-Type: text/plain;|--b|" + plain + "|[top]||one||[bottom]|--b--|"},
      {"the file ends in a part's headers", "#--b|Content-Type: text/plain;|", "#--b|Content-Type: text/plain;|"},
      {"a marker in the middle of a long line", "#--b|" + plain + std::string(2047, 'x') + "--b|--b--|",
       "#--b|" + plain + "|[top]||" + std::string(2047, 'x') + "--b||[bottom]|--b--|"},
  };
  const auto with = [&](std::string text, const std::string& block) { return text.replace(0, 1, block); };
  for (const AnnotationCase& c : cases) {
    EXPECT_EQ(annotated(with(c.before, headers + "|")), with(c.after, headers + "X-PVFilter: 1||")) << c.what;
    EXPECT_TRUE(succeeded_) << c.what;
  }
}

// Takes every `inserted` out but for its first `kept` bytes.
void erase_all(std::string& text, std::string_view inserted, std::size_t kept) {
  for (std::size_t at = text.find(inserted); at != std::string::npos; at = text.find(inserted, at)) {
    text.erase(at + kept, inserted.size() - kept);
  }
}

TEST_F(Annotations, LoseNothingOfAMessageHoweverOdd) {
  const std::string fragments[] = {"--b|",
                                   "--b|",
                                   "--b--|",
                                   "--bc|",
                                   "|",
                                   "|",
                                   "text|",
                                   "\rtext|",
                                   "a\0b|"s,
                                   "Content-Type: text/plain;|",
                                   "Content-Type: image/png|",
                                   "Content-Type: multipart/mixed;|",
                                   " boundary=\"b\"|",
                                   " folded|",
                                   "Content-Type: multipart/mixed; boundary=b|",
                                   std::string(2047, 'x'),
                                   std::string(2040, 'y')};
  std::mt19937 random(7);
  int annotated_messages = 0;
  for (int round = 0; round < 300; ++round) {
    std::string message = random() % 4 == 0 ? "" : "Content-Type: multipart/mixed; boundary=b|";
    for (std::size_t count = random() % 24; count > 0; --count) message += fragments[random() % std::size(fragments)];
    message += "end|";
    std::string left = annotated(message);
    annotated_messages += left != message;
    erase_all(left, "||[top]||", 1);  // the line end before it is the message's
    erase_all(left, "||[bottom]|", 1);
    erase_all(left, "X-PVFilter: 1|", 0);
    const bool only_behind_the_end = message.starts_with(left) && left.ends_with("|--b--|");
    ASSERT_TRUE(left == message || only_behind_the_end) << "round " << round << "\n" << message << "\n" << left;
  }
  EXPECT_GT(annotated_messages, 200);
}

TEST_F(Annotations, LeaveAMarkedMessageAsItIs) {
  const std::string marked = "A: b\nx-pvfilter: 0||text|";
  EXPECT_EQ(annotated(marked), marked);
  EXPECT_TRUE(succeeded_);
  const std::string odd = "Content-Type: multipart/mixed|X-PVFilter: 1||text|";
  EXPECT_EQ(annotated(odd), odd);
  EXPECT_TRUE(succeeded_) << "no boundary, but none is needed";
}

TEST_F(Annotations, AreAskedForOneByOne) {
  request_.header = 0;
  EXPECT_EQ(annotated("A: b||text|"), "A: b|X-PVFilter: 1||text||[bottom]|");
  request_.header = 1;
  request_.footer = 0;
  EXPECT_EQ(annotated("A: b||text|"), "A: b|X-PVFilter: 1|||[top]||text|");
  request_.header = 0;
  EXPECT_EQ(annotated("A: b\n||text|"), "A: b\n||text|");
  EXPECT_TRUE(succeeded_) << "none was asked for";
  request_.footer = 1;
  request_.footer_name.cut("missing");
  EXPECT_EQ(annotated("A: b||text|"), "A: b|X-PVFilter: 1||text|");
  EXPECT_TRUE(succeeded_) << "a missing text";
}

TEST_F(Annotations, NeedTheMessageAndTakeADirectoryForNoText) {
  EXPECT_FALSE(AppendAnnotations(message_, request_)) << "it lies in another queue";
  tree_.remove("conf/POSTOFFICES/System/Annotations/Bottom.txt");
  tree_.make_directory("conf/POSTOFFICES/System/Annotations/Bottom.txt");
  EXPECT_EQ(annotated("A: b||text|"), "A: b|X-PVFilter: 1|||[top]||text|");
  EXPECT_TRUE(succeeded_);
}

struct BoundaryCase {
  const char* what;
  std::vector<std::string> lines;
  std::string boundary;  // "": none is found
};

TEST(MultipartHeader, FindsTheBoundary) {
  const std::string type = "Content-Type: multipart/mixed;";
  const BoundaryCase cases[] = {
      {"on the next line", {type, "\tboundary=\"a b\""}, "a b"},
      {"on the line itself", {"content-type: MULTIPART/mixed; Boundary=\"a\"; x=\"y\"", " boundary=\"c\""}, "a"},
      {"without quotes", {type + " boundary=a;x=y"}, "a"},
      {"without quotes on the next line", {type, " boundary=a\n"}, "a"},
      {"blanks round the sign", {type, " boundary = \"a\""}, "a"},
      {"behind another attribute", {type, " type=\"text/html\"; boundary=\"a\""}, "a"},
      {"folded behind the sign", {type + " boundary=\n", " \"a\"\n"}, "a"},
      {"255 characters", {type, " boundary=\"" + std::string(255, 'x') + "\""}, std::string(255, 'x')},
      {"256 characters", {type, " boundary=\"" + std::string(256, 'x') + "\""}, ""},
      {"only another attribute", {type, " type=\"text/html\";", " boundary=\"a\""}, ""},
      {"a line that is not folded", {type, "X: boundary=\"a\""}, ""},
      {"no closing quote", {type + " boundary=\"a", " b"}, ""},
      {"an empty one", {type + " boundary=\"\""}, ""},
  };
  for (const BoundaryCase& c : cases) {
    MultipartHeader header;
    for (const std::string& line : c.lines) header.take(line);
    EXPECT_TRUE(header.is_multipart()) << c.what;
    EXPECT_EQ(header.boundary(), c.boundary) << c.what;
  }
}

TEST_F(Annotations, LeaveAMultipartMessageWithoutBoundaryAsItIs) {
  const std::string text = "Content-Type: multipart/mixed|A: b\n||--b|Content-Type: text/plain;||text|--b--|";
  EXPECT_EQ(annotated(text), text);
  EXPECT_FALSE(succeeded_);
}

}  // namespace
}  // namespace pv
