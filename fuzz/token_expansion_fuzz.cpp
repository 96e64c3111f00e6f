// Token expansion. The input is a block of tagged values and a text, separated by a NUL.
#include <cstddef>
#include <string>
#include <string_view>

#include "filters/token_expansion.h"
#include "fuzz_target.h"

namespace pv::fuzz {
namespace {

std::string expanded(std::string_view block, std::string_view text, std::size_t capacity, TokenMode mode) {
  std::string target(text);
  ExpandTokens(block, target, capacity, mode);
  return target;
}

void run(std::string_view input) {
  const std::string_view block = take_until('\0', input);
  const std::string_view text = input;
  for (const std::size_t capacity : {std::size_t{16}, std::size_t{1024}, std::size_t{4096}}) {
    for (const TokenMode mode : {TokenMode::kPlain, TokenMode::kHeaderEncoded}) {
      const std::string result = expanded(block, text, capacity, mode);
      require(result.size() < capacity || result == text, "the text stays below its capacity");
      if (text.find("[PV_") == std::string_view::npos) require(result == text, "a text without tokens stays");
    }
  }
  // The word list is put in as it is, everything else encoded.
  const bool one_line = text.find_first_of("\r\n") == std::string_view::npos;
  if (one_line && block.find("<MF-") == std::string_view::npos) {
    const std::string header = expanded(block, text, 4096, TokenMode::kHeaderEncoded);
    require(header.find_first_of("\r\n") == std::string::npos, "an encoded value adds no line");
  }
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
