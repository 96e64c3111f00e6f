// What a program text is made of.
#pragma once

#include <cstdint>
#include <string_view>

#include "vbscript/script_error.h"

namespace pv::vbscript {

enum class TokenKind : std::uint8_t {
  kEndOfText,
  kNewline,
  kColon,
  kIdentifier,
  kInteger,
  kLong,
  kDouble,
  kDate,
  kText,
  kLeftParenthesis,
  kRightParenthesis,
  kComma,
  kDot,
  // Operators that are no words.
  kPower,
  kMultiply,
  kDivide,
  kDivideWhole,
  kPlus,
  kMinus,
  kConcatenate,
  kEqual,
  kNotEqual,
  kLess,
  kGreater,
  kLessEqual,
  kGreaterEqual,
  // Reserved words.
  kAnd,
  kByRef,
  kByVal,
  kCall,
  kCase,
  kClass,
  kConst,
  kDim,
  kDo,
  kEach,
  kElse,
  kElseIf,
  kEmpty,
  kEnd,
  kEqv,
  kExit,
  kFalse,
  kFor,
  kFunction,
  kGet,
  kGoTo,
  kIf,
  kImp,
  kIn,
  kIs,
  kLet,
  kLoop,
  kMe,
  kMod,
  kNew,
  kNext,
  kNot,
  kNothing,
  kNull,
  kOn,
  kOption,
  kOr,
  kPreserve,
  kPrivate,
  kPublic,
  kReDim,
  kRem,
  kResume,
  kSelect,
  kSet,
  kStop,
  kSub,
  kThen,
  kTo,
  kTrue,
  kUntil,
  kWend,
  kWhile,
  kWith,
  kXor,
  // Words with a meaning in places, otherwise names like any other.
  kDefault,
  kErase,
  kError,
  kExplicit,
  kProperty,
  kStep,
};

inline constexpr TokenKind kFirstOperator = TokenKind::kPower;
inline constexpr TokenKind kFirstContextualWord = TokenKind::kDefault;

// A constant value, as it stands in the source.
constexpr bool is_literal(TokenKind kind) {
  switch (kind) {
    case TokenKind::kInteger:
    case TokenKind::kLong:
    case TokenKind::kDouble:
    case TokenKind::kDate:
    case TokenKind::kText:
    case TokenKind::kEmpty:
    case TokenKind::kNull:
    case TokenKind::kNothing:
    case TokenKind::kTrue:
    case TokenKind::kFalse:
      return true;
    default:
      return false;
  }
}

// The values are those of the last token of their kind; they say nothing of another one.
struct Token {
  TokenKind kind = TokenKind::kEndOfText;
  bool after_blank = false;  // ".x" as an argument is told from the member of "f.x" by the blank before it
  bool first_on_line = false;
  Position at;
  std::int32_t number = 0;  // kInteger, kLong
  double real = 0;          // kDouble; kDate: days since 30 December 1899
  std::string_view text;    // names as spelt, words included; kText with doubled quotes undone
};

}  // namespace pv::vbscript
