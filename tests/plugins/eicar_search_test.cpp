#include "antivirus/eicar_search.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "plugins/base64_text.h"

namespace example {
namespace {

bool is_found(std::string_view bytes) {
  EicarSearch search;
  for (const char byte : bytes) {
    if (search.feed(byte)) return true;
  }
  return false;
}

TEST(EicarSearch, FindsTheTextAsItStandsAndInBase64) {
  const std::string text = eicar_text();
  ASSERT_EQ(text.size(), 68U);
  const std::string headers = "Subject: a\r\nContent-Transfer-Encoding: base64\r\n\r\n";
  const struct {
    const char* what;
    std::string message;
    bool found;
  } cases[] = {
      {"alone", text, true},
      {"in a body", "Subject: a\r\n\r\n" + text + "\r\n", true},
      {"after its own beginning", text.substr(0, 16) + text, true},
      {"a byte off", text.substr(0, 67) + "+", false},
      {"cut off", text.substr(0, 67), false},
      {"broken by a line end", text.substr(0, 30) + "\r\n" + text.substr(30), false},
      {"base64 in lines of 76", headers + test::base64(text, 76), true},
      {"base64 in lines of 31, which end inside a group", headers + test::base64(text, 31), true},
      {"base64 with bare line feeds", "Content-Transfer-Encoding: base64\n\n" + test::base64(text, 1000), true},
      {"base64 after other bytes of a file", headers + test::base64("ab" + text + "c", 76), true},
      {"base64 of another text", headers + test::base64(text.substr(1), 76), false},
      {"nothing", "", false},
  };
  for (const auto& c : cases) EXPECT_EQ(is_found(c.message), c.found) << c.what;
}

}  // namespace
}  // namespace example
