// Word files in memory: one pattern a line, kept by path while a filter set lives.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace pv {

// One word file. A missing or empty file has no lines.
struct PatternFile {
  std::string path;                // as it was formed from the criterion's value
  std::vector<std::string> lines;  // the non-empty lines in file order, without line ends
};

// Reads a word file into `file.lines`, as text.
void LoadPatternFile(std::string_view path, PatternFile& file);

// The word files of one filter set. Filled while the set loads, then only read. Paths are compared byte by byte, so two
// spellings of one file are two entries.
class PatternCache {
 public:
  // nullptr when the path was never loaded.
  const PatternFile* find(std::string_view path) const;

  // Loads the file under its path, unless it is there already; prints `announcement` (with one %s for the path) before
  // it reads. A file that cannot be read is there with no lines.
  void load(std::string_view path, const char* announcement);

  void clear() { files_.clear(); }
  std::size_t size() const { return files_.size(); }

 private:
  std::map<std::string, PatternFile, std::less<>> files_;
};

}  // namespace pv
