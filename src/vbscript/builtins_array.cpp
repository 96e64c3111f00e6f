// Functions on arrays.
#include <algorithm>
#include <string>

#include "vbscript/arguments.h"
#include "vbscript/builtins.h"
#include "vbscript/code_page.h"
#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/heap.h"
#include "vbscript/limits.h"
#include "vbscript/script_error.h"
#include "vbscript/text_search.h"

namespace pv::vbscript {
namespace {

using Arguments = std::span<const Value>;

// Any number of arguments; the machine cannot pass more than a program can write.
constexpr int kManyArguments = 65535;

Array& array_argument(const Value& argument) {
  if (argument.is(Type::kNull)) raise(ErrorCode::kInvalidUseOfNull);
  if (!argument.is(Type::kArray)) raise(ErrorCode::kTypeMismatch);
  return *argument.array();
}

// An array of one dimension.
std::span<const Value> list_argument(const Value& argument) {
  const Array& array = array_argument(argument);
  if (array.dimensions.size() > 1) raise(ErrorCode::kInvalidCall);
  return array.elements;
}

Value list_of(Engine& engine, std::vector<Value> elements) {
  if (elements.size() > kMaxArrayElements) raise(ErrorCode::kOutOfMemory);
  engine.charge_steps(static_cast<std::int64_t>(elements.size()));
  return engine.heap().array(std::move(elements));
}

Value array(Engine& engine, Arguments arguments) {
  return list_of(engine, {arguments.begin(), arguments.end()});
}

const Array::Dimension& dimension_argument(Engine& engine, Arguments arguments) {
  const Array& array = array_argument(arguments[0]);
  const std::int32_t dimension = long_argument(engine, arguments, 1, 1);
  if (dimension < 1 || static_cast<std::size_t>(dimension) > array.dimensions.size()) {
    raise(ErrorCode::kSubscriptOutOfRange);
  }
  return array.dimensions[static_cast<std::size_t>(dimension) - 1];
}

Value lbound(Engine& engine, Arguments arguments) {
  dimension_argument(engine, arguments);
  return Value::of_long(0);
}

Value ubound(Engine& engine, Arguments arguments) {
  return Value::of_long(dimension_argument(engine, arguments).upper);
}

Value join(Engine& engine, Arguments arguments) {
  const std::span<const Value> list = list_argument(arguments[0]);
  const Value blank = engine.heap().text(" ");
  const bool has_delimiter = arguments.size() > 1 && !arguments[1].is_missing();
  const TextArgument delimiter(engine, has_delimiter ? arguments[1] : blank, TextArgument::kNoNull);
  std::string result;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (i > 0) result += delimiter.view();
    result += TextArgument(engine, list[i], TextArgument::kNoNull).view();
    if (result.size() > kMaxTextBytes) raise(ErrorCode::kOutOfStringSpace);
  }
  engine.charge_steps(static_cast<std::int64_t>(list.size() + result.size() / 16));
  return engine.heap().text(result);
}

// Split(text[, delimiter[, count[, compare]]]). The last of `count` parts holds the rest.
Value split(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0], TextArgument::kNoNull);
  const Value blank = engine.heap().text(" ");
  const bool has_delimiter = arguments.size() > 1 && !arguments[1].is_missing();
  const TextArgument delimiter(engine, has_delimiter ? arguments[1] : blank, TextArgument::kNoNull);
  const std::int32_t count = long_argument(engine, arguments, 2, -1);
  const bool ignore_case = compare_argument(engine, arguments, 3);
  if (count < -1) raise(ErrorCode::kInvalidCall);
  std::vector<Value> parts;
  if (text.view().empty() || count == 0) return list_of(engine, std::move(parts));

  engine.charge_steps(static_cast<std::int64_t>(text.view().size() / 8));
  std::size_t position = 0;
  const TextSearch search(text.view(), delimiter.view(), ignore_case);
  while (!delimiter.view().empty() && static_cast<std::int32_t>(parts.size()) != count - 1) {
    const std::size_t found = search.next(position);
    if (found == std::string_view::npos) break;
    parts.push_back(engine.heap().text(text.view().substr(position, found - position)));
    if (parts.size() > kMaxArrayElements) raise(ErrorCode::kOutOfMemory);
    position = found + delimiter.view().size();
  }
  parts.push_back(engine.heap().text(text.view().substr(position)));
  return list_of(engine, std::move(parts));
}

// Filter(list, wanted[, include[, compare]])
Value filter(Engine& engine, Arguments arguments) {
  const std::span<const Value> list = list_argument(arguments[0]);
  const TextArgument wanted(engine, arguments[1], TextArgument::kNoNull);
  const bool has_include = arguments.size() > 2 && !arguments[2].is_missing();
  const bool include = !has_include || to_boolean(engine, arguments[2]);
  const bool ignore_case = compare_argument(engine, arguments, 3);
  std::vector<Value> kept;
  for (const Value& element : list) {
    const TextArgument text(engine, element, TextArgument::kNoNull);
    engine.charge_steps(static_cast<std::int64_t>(1 + (text.view().size() + wanted.view().size()) / 16));
    const bool holds = TextSearch(text.view(), wanted.view(), ignore_case).next(0) != TextSearch::kNowhere;
    if (holds == include) kept.push_back(to_text(engine, element));
  }
  return list_of(engine, std::move(kept));
}

constexpr Builtin kFunctions[] = {
    {"array", 0, kManyArguments, array},
    {"filter", 2, 4, filter},
    {"join", 1, 2, join},
    {"lbound", 1, 2, lbound},
    {"split", 1, 4, split},
    {"ubound", 1, 2, ubound},
};

}  // namespace

std::span<const Builtin> array_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
