#include "vbscript/keywords.h"

#include <array>
#include <cstddef>

#include "vbscript/characters.h"

namespace pv::vbscript {
namespace {

struct Keyword {
  std::string_view word;  // lower case
  TokenKind kind = TokenKind::kIdentifier;
};

constexpr Keyword kKeywords[] = {
    {"and", TokenKind::kAnd},
    {"byref", TokenKind::kByRef},
    {"byval", TokenKind::kByVal},
    {"call", TokenKind::kCall},
    {"case", TokenKind::kCase},
    {"class", TokenKind::kClass},
    {"const", TokenKind::kConst},
    {"dim", TokenKind::kDim},
    {"do", TokenKind::kDo},
    {"each", TokenKind::kEach},
    {"else", TokenKind::kElse},
    {"elseif", TokenKind::kElseIf},
    {"empty", TokenKind::kEmpty},
    {"end", TokenKind::kEnd},
    {"eqv", TokenKind::kEqv},
    {"exit", TokenKind::kExit},
    {"false", TokenKind::kFalse},
    {"for", TokenKind::kFor},
    {"function", TokenKind::kFunction},
    {"get", TokenKind::kGet},
    {"goto", TokenKind::kGoTo},
    {"if", TokenKind::kIf},
    {"imp", TokenKind::kImp},
    {"in", TokenKind::kIn},
    {"is", TokenKind::kIs},
    {"let", TokenKind::kLet},
    {"loop", TokenKind::kLoop},
    {"me", TokenKind::kMe},
    {"mod", TokenKind::kMod},
    {"new", TokenKind::kNew},
    {"next", TokenKind::kNext},
    {"not", TokenKind::kNot},
    {"nothing", TokenKind::kNothing},
    {"null", TokenKind::kNull},
    {"on", TokenKind::kOn},
    {"option", TokenKind::kOption},
    {"or", TokenKind::kOr},
    {"preserve", TokenKind::kPreserve},
    {"private", TokenKind::kPrivate},
    {"public", TokenKind::kPublic},
    {"redim", TokenKind::kReDim},
    {"rem", TokenKind::kRem},
    {"resume", TokenKind::kResume},
    {"select", TokenKind::kSelect},
    {"set", TokenKind::kSet},
    {"stop", TokenKind::kStop},
    {"sub", TokenKind::kSub},
    {"then", TokenKind::kThen},
    {"to", TokenKind::kTo},
    {"true", TokenKind::kTrue},
    {"until", TokenKind::kUntil},
    {"wend", TokenKind::kWend},
    {"while", TokenKind::kWhile},
    {"with", TokenKind::kWith},
    {"xor", TokenKind::kXor},
    {"default", TokenKind::kDefault},
    {"erase", TokenKind::kErase},
    {"error", TokenKind::kError},
    {"explicit", TokenKind::kExplicit},
    {"property", TokenKind::kProperty},
    {"step", TokenKind::kStep},
};

constexpr std::size_t kShortest = 2;
constexpr std::size_t kLongest = 8;
constexpr std::size_t kSlots = 256;

constexpr std::size_t code_of(char byte) {
  return static_cast<unsigned char>(lower(byte));
}

constexpr std::size_t slot_of(std::string_view word) {
  const std::size_t first = code_of(word[0]);
  const std::size_t second = code_of(word[1]);
  const std::size_t last = code_of(word[word.size() - 1]);
  return (first * 11 + second * 31 + last * 7 + word.size() * 5) % kSlots;
}

// Open addressing: every word of a program passes here, and most are names that find an empty slot at once.
constexpr std::array<Keyword, kSlots> make_table() {
  std::array<Keyword, kSlots> table{};
  for (const Keyword& keyword : kKeywords) {
    std::size_t slot = slot_of(keyword.word);
    while (!table[slot].word.empty()) slot = (slot + 1) % kSlots;
    table[slot] = keyword;
  }
  return table;
}
constexpr std::array<Keyword, kSlots> kTable = make_table();

}  // namespace

TokenKind keyword_kind(std::string_view word) {
  if (word.size() < kShortest || word.size() > kLongest) return TokenKind::kIdentifier;
  for (std::size_t slot = slot_of(word); !kTable[slot].word.empty(); slot = (slot + 1) % kSlots) {
    if (same_word(kTable[slot].word, word)) return kTable[slot].kind;
  }
  return TokenKind::kIdentifier;
}

}  // namespace pv::vbscript
