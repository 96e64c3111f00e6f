// Functions on texts. Positions count from 1, as scripts see them.
#include <algorithm>
#include <cstring>
#include <string>

#include "vbscript/arguments.h"
#include "vbscript/builtins.h"
#include "vbscript/characters.h"
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

Value len(Engine& engine, Arguments arguments) {
  const Value value = plain_value(engine, arguments[0]);
  if (value.is(Type::kNull)) return Value::null();
  Value storage;
  return Value::of_long(static_cast<std::int32_t>(text_of(engine, value, storage).size()));
}

Value left(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0]);
  const std::size_t count = count_argument(engine, arguments[1]);
  return text.is_null() ? Value::null() : text.part(engine, 0, count);
}

Value right(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0]);
  const std::size_t count = std::min(count_argument(engine, arguments[1]), text.view().size());
  return text.is_null() ? Value::null() : text.part(engine, text.view().size() - count, count);
}

Value mid(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0]);
  const std::size_t start = position_argument(engine, arguments[1]) - 1;
  const std::size_t count = arguments.size() > 2 && !arguments[2].is_missing() ? count_argument(engine, arguments[2])
                                                                               : std::string_view::npos;
  if (text.is_null()) return Value::null();
  return text.part(engine, std::min(start, text.view().size()), count);
}

void charge_search(Engine& engine, std::string_view text, std::string_view wanted) {
  engine.charge_steps(static_cast<std::int64_t>((text.size() + wanted.size()) / 8));
}

// As scripts see a place in a text.
Value position(std::size_t found) {
  return Value::of_long(found == TextSearch::kNowhere ? 0 : static_cast<std::int32_t>(found + 1));
}

// InStr(text, wanted), InStr(start, text, wanted[, compare]).
Value in_str(Engine& engine, Arguments arguments) {
  const bool has_start = arguments.size() > 2;
  const std::size_t start = has_start ? position_argument(engine, arguments[0]) - 1 : 0;
  const TextArgument text(engine, arguments[has_start ? 1 : 0]);
  const TextArgument wanted(engine, arguments[has_start ? 2 : 1]);
  const bool ignore_case = compare_argument(engine, arguments, 3);
  if (text.is_null() || wanted.is_null()) return Value::null();
  charge_search(engine, text.view(), wanted.view());
  if (start >= text.view().size()) return Value::of_long(0);
  return position(TextSearch(text.view(), wanted.view(), ignore_case).next(start));
}

// InStrRev(text, wanted[, start[, compare]]): the last occurrence that ends at `start` or before.
Value in_str_rev(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0]);
  const TextArgument wanted(engine, arguments[1]);
  const std::int32_t start = long_argument(engine, arguments, 2, -1);
  const bool ignore_case = compare_argument(engine, arguments, 3);
  if (start == 0 || start < -1) raise(ErrorCode::kInvalidCall);
  if (text.is_null() || wanted.is_null()) return Value::null();
  const std::size_t end = start == -1 ? text.view().size() : static_cast<std::size_t>(start);
  if (text.view().empty() || end > text.view().size()) return Value::of_long(0);
  if (wanted.view().empty()) return Value::of_long(static_cast<std::int32_t>(end));
  if (wanted.view().size() > end) return Value::of_long(0);
  charge_search(engine, text.view(), wanted.view());
  return position(TextSearch(text.view().substr(0, end), wanted.view(), ignore_case).last());
}

struct Replacement {
  std::string_view text, wanted, put;
  std::int32_t count;  // -1: every occurrence
  bool ignore_case;
};

// What is too long is noticed before it is built.
std::string replaced(Engine& engine, const Replacement& r) {
  std::string result;
  std::size_t position = 0;
  const TextSearch search(r.text, r.wanted, r.ignore_case);
  for (std::int32_t left_over = r.count; left_over != 0; --left_over) {
    const std::size_t found = search.next(position);
    if (found == std::string_view::npos) break;
    result.append(r.text, position, found - position).append(r.put);
    if (result.size() > kMaxTextBytes) raise(ErrorCode::kOutOfStringSpace);
    engine.charge_steps(static_cast<std::int64_t>(1 + (r.wanted.size() + r.put.size()) / 16));
    position = found + r.wanted.size();
  }
  return result.append(r.text, position);
}

// Replace(text, wanted, put[, start[, count[, compare]]]). The result begins at `start`.
Value replace(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0], TextArgument::kNoNull);
  const TextArgument wanted(engine, arguments[1], TextArgument::kNoNull);
  const TextArgument put(engine, arguments[2], TextArgument::kNoNull);
  const std::int32_t start = long_argument(engine, arguments, 3, 1);
  const std::int32_t count = long_argument(engine, arguments, 4, -1);
  const bool ignore_case = compare_argument(engine, arguments, 5);
  if (start < 1 || count < -1) raise(ErrorCode::kInvalidCall);
  const std::size_t from = std::min(static_cast<std::size_t>(start - 1), text.view().size());
  if (wanted.view().empty() || count == 0) return text.part(engine, from, std::string_view::npos);
  engine.charge_steps(static_cast<std::int64_t>(text.view().size() / 16));
  return engine.heap().text(
      replaced(engine, {text.view().substr(from), wanted.view(), put.view(), count, ignore_case}));
}

Value trimmed(Engine& engine, const Value& argument, bool front, bool back) {
  const TextArgument text(engine, argument);
  if (text.is_null()) return Value::null();
  const std::string_view view = text.view();
  charge_search(engine, view, {});
  const std::size_t from = front ? std::min(view.find_first_not_of(' '), view.size()) : 0;
  const std::size_t last = back ? view.find_last_not_of(' ') : view.size() - 1;
  const std::size_t end = last == std::string_view::npos ? 0 : last + 1;
  return text.part(engine, from, end > from ? end - from : 0);
}

Value trim(Engine& engine, Arguments arguments) {
  return trimmed(engine, arguments[0], true, true);
}
Value ltrim(Engine& engine, Arguments arguments) {
  return trimmed(engine, arguments[0], true, false);
}
Value rtrim(Engine& engine, Arguments arguments) {
  return trimmed(engine, arguments[0], false, true);
}

Value ucase(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0]);
  return text.is_null() ? Value::null() : engine.heap().text(upper_case(text.view()));
}

Value lcase(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0]);
  return text.is_null() ? Value::null() : engine.heap().text(lower_case(text.view()));
}

Value str_comp(Engine& engine, Arguments arguments) {
  const TextArgument a(engine, arguments[0]);
  const TextArgument b(engine, arguments[1]);
  const bool ignore_case = compare_argument(engine, arguments, 2);
  if (a.is_null() || b.is_null()) return Value::null();
  charge_search(engine, a.view(), b.view());
  const int order = compare_texts(a.view(), b.view(), ignore_case);
  return Value::integer(static_cast<std::int16_t>((order > 0) - (order < 0)));
}

Value repeated(Engine& engine, std::size_t count, char c) {
  if (count > kMaxTextBytes) raise(ErrorCode::kOutOfStringSpace);
  engine.charge_steps(static_cast<std::int64_t>(count / 16));
  Text* text = engine.heap().new_text_of_size(count, count);
  std::memset(text->data(), c, count);
  return Value::adopt(text);
}

// String(count, character): a code, or the first character of a text.
Value string(Engine& engine, Arguments arguments) {
  const std::size_t count = count_argument(engine, arguments[0]);
  const Value character = plain_value(engine, arguments[1]);
  if (character.is(Type::kNull)) return Value::null();
  if (!character.is(Type::kString)) return repeated(engine, count, static_cast<char>(to_long(engine, character)));
  if (character.view().empty()) raise(ErrorCode::kInvalidCall);
  return repeated(engine, count, character.view()[0]);
}

Value space(Engine& engine, Arguments arguments) {
  return repeated(engine, count_argument(engine, arguments[0]), ' ');
}

Value str_reverse(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0], TextArgument::kNoNull);
  const std::string_view view = text.view();
  return engine.heap().text(std::string(view.rbegin(), view.rend()));
}

char first_character(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0], TextArgument::kNoNull);
  if (text.view().empty()) raise(ErrorCode::kInvalidCall);
  return text.view()[0];
}

Value asc(Engine& engine, Arguments arguments) {
  return Value::integer(static_cast<unsigned char>(first_character(engine, arguments)));
}

Value asc_w(Engine& engine, Arguments arguments) {
  return Value::integer(static_cast<std::int16_t>(unicode_of(first_character(engine, arguments))));
}

Value chr(Engine& engine, Arguments arguments) {
  const std::int32_t code = to_long(engine, arguments[0]);
  if (code < 0 || code > 255) raise(ErrorCode::kInvalidCall);
  const char c = static_cast<char>(code);
  return engine.heap().text({&c, 1});
}

// A character that the code page does not have becomes a question mark, as in every conversion to it.
Value chr_w(Engine& engine, Arguments arguments) {
  const std::int32_t code = to_long(engine, arguments[0]);
  if (code < -32768 || code > 65535) raise(ErrorCode::kInvalidCall);
  const char c = byte_of(static_cast<std::uint16_t>(code)).value_or('?');
  return engine.heap().text({&c, 1});
}

constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr std::string_view kUnescaped = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789*+-./@_";

void append_hex(std::string& text, unsigned number, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) text += kHexDigits[(number >> shift) & 15U];
}

Value escape(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0]);
  if (text.is_null()) return Value::null();
  std::string result;
  for (const char c : text.view()) {
    const unsigned code = unicode_of(c);
    if (kUnescaped.find(c) != std::string_view::npos) {
      result += c;
    } else if (code < 256) {
      append_hex(result += '%', code, 2);
    } else {
      append_hex(result += "%u", code, 4);
    }
  }
  return engine.heap().text(result);
}

// The number of `digits` hexadecimal digits; nullopt when there are fewer.
std::optional<std::uint32_t> hex_number(std::string_view text, std::size_t digits) {
  if (text.size() < digits) return std::nullopt;
  std::uint32_t number = 0;
  for (const char c : text.substr(0, digits)) {
    const unsigned digit = digit_value(c);
    if (digit > 15) return std::nullopt;
    number = number * 16 + digit;
  }
  return number;
}

Value unescape(Engine& engine, Arguments arguments) {
  const TextArgument text(engine, arguments[0]);
  if (text.is_null()) return Value::null();
  std::string result;
  std::string_view rest = text.view();
  while (!rest.empty()) {
    const bool wide = rest.size() > 1 && (rest[1] == 'u' || rest[1] == 'U');
    const std::size_t prefix = wide ? 2 : 1;
    const std::size_t digits = wide ? 4 : 2;
    const std::optional<std::uint32_t> code =
        rest[0] == '%' && rest.size() > prefix ? hex_number(rest.substr(prefix), digits) : std::nullopt;
    result += code ? byte_of(*code).value_or('?') : rest[0];
    rest.remove_prefix(code ? prefix + digits : 1);
  }
  return engine.heap().text(result);
}

// Texts have one byte a character, so the functions on bytes are the functions on characters.
constexpr Builtin kFunctions[] = {
    {"asc", 1, 1, asc},           {"ascb", 1, 1, asc},
    {"ascw", 1, 1, asc_w},        {"chr", 1, 1, chr},
    {"chrb", 1, 1, chr},          {"chrw", 1, 1, chr_w},
    {"escape", 1, 1, escape},     {"instr", 2, 4, in_str},
    {"instrb", 2, 4, in_str},     {"instrrev", 2, 4, in_str_rev},
    {"lcase", 1, 1, lcase},       {"left", 2, 2, left},
    {"leftb", 2, 2, left},        {"len", 1, 1, len},
    {"lenb", 1, 1, len},          {"ltrim", 1, 1, ltrim},
    {"mid", 2, 3, mid},           {"midb", 2, 3, mid},
    {"replace", 3, 6, replace},   {"right", 2, 2, right},
    {"rightb", 2, 2, right},      {"rtrim", 1, 1, rtrim},
    {"space", 1, 1, space},       {"strcomp", 2, 3, str_comp},
    {"string", 2, 2, string},     {"strreverse", 1, 1, str_reverse},
    {"trim", 1, 1, trim},         {"ucase", 1, 1, ucase},
    {"unescape", 1, 1, unescape},
};

}  // namespace

std::span<const Builtin> string_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
