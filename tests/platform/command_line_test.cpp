#include "platform/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pv {
namespace {

struct SplitCase {
  const char* what;
  std::string line;
  std::vector<std::string> words;
};

const SplitCase kLines[] = {
    {"no word", "", {}},
    {"blanks alone", " \t ", {}},
    {"blanks before, between and after", " \tscan  A\tB ", {"scan", "A", "B"}},
    {"blanks between quotes", R"("my scan" "A B" C" "D)", {"my scan", "A B", "C D"}},
    {"an empty word", R"(scan "" A)", {"scan", "", "A"}},
    {"a quote that is text", R"(scan \"A B\")", {"scan", "\"A", "B\""}},
    {"a quote that is text between quotes", R"(scan "A \"B\"")", {"scan", "A \"B\""}},
    {"an even number of backslashes before a quote", R"(scan "A\\" B "C\\\\")", {"scan", "A\\", "B", "C\\\\"}},
    {"an odd number of backslashes before a quote", R"(scan "A\\\" B" C)", {"scan", "A\\\" B", "C"}},
    {"backslashes before anything else", R"(scan c:\q\\a \\host\d\)", {"scan", R"(c:\q\\a)", R"(\\host\d\)"}},
    {"two quotes between quotes", R"(scan "A ""B"" C" D)", {"scan", "A \"B\" C", "D"}},
    {"a quote that is never closed", R"(scan "A B)", {"scan", "A B"}},
    {"backslashes in the program's name", R"("c:\my tools\"scan \"A\")", {R"(c:\my tools\scan)", "\"A\""}},
    {"a NUL", std::string("scan A\0B", 8), {"scan", "A"}},
};

TEST(CommandLine, SplitsAsWindowsProgramsDo) {
  for (const SplitCase& c : kLines) EXPECT_EQ(platform::split_command_line(c.line), c.words) << c.what;
}

}  // namespace
}  // namespace pv
