// Running a function of a VBScript program.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace pv {

// Runs `function_name` of the program and returns what it gave as a number of 16 bits by the language's own conversion:
// true is -1, "2" is 2, and what is no number of that size is 0. Also 0, told through script_debug_print, when the
// program or the function cannot be run. Each call compiles the program anew. The calling thread must be in a COM
// apartment; any number at once.
//
// `result_text` receives what the program's function PV_GetResultData gives, as text, zero-terminated and cut to
// its size; it keeps what it held when that has no text. It is asked for when the value is not 0 and the program
// mentions it. With `always_fill_result` it is asked for after every run, the text is emptied first, and a program that
// does not compile leaves its failure code there. A span of size 0 is never written to.
std::int32_t run_script(std::string_view script_text, std::string_view function_name, std::span<char> result_text,
                        bool always_fill_result);

}  // namespace pv
