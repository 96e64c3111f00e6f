// Finding a text in another, over and over, in time that grows with their lengths alone.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pv::vbscript {

// Looks for `wanted` in `text`. Both must outlive it; nothing is copied unless case is ignored.
class TextSearch {
 public:
  static constexpr std::size_t kNowhere = std::string_view::npos;

  TextSearch(std::string_view text, std::string_view wanted, bool ignore_case);
  TextSearch(const TextSearch&) = delete;
  TextSearch& operator=(const TextSearch&) = delete;

  // Where `wanted` first begins at or after `from`. An empty one is found at `from`, which is within the text.
  std::size_t next(std::size_t from) const;
  // Where it last begins.
  std::size_t last() const;

 private:
  std::string folded_text_, folded_wanted_;  // in lower case
  std::string_view text_, wanted_;
};

}  // namespace pv::vbscript
