// A script's text: it ends as a program or as a compile error at a place in the text, whatever its line ends.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "script_fragments.h"
#include "vbscript/parser.h"

namespace pv::fuzz {
namespace {

using vbscript::Arena;
using vbscript::CompileError;

struct Outcome {
  std::optional<CompileError> error;
  std::uint32_t statements = 0;
};

template <typename Parse>
Outcome outcome_of(Parse parse) {
  Outcome outcome;
  try {
    outcome.statements = parse();
  } catch (const CompileError& error) {
    outcome.error = error;
  }
  return outcome;
}

Outcome parse(std::string_view source) {
  Arena arena;
  return outcome_of([&] { return vbscript::parse_program(source, arena)->body.size; });
}

std::string with_line_feeds(std::string_view source) {
  std::string text;
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source[i] != '\r') {
      text += source[i];
    } else if (i + 1 >= source.size() || source[i + 1] != '\n') {
      text += '\n';
    }
  }
  return text;
}

// `text` has line feeds alone.
void require_place(const CompileError& error, std::string_view text) {
  require(error.number >= 1001 && error.number <= 1058, "the number of a compile error");
  require(error.at.line >= 1 && error.at.column >= 1, "lines and columns count from 1");
  for (std::uint32_t line = 1; line < error.at.line; ++line) {
    const std::size_t end = text.find('\n');
    require(end != std::string_view::npos, "the line is there");
    text.remove_prefix(end + 1);
  }
  require(error.at.column <= std::min(text.find('\n'), text.size()) + 1,
          "the column is in the line or right behind it");
}

void run(std::string_view source) {
  const std::string text = with_line_feeds(source);
  const Outcome first = parse(source);
  const Outcome second = parse(text);
  require(first.error.has_value() == second.error.has_value(), "line ends make no error");
  require(first.statements == second.statements, "line ends make no statement");
  if (first.error) {
    require(first.error->number == second.error->number, "line ends do not change the error");
    require(first.error->at.line == second.error->at.line && first.error->at.column == second.error->at.column,
            "line ends do not move the error");
    require_place(*first.error, text);
  }
  Arena arena;
  const Outcome expression = outcome_of([&] {
    vbscript::parse_expression(text, arena, {.inside_class = true});
    return 1U;
  });
  if (expression.error) require_place(*expression.error, text);
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::script_of(pv::fuzz::input_text(data, size)));
  return 0;
}
