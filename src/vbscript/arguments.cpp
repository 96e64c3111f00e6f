#include "vbscript/arguments.h"

#include <algorithm>

#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

TextArgument::TextArgument(Engine& engine, const Value& argument, Null null) : value_(plain_value(engine, argument)) {
  if (value_.is(Type::kNull)) {
    if (null == kNoNull) raise(ErrorCode::kInvalidUseOfNull);
    return;
  }
  if (!value_.is(Type::kString)) value_ = to_text(engine, value_);
  view_ = value_.view();
}

Value TextArgument::part(Engine& engine, std::size_t from, std::size_t count) const {
  if (from == 0 && count >= view_.size()) return value_;
  return engine.heap().text(view_.substr(from, count));
}

std::size_t count_argument(Engine& engine, const Value& argument) {
  const std::int32_t count = to_long(engine, argument);
  if (count < 0) raise(ErrorCode::kInvalidCall);
  return static_cast<std::size_t>(count);
}

std::size_t position_argument(Engine& engine, const Value& argument) {
  const std::int32_t position = to_long(engine, argument);
  if (position < 1) raise(ErrorCode::kInvalidCall);
  return static_cast<std::size_t>(position);
}

std::int32_t long_argument(Engine& engine, std::span<const Value> arguments, std::size_t index, std::int32_t preset) {
  return index < arguments.size() && !arguments[index].is_missing() ? to_long(engine, arguments[index]) : preset;
}

bool compare_argument(Engine& engine, std::span<const Value> arguments, std::size_t index) {
  const std::int32_t compare = long_argument(engine, arguments, index, 0);
  if (compare != 0 && compare != 1) raise(ErrorCode::kInvalidCall);
  return compare == 1;
}

}  // namespace pv::vbscript
