#include "filters/token_expansion.h"

#include <gtest/gtest.h>

#include <string>

namespace pv {
namespace {

std::string expanded(std::string_view block, std::string target, std::size_t capacity = 10000,
                     TokenMode mode = TokenMode::kPlain) {
  ExpandTokens(block, target, capacity, mode);
  return target;
}

std::string tagged(const std::string& name, const std::string& value) {
  return "<" + name + ">" + value + "</" + name + ">";
}

struct ExpansionCase {
  const char* what;
  std::string block;
  std::string target;
  std::string result;
};

TEST(ExpandTokens, TagByTag) {
  const std::string name254(254, 'n'), value4093(4093, 'v');
  const ExpansionCase kCases[] = {
      {"each of several", "<A>1</A><B>2</B> <C>3</C>", "[PV_C][PV_B][PV_A]", "321"},
      {"the token's letter case", "<A>1</A>", "[PV_a][pv_A]", "[PV_a][pv_A]"},
      {"the first of two values", "<A>1</A><A>2</A>", "[PV_A]", "1"},
      {"a value with an angle bracket", "<A>1<2</A><B>3</B>", "[PV_A][PV_B]", "1<23"},
      {"nested: the outer tag is the first opening tag", "<A><B>1</B></A>", "[PV_A][PV_B]", "<B>1</B>[PV_B]"},
      {"later tags are expanded in values", "<A>[PV_B]</A><B>2</B>", "[PV_A]", "2"},
      {"closing tag at the very start is not counted", "</A><B>1</B>", "[PV_B]", "[PV_B]"},
      {"longest name", tagged(name254, "1"), "[PV_" + name254 + "]", "1"},
      {"name too long", tagged("n" + name254, "1"), "[PV_n" + name254 + "]", "[PV_n" + name254 + "]"},
      {"longest value", tagged("A", value4093), "[PV_A]", value4093},
      {"value too long", tagged("A", "v" + value4093) + "<B>2</B>", "[PV_A][PV_B]", "[PV_A]2"},
  };
  for (const ExpansionCase& c : kCases) EXPECT_EQ(expanded(c.block, c.target), c.result) << c.what;
}

TEST(ExpandTokens, CapacityIsNeverReached) {
  constexpr struct {
    const char* what;
    std::size_t capacity;
    const char* target;
    const char* result;
  } kCases[] = {
      {"value and target are one below", 17, "[PV_A]", "1234567890"},
      {"value and target reach it", 16, "[PV_A]", "[PV_A]"},
      {"the result is two below", 32, "[PV_A][PV_A][PV_A]", "123456789012345678901234567890"},
      {"the result is one below", 31, "[PV_A][PV_A][PV_A]", "[PV_A][PV_A][PV_A]"},
      {"no room at all", 0, "[PV_WORDLIST]", "[PV_WORDLIST]"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(expanded("<A>1234567890</A>", c.target, c.capacity), c.result) << c.what;
  }
}

TEST(ExpandTokens, HeaderEncoding) {
  const auto encoded = [](const std::string& value, std::size_t capacity) {
    return expanded(tagged("A", value), "[PV_A]", capacity, TokenMode::kHeaderEncoded);
  };
  EXPECT_EQ(encoded("a b=c?d_e~", 100), "a b=3Dc=3Fd=5Fe~");
  EXPECT_EQ(encoded("\x1f\x7f\xe4\r\n\xff", 100), "=1F=7F=E4=0D=0A=FF");
  EXPECT_EQ(encoded("==", 13), "=3D=3D") << "6 + 6 bytes";
  EXPECT_EQ(encoded("==", 12), "[PV_A]") << "the encoded length counts";
}

TEST(ExpandTokens, WordList) {
  const std::string w127(127, 'w');
  std::string many, all;
  for (int i = 0; i < 20; ++i) {
    many += tagged("MF-W", w127);
    all += (i > 0 ? "," : "") + w127;
  }
  const ExpansionCase kCases[] = {
      {"words, then recipients, in order", "<MF-R>r</MF-R><MF-W>a</MF-W><X>1</X><MF-W>b</MF-W>", "[PV_WORDLIST]",
       "a,b,r"},
      {"values of 128 bytes are left out", tagged("MF-W", w127) + tagged("MF-W", "w" + w127) + "<MF-W>b</MF-W>",
       "[PV_WORDLIST]", w127 + ",b"},
      {"the list is cut", many, "[PV_WORDLIST]", all.substr(0, 2047)},
      {"a list token that came with a value", "<A>[PV_WORDLIST]</A><MF-W>a</MF-W>", "[PV_A]", "a"},
  };
  for (const ExpansionCase& c : kCases) EXPECT_EQ(expanded(c.block, c.target), c.result) << c.what;
  EXPECT_EQ(expanded(many, "[PV_WORDLIST]", 2048), "[PV_WORDLIST]");
}

TEST(ExpandTokens, AtMost999TagsAreLookedAt) {
  std::string block;
  for (int i = 1; i <= 1200; ++i) block += tagged("T" + std::to_string(i), "x");
  EXPECT_EQ(expanded(block, "[PV_T999] [PV_T1000]"), "x [PV_T1000]");
}

}  // namespace
}  // namespace pv
