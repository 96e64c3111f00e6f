// Arguments of built-in functions, as most of them take theirs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "vbscript/value.h"

namespace pv::vbscript {

class Engine;

// A text argument; borrowed from the argument where that is a text already.
class TextArgument {
 public:
  enum Null { kNullGivesNull, kNoNull };  // kNoNull: Null is error 94

  TextArgument(Engine& engine, const Value& argument, Null null = kNullGivesNull);
  bool is_null() const { return value_.is(Type::kNull); }
  std::string_view view() const { return view_; }  // empty for Null

  // A part of the text; the whole one is shared, not copied. `from` is at most the text's length.
  Value part(Engine& engine, std::size_t from, std::size_t count) const;

 private:
  Value value_;
  std::string_view view_;
};

// A length: error 5 below 0, 94 for Null.
std::size_t count_argument(Engine& engine, const Value& argument);
// A position: error 5 below 1.
std::size_t position_argument(Engine& engine, const Value& argument);
// An optional whole number.
std::int32_t long_argument(Engine& engine, std::span<const Value> arguments, std::size_t index, std::int32_t preset);
// An optional vbBinaryCompare or vbTextCompare: whether case is ignored. Error 5 for any other number.
bool compare_argument(Engine& engine, std::span<const Value> arguments, std::size_t index);

}  // namespace pv::vbscript
