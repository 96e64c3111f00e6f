// Running a function of a VBScript program.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace pv {

// Runs `function_name` of the program and returns its value as a 16-bit number, 0 when it could not be run.
// `result_text` (zero-terminated within its size) receives the program's result text; with `always_fill_result` it is
// emptied first.
std::int32_t run_script(std::string_view script_text, std::string_view function_name, std::span<char> result_text,
                        bool always_fill_result);

// Script diagnostics, as "Debug Status" says: 1 through report_write, 2 to standard output, else nowhere.
void script_debug_print(std::string_view text);

}  // namespace pv
