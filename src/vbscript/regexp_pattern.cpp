#define PCRE2_CODE_UNIT_WIDTH 8
#include "vbscript/regexp_pattern.h"

#include <pcre2.h>

#include <string>

#include "vbscript/code_page.h"
#include "vbscript/engine.h"
#include "vbscript/limits.h"
#include "vbscript/regexp_translation.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// PCRE2's own count of one match's work is limited, first tightly and then, if that is not enough, more generously; the
// script pays for the limit that was. Beyond the last one the script ends as one that takes too long.
constexpr std::uint32_t kMatchLimits[] = {1'000, 30'000, 1'000'000, 10'000'000};
constexpr std::uint32_t kMatchKilobytes = 16 * 1024;
constexpr std::size_t kBytesPerStep = 16;  // of the text, which is looked through for where a match may begin

template <auto Free>
struct FreeWith {
  template <typename Item>
  void operator()(Item* item) const {
    Free(item);
  }
};
using Code = std::unique_ptr<pcre2_code, FreeWith<pcre2_code_free>>;
using CompileContext = std::unique_ptr<pcre2_compile_context, FreeWith<pcre2_compile_context_free>>;
using MatchContext = std::unique_ptr<pcre2_match_context, FreeWith<pcre2_match_context_free>>;
using MatchData = std::unique_ptr<pcre2_match_data, FreeWith<pcre2_match_data_free>>;

// PCRE2's tables begin with the lower case of each byte, then the other case of each. Only these know our letters above
// 127; \w and \b stay with ASCII, as in VBScript.
const std::uint8_t* case_tables() {
  static const std::uint8_t* const tables = [] {
    const std::uint8_t* made = pcre2_maketables(nullptr);
    auto* bytes = const_cast<std::uint8_t*>(made);  // ours: made anew, and kept for the life of the process
    for (int c = 128; bytes != nullptr && c < 256; ++c) {
      const char lower = lower_case(static_cast<char>(c));
      const char upper = upper_case(static_cast<char>(c));
      bytes[c] = static_cast<std::uint8_t>(lower);
      bytes[256 + c] = static_cast<std::uint8_t>(lower == static_cast<char>(c) ? upper : lower);
    }
    return made;
  }();
  return tables;
}

// PCRE2's compile errors that have a number of their own in VBScript; the others are syntax errors.
int error_number(int code) {
  switch (code) {
    case PCRE2_ERROR_QUANTIFIER_INVALID:
      return 5018;
    case PCRE2_ERROR_MISSING_SQUARE_BRACKET:
      return 5019;
    case PCRE2_ERROR_MISSING_CLOSING_PARENTHESIS:
      return 5020;
    case PCRE2_ERROR_CLASS_RANGE_ORDER:
    case PCRE2_ERROR_CLASS_INVALID_RANGE:
      return 5021;
    default:
      return 5017;
  }
}

std::uint32_t compile_options(PatternOptions options) {
  std::uint32_t flags =
      PCRE2_DOLLAR_ENDONLY | PCRE2_MATCH_UNSET_BACKREF | PCRE2_NEVER_UTF | PCRE2_NEVER_UCP | PCRE2_ALLOW_EMPTY_CLASS;
  if (options.ignore_case) flags |= PCRE2_CASELESS;
  if (options.multiline) flags |= PCRE2_MULTILINE;
  return flags;
}

Code compile(std::string_view pattern, PatternOptions options) {
  const CompileContext context(pcre2_compile_context_create(nullptr));
  if (context == nullptr) raise(ErrorCode::kOutOfMemory);
  pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
  pcre2_set_parens_nest_limit(context.get(), kMaxNestedSource);
  pcre2_set_character_tables(context.get(), case_tables());
  const std::string translated = translate_pattern(pattern);
  int error = 0;
  PCRE2_SIZE offset = 0;
  Code code(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(translated.data()), translated.size(), compile_options(options),
                          &error, &offset, context.get()));
  if (code == nullptr) raise_pattern_error(error_number(error));
  return code;
}

}  // namespace

struct CompiledPattern::State {
  Code code;
  MatchContext context;
  MatchData data;
};

CompiledPattern::CompiledPattern(std::string_view pattern, PatternOptions options) : state_(std::make_unique<State>()) {
  state_->code = compile(pattern, options);
  state_->context = MatchContext(pcre2_match_context_create(nullptr));
  state_->data = MatchData(pcre2_match_data_create_from_pattern(state_->code.get(), nullptr));
  if (state_->context == nullptr || state_->data == nullptr) raise(ErrorCode::kOutOfMemory);
  pcre2_set_heap_limit(state_->context.get(), kMatchKilobytes);
}

CompiledPattern::~CompiledPattern() = default;

std::vector<Group> CompiledPattern::match(Engine& engine, std::string_view text, std::size_t from) const {
  engine.charge_steps(static_cast<std::int64_t>((text.size() - from) / kBytesPerStep));
  int found = PCRE2_ERROR_MATCHLIMIT;
  for (const std::uint32_t limit : kMatchLimits) {
    if (found != PCRE2_ERROR_MATCHLIMIT) break;
    engine.charge_steps(limit);
    pcre2_set_match_limit(state_->context.get(), limit);
    found = pcre2_match(state_->code.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), from, 0,
                        state_->data.get(), state_->context.get());
  }
  if (found == PCRE2_ERROR_NOMATCH) return {};
  if (found < 0) engine.charge_steps(kMaxSteps);  // a limit: never returns

  std::vector<Group> groups(pcre2_get_ovector_count(state_->data.get()));
  const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(state_->data.get());
  for (std::size_t i = 0; i < groups.size(); ++i) {
    if (static_cast<int>(i) >= found || offsets[2 * i] == PCRE2_UNSET) continue;
    groups[i] = {offsets[2 * i], offsets[2 * i + 1], true};
  }
  return groups;
}

}  // namespace pv::vbscript
