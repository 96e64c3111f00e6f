// Tokens in the texts of actions: "[PV_SENDER]" becomes the value tagged <SENDER> in a block of tagged values.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pv {

// How values are put into the text.
enum class TokenMode {
  kPlain,
  // For header lines: bytes below 32 and above 126 and "=", "?", "_" become "=" and two upper-case hexadecimal digits.
  kHeaderEncoded,
};

// Replaces in `target` every "[PV_name]" whose name is tagged in `block` ("<name>value</name>"), tag by tag in the
// order of the block; of a tag that occurs more than once the first value is used, and inserted values are searched for
// the tags that follow. Then "[PV_WORDLIST]" becomes the values tagged MF-W and MF-R, joined by ",". A value that would
// bring the target to `capacity` bytes or more leaves its token in place.
void ExpandTokens(std::string_view block, std::string& target, std::size_t capacity, TokenMode mode);

}  // namespace pv
