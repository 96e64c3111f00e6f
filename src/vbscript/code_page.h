// Windows-1252, the code page of every text: letters and Unicode numbers of its bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pv::vbscript {

// Letters above 127 count, as they do in a Western European Windows.
char lower_case(char c);
char upper_case(char c);
std::string lower_case(std::string_view text);
std::string upper_case(std::string_view text);
bool equal_ignoring_case(std::string_view a, std::string_view b);

// The order of two texts: below 0, 0 or above 0. Bytes, or letters without regard to case (vbTextCompare).
int compare_texts(std::string_view a, std::string_view b, bool ignore_case);

// The Unicode number of a byte, and the byte of a Unicode number that the code page has.
std::uint16_t unicode_of(char c);
std::optional<char> byte_of(std::uint32_t unicode);

}  // namespace pv::vbscript
