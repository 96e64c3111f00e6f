// The search for one piece in a folded text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "filters/folded_text.h"

namespace pv {

// How common a piece of a text is in mail, roughly: a number to compare with that of another piece of that length.
std::uint32_t commonness(std::string_view piece);

// Whether the piece (folded, not empty) occurs among the first `size` bytes of the text. Linear in `size`, whatever the
// bytes are.
bool occurs_in(const FoldedText& text, std::size_t size, std::string_view piece);

}  // namespace pv
