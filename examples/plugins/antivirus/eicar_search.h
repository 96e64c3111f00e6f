// The EICAR test text, which every antivirus scanner finds though it does nothing, in the bytes of a message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace example {

// The text itself, put together when it is called for: neither this source nor the library may be taken for infected.
std::string eicar_text();

// Finds one text in a stream of bytes.
class TextSearch {
 public:
  explicit TextSearch(std::string text);
  // True when the text ends at this byte.
  bool feed(char byte);

 private:
  std::string text_;
  std::vector<std::size_t> fallback_;  // the longest start of the text that the first n bytes end in
  std::size_t matched_ = 0;
};

// Decodes whatever base64 a stream of bytes holds. Blocks begin after an empty line or a character that is not base64.
class Base64Stream {
 public:
  // True when `decoded` is a byte that came to its end.
  bool feed(char encoded, char& decoded);

 private:
  void restart();
  std::uint32_t bits_ = 0;
  int bit_count_ = 0;
  bool line_is_empty_ = false;
};

// Finds the EICAR text in a message, as it stands or in a part encoded as base64.
class EicarSearch {
 public:
  // True once the text was found.
  bool feed(char byte);

 private:
  TextSearch plain_{eicar_text()};
  TextSearch decoded_{eicar_text()};
  Base64Stream base64_;
};

}  // namespace example
