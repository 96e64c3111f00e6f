#include "filters/pattern_cache.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "common/bounded_text.h"
#include "common/files.h"
#include "common/output.h"
#include "platform/file.h"

namespace pv {
namespace {

// Puts the non-empty lines of a text together from blocks of any size. A line ends at its first NUL; what follows up to
// the line feed is not kept, so a file without line ends cannot fill the memory with it.
class LineCollector {
 public:
  explicit LineCollector(std::vector<std::string>& lines) : lines_(lines) {}

  void add(std::string_view block) {
    for (std::size_t end = block.find('\n'); end != std::string_view::npos; end = block.find('\n')) {
      extend(block.substr(0, end));
      finish_line();
      block.remove_prefix(end + 1);
    }
    extend(block);
  }

  void finish_line() {
    if (!line_.empty()) lines_.push_back(line_);
    line_.clear();
    met_nul_ = false;
  }

 private:
  void extend(std::string_view piece) {
    if (met_nul_) return;
    const std::string_view text = until_nul(piece);
    line_ += text;
    met_nul_ = text.size() < piece.size();
  }

  std::vector<std::string>& lines_;
  std::string line_;
  bool met_nul_ = false;
};

}  // namespace

void LoadPatternFile(std::string_view path, PatternFile& file) {
  file.lines.clear();
  const std::int32_t size = file_size(path);
  platform::InputFile input;
  if (size < 1 || !input.open(path, platform::FileMode::kText)) return;

  LineCollector collector(file.lines);
  std::array<char, 16384> block;
  std::size_t left = static_cast<std::size_t>(size);
  while (left > 0) {
    const std::size_t got = input.read(std::span(block).first(std::min(left, block.size())));
    if (got == 0) break;
    collector.add({block.data(), got});
    left -= got;
  }
  collector.finish_line();
}

const PatternFile* PatternCache::find(std::string_view path) const {
  const auto found = files_.find(path);
  return found == files_.end() ? nullptr : &found->second;
}

void PatternCache::load(std::string_view path, const char* announcement) {
  if (find(path) != nullptr) return;
  PatternFile file;
  file.path = path;
  print(announcement, file.path.c_str());
  LoadPatternFile(path, file);
  files_.emplace(path, std::move(file));
}

}  // namespace pv
