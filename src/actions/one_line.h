// Keeping values that others wrote (senders, subjects, matched texts) inside the line or column they are put into.
#pragma once

#include <string>
#include <string_view>

namespace pv {

// `text` with a blank for every CR, LF and NUL: inside a header it cannot begin another one.
std::string on_one_line(std::string_view text);

// `text` with a blank for every tab too: inside a tab-separated line it can begin neither a line nor a column.
std::string in_one_column(std::string_view text);

// `text` without the CR and LF at its end: what the last field of a table's line keeps of it.
std::string_view without_line_ends(std::string_view text);

}  // namespace pv
