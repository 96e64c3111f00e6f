// The words of a command line, as Windows programs split theirs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pv::platform {

// Blanks and tabs separate the words; what stands between double quotes stays together, and "" is an empty word. Before
// a double quote, 2n backslashes are n backslashes and the quote counts, 2n + 1 are n backslashes and a quote that is
// text; elsewhere a backslash is text. Two quotes in a row between quotes are one that is text. In the first word, the
// program's name, every backslash is text. The command line ends at its first NUL. Empty when there is no word.
std::vector<std::string> split_command_line(std::string_view command_line);

}  // namespace pv::platform
