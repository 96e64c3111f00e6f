#include "vbscript/regexp.h"

#include <memory>
#include <optional>
#include <string>

#include "vbscript/arguments.h"
#include "vbscript/characters.h"
#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/limits.h"
#include "vbscript/regexp_pattern.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

using Arguments = std::span<const Value>;

// A read-only list: Matches and SubMatches.
class ValueList : public NativeObject {
 public:
  ValueList(Heap& heap, const NativeClass& native_class, std::vector<Value> values)
      : NativeObject(heap, native_class), values_(std::move(values)) {}
  std::vector<Value> items(Engine&) override { return values_; }
  void clear() override { values_.clear(); }
  const std::vector<Value>& values() const { return values_; }

 private:
  std::vector<Value> values_;
};

Value list_count(Engine&, Object& self, Arguments) {
  return Value::of_long(static_cast<std::int32_t>(static_cast<ValueList&>(self).values().size()));
}

Value list_item(Engine& engine, Object& self, Arguments arguments) {
  const std::vector<Value>& values = static_cast<ValueList&>(self).values();
  const std::int32_t index = to_long(engine, arguments[0]);
  if (index < 0 || static_cast<std::size_t>(index) >= values.size()) raise(ErrorCode::kInvalidCall);
  return values[static_cast<std::size_t>(index)];
}

constexpr NativeMember kListMembers[] = {{"count", Access::kGet, 0, 0, list_count},
                                         {"item", Access::kGet, 1, 1, list_item}};
constexpr NativeClass kMatches = {"IMatchCollection2", kListMembers, "item"};
constexpr NativeClass kSubMatches = {"ISubMatches", kListMembers, "item"};

// One match; what it refers to it holds itself, as the text searched may be gone.
class Match : public NativeObject {
 public:
  Match(Heap& heap, Value value, std::size_t first_index, Value sub_matches);
  void clear() override { sub_matches = Value(); }

  Value value;
  std::size_t first_index;
  Value sub_matches;
};

Match& match_of(Object& self) {
  return static_cast<Match&>(self);
}
Value match_first_index(Engine&, Object& self, Arguments) {
  return Value::of_long(static_cast<std::int32_t>(match_of(self).first_index));
}
Value match_length(Engine&, Object& self, Arguments) {
  return Value::of_long(static_cast<std::int32_t>(match_of(self).value.view().size()));
}
Value match_sub_matches(Engine&, Object& self, Arguments) {
  return match_of(self).sub_matches;
}
Value match_value(Engine&, Object& self, Arguments) {
  return match_of(self).value;
}

constexpr NativeMember kMatchMembers[] = {
    {"firstindex", Access::kGet, 0, 0, match_first_index},
    {"length", Access::kGet, 0, 0, match_length},
    {"submatches", Access::kGet, 0, 0, match_sub_matches},
    {"value", Access::kGet, 0, 0, match_value},
};
constexpr NativeClass kMatch = {"IMatch2", kMatchMembers, "value"};

Match::Match(Heap& heap, Value value, std::size_t first_index, Value sub_matches)
    : NativeObject(heap, kMatch),
      value(std::move(value)),
      first_index(first_index),
      sub_matches(std::move(sub_matches)) {}

class RegExp : public NativeObject {
 public:
  explicit RegExp(Heap& heap);

  // Compiled when it is first used with these settings.
  const CompiledPattern& compiled() {
    if (compiled_ == nullptr || compiled_for_ != pattern || compiled_options_ != options) {
      compiled_ = std::make_unique<CompiledPattern>(pattern, options);
      compiled_for_ = pattern;
      compiled_options_ = options;
    }
    return *compiled_;
  }

  std::string pattern;
  PatternOptions options;
  bool global = false;

 private:
  std::unique_ptr<CompiledPattern> compiled_;
  std::string compiled_for_;
  PatternOptions compiled_options_;
};

RegExp& self_of(Object& self) {
  return static_cast<RegExp&>(self);
}

std::string_view part(std::string_view text, const Group& group) {
  return text.substr(group.begin, group.end - group.begin);
}

// Calls `visit` for the matches that the settings ask for, first to last. An empty match moves the search on.
template <typename Visit>
void for_each_match(Engine& engine, RegExp& self, std::string_view text, Visit visit) {
  const CompiledPattern& pattern = self.compiled();
  for (std::size_t from = 0; from <= text.size();) {
    const std::vector<Group> groups = pattern.match(engine, text, from);
    if (groups.empty()) return;
    visit(groups);
    if (!self.global) return;
    from = groups[0].end + (groups[0].end == groups[0].begin ? 1 : 0);
  }
}

Value test(Engine& engine, Object& self, Arguments arguments) {
  const TextArgument text(engine, arguments[0], TextArgument::kNoNull);
  return Value::boolean(!self_of(self).compiled().match(engine, text.view(), 0).empty());
}

Value match_object(Engine& engine, std::string_view text, std::span<const Group> groups) {
  std::vector<Value> subs;
  for (const Group& group : groups.subspan(1)) {
    subs.push_back(group.set ? engine.heap().text(part(text, group)) : Value());
  }
  Value sub_matches = Value::adopt(static_cast<Object*>(new ValueList(engine.heap(), kSubMatches, std::move(subs))));
  Value value = engine.heap().text(part(text, groups[0]));
  return Value::adopt(
      static_cast<Object*>(new Match(engine.heap(), std::move(value), groups[0].begin, std::move(sub_matches))));
}

Value execute(Engine& engine, Object& self, Arguments arguments) {
  const TextArgument text(engine, arguments[0], TextArgument::kNoNull);
  std::vector<Value> matches;
  for_each_match(engine, self_of(self), text.view(), [&](std::span<const Group> groups) {
    if (matches.size() >= kMaxArrayElements) raise(ErrorCode::kOutOfMemory);
    matches.push_back(match_object(engine, text.view(), groups));
  });
  return Value::adopt(static_cast<Object*>(new ValueList(engine.heap(), kMatches, std::move(matches))));
}

// A group number of one or two digits behind "$" that the pattern has; 0: none.
std::size_t group_number(std::string_view digits, std::size_t groups, std::size_t& used) {
  for (const std::size_t length : {2U, 1U}) {
    if (digits.size() < length || !is_digit(digits[0]) || !is_digit(digits[length - 1])) continue;
    const std::size_t number = length == 2 ? static_cast<std::size_t>((digits[0] - '0') * 10 + (digits[1] - '0'))
                                           : static_cast<std::size_t>(digits[0] - '0');
    if (number == 0 || number >= groups) continue;
    used = length;
    return number;
  }
  return 0;
}

// Puts the replacement of one match behind `result`: $1 to $99, $&, $`, $', $$; any other "$" stands for itself.
void append_replacement(std::string& result, std::string_view put, std::string_view text,
                        std::span<const Group> groups) {
  for (std::size_t i = 0; i < put.size(); ++i) {
    const char next = put[i] == '$' && i + 1 < put.size() ? put[i + 1] : '\0';
    std::size_t used = 1;
    const std::size_t number = next == '\0' ? 0 : group_number(put.substr(i + 1), groups.size(), used);
    if (number > 0) {
      if (groups[number].set) result += part(text, groups[number]);
    } else if (next == '&') {
      result += part(text, groups[0]);
    } else if (next == '`') {
      result += text.substr(0, groups[0].begin);
    } else if (next == '\'') {
      result += text.substr(groups[0].end);
    } else if (next == '$') {
      result += '$';
    } else {
      result += put[i];
      continue;
    }
    i += used;
  }
}

Value replace(Engine& engine, Object& self, Arguments arguments) {
  const TextArgument text(engine, arguments[0], TextArgument::kNoNull);
  const TextArgument put(engine, arguments[1], TextArgument::kNoNull);
  std::string result;
  std::size_t copied = 0;
  for_each_match(engine, self_of(self), text.view(), [&](std::span<const Group> groups) {
    result += text.view().substr(copied, groups[0].begin - copied);
    append_replacement(result, put.view(), text.view(), groups);
    copied = groups[0].end;
    if (result.size() > kMaxTextBytes) raise(ErrorCode::kOutOfStringSpace);
  });
  result += text.view().substr(copied);
  return engine.heap().text(result);
}

Value get_pattern(Engine& engine, Object& self, Arguments) {
  return engine.heap().text(self_of(self).pattern);
}
Value let_pattern(Engine& engine, Object& self, Arguments arguments) {
  self_of(self).pattern = TextArgument(engine, arguments[0], TextArgument::kNoNull).view();
  return {};
}
Value get_global(Engine&, Object& self, Arguments) {
  return Value::boolean(self_of(self).global);
}
Value let_global(Engine& engine, Object& self, Arguments arguments) {
  self_of(self).global = to_boolean(engine, arguments[0]);
  return {};
}
Value get_ignore_case(Engine&, Object& self, Arguments) {
  return Value::boolean(self_of(self).options.ignore_case);
}
Value let_ignore_case(Engine& engine, Object& self, Arguments arguments) {
  self_of(self).options.ignore_case = to_boolean(engine, arguments[0]);
  return {};
}
Value get_multiline(Engine&, Object& self, Arguments) {
  return Value::boolean(self_of(self).options.multiline);
}
Value let_multiline(Engine& engine, Object& self, Arguments arguments) {
  self_of(self).options.multiline = to_boolean(engine, arguments[0]);
  return {};
}

constexpr NativeMember kMembers[] = {
    {"execute", Access::kGet, 1, 1, execute},
    {"global", Access::kGet, 0, 0, get_global},
    {"global", Access::kLet, 0, 0, let_global},
    {"ignorecase", Access::kGet, 0, 0, get_ignore_case},
    {"ignorecase", Access::kLet, 0, 0, let_ignore_case},
    {"multiline", Access::kGet, 0, 0, get_multiline},
    {"multiline", Access::kLet, 0, 0, let_multiline},
    {"pattern", Access::kGet, 0, 0, get_pattern},
    {"pattern", Access::kLet, 0, 0, let_pattern},
    {"replace", Access::kGet, 2, 2, replace},
    {"test", Access::kGet, 1, 1, test},
};
constexpr NativeClass kRegExp = {"IRegExp2", kMembers, ""};

RegExp::RegExp(Heap& heap) : NativeObject(heap, kRegExp) {}

}  // namespace

Object* new_regexp(Engine& engine) {
  return new RegExp(engine.heap());
}

}  // namespace pv::vbscript
