#include "bayesian/word_list.h"

#include <gtest/gtest.h>

#include <string>

#include "support/server_tree.h"

namespace example {
namespace {

TEST(WordList, WeighsEveryListedWordOnce) {
  const pv::test::TemporaryDirectory directory;
  directory.write("words",
                  "# spam\r\n80 Offer\r\n50 neutral\n 90\tcasino\n10 minutes\n99.5 above\n0 zero\nno number\n70");
  WordList list;
  ASSERT_TRUE(list.read(directory.path("words")));
  // With the odds 1:4 that a message without a listed word has.
  const struct {
    const char* what;
    const char* text;
    double percent;
  } cases[] = {
      {"no word", "hello", 20},
      {"nothing", "", 20},
      {"a word of 80 percent", "an offer", 50},
      {"in any letter case, beside any punctuation", "An:OFFER!", 50},
      {"twice is once", "offer offer", 50},
      {"a part of a word is no word", "offers", 20},
      {"bytes above 127 are part of a word", "offer\xc3\xa9", 20},
      {"a word that says nothing", "neutral", 20},
      {"two words", "casino offer", 90},
      {"for and against", "offer minutes", 10},
      {"lines without a usable probability", "above zero number", 20},
  };
  for (const auto& c : cases) EXPECT_NEAR(list.spam_probability(c.text), c.percent, 0.001) << c.what;
  EXPECT_FALSE(WordList().read(directory.path("none")));
}

}  // namespace
}  // namespace example
