// Runs the scripts in scripts/. What a line says with "Say value" is expected on that line:
//
//   Say CInt("2.5")          ' expect: 2
//   For i = 1 To 2
//     Say i                  ' expect: 1 | 2
//   Next
//   Say CInt("x")            ' expect error 13
//   Say Nobody(1)            ' expect error 13: Type mismatch: 'Nobody'
//
// The line of an expected error runs under its own "On Error Resume Next"; any other error ends the script and fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "vbscript/engine.h"

namespace pv::vbscript {
namespace {

namespace fs = std::filesystem;

using Said = std::map<int, std::vector<std::string>>;  // by line

constexpr std::string_view kMarker = "' expect";
constexpr std::string_view kBetween = " | ";

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

std::vector<std::string> split_expectations(std::string_view text) {
  std::vector<std::string> values;
  for (std::size_t bar = text.find(kBetween); bar != std::string_view::npos; bar = text.find(kBetween)) {
    values.emplace_back(trimmed(text.substr(0, bar)));
    text.remove_prefix(bar + kBetween.size());
  }
  values.emplace_back(trimmed(text));
  return values;
}

struct Script {
  std::string program;  // line for line the script, with calls around its expectations
  Said expected;
};

// "At" tells the host which line speaks, "Caught" what error a line has raised.
std::string instrumented(std::string_view statement, int line, bool expects_error) {
  const std::string at = "At " + std::to_string(line) + " : ";
  if (!expects_error) return at + std::string(statement);
  return at + "On Error Resume Next : " + std::string(statement) +
         " : Caught Err.Number, Err.Description : On Error GoTo 0";
}

Script read_script(const fs::path& path) {
  Script script;
  std::ifstream in(path, std::ios::binary);
  std::string text;
  for (int line = 1; std::getline(in, text); ++line) {
    const std::size_t marker = text.rfind(kMarker);
    if (marker == std::string::npos) {
      script.program += text + "\n";
      continue;
    }
    std::string_view expectation = trimmed(std::string_view(text).substr(marker + kMarker.size()));
    const bool expects_error = expectation.substr(0, 5) == "error";
    if (!expects_error) expectation.remove_prefix(1);  // the colon
    const std::string_view statement = trimmed(std::string_view(text).substr(0, marker));
    script.program += instrumented(statement, line, expects_error) + "\n";
    script.expected[line] = split_expectations(trimmed(expectation));
  }
  return script;
}

std::string spoken(Engine& engine, std::span<const Value> arguments) {
  std::string text;
  for (const Value& argument : arguments) {
    if (!text.empty()) text += ", ";
    text += engine.as_text(argument).value_or("(no text)");
  }
  return text;
}

void define_host(Engine& engine, Said& said, int& line) {
  engine.define("At", [&line](Engine& in, std::span<const Value> arguments) {
    line = in.as_integer(arguments[0]).value_or(0);
    return Value();
  });
  engine.define("Say", [&](Engine& in, std::span<const Value> arguments) {
    said[line].push_back(std::string(trimmed(spoken(in, arguments))));
    return Value();
  });
  engine.define("Caught", [&](Engine& in, std::span<const Value> arguments) {
    const std::string number = in.as_text(arguments[0]).value_or("");
    const std::string description = in.as_text(arguments[1]).value_or("");
    said[line].push_back(number == "0" ? "no error" : "error " + number + ": " + description);
    return Value();
  });
}

// An expected error may leave its text open.
bool matches(const std::string& expected, const std::string& said) {
  if (expected == said) return true;
  return expected.substr(0, 6) == "error " && said.substr(0, expected.size() + 2) == expected + ": ";
}

std::string joined(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) text += (text.empty() ? "" : std::string(kBetween)) + value;
  return values.empty() ? "(nothing)" : text;
}

// One line for each that did not say what it should.
std::string differences(const Said& expected, const Said& said) {
  std::ostringstream out;
  for (const auto& [line, values] : expected) {
    const auto found = said.find(line);
    const std::vector<std::string> spoken_there = found == said.end() ? std::vector<std::string>() : found->second;
    const bool same = joined(values) == joined(spoken_there) ||
                      std::equal(values.begin(), values.end(), spoken_there.begin(), spoken_there.end(), matches);
    if (!same) out << "line " << line << ": expected " << joined(values) << ", said " << joined(spoken_there) << "\n";
  }
  for (const auto& [line, values] : said) {
    if (expected.count(line) == 0) out << "line " << line << ": not expected: " << joined(values) << "\n";
  }
  return out.str();
}

std::vector<std::string> script_names() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(PV_SCRIPTS)) {
    if (entry.path().extension() == ".vbs") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// Whether this build has what the script is about.
bool can_run(const std::string& name) {
#ifdef PV_HAS_REGEXP
  return !name.empty();
#else
  return name != "regexp";
#endif
}

class Scripts : public testing::TestWithParam<std::string> {};

TEST_P(Scripts, SaysWhatIsExpected) {
  if (!can_run(GetParam())) GTEST_SKIP();
  const Script script = read_script(fs::path(PV_SCRIPTS) / (GetParam() + ".vbs"));
  ASSERT_FALSE(script.expected.empty());
  Said said;
  int line = 0;
  Engine engine;
  define_host(engine, said, line);
  const std::optional<ScriptError> error = engine.add_code(script.program);
  EXPECT_FALSE(error.has_value()) << GetParam() << ".vbs:" << error->at.line << ":" << error->at.column << ": "
                                  << error->source << " " << error->number << ": " << error->description;
  EXPECT_EQ(differences(script.expected, said), "") << GetParam() << ".vbs";
}

INSTANTIATE_TEST_SUITE_P(All, Scripts, testing::ValuesIn(script_names()),
                         [](const testing::TestParamInfo<std::string>& info) { return info.param; });

}  // namespace
}  // namespace pv::vbscript
