// Word files: a criterion value may name a file of patterns instead of listing its words.
//
//     <REFERENCE><FILE>offers.txt</FILE>                      in the scope's own directory of word files
//     <REFERENCE><PATH>/srv/lists</PATH><FILE>a.txt</FILE>    anywhere
//     (empty)                                                 the general word file, MTAFILTER-GENERAL.TXT
#pragma once

#include <string_view>

#include "common/bounded_text.h"
#include "filters/filter_set.h"
#include "filters/match_results.h"

namespace pv {

using WordFilePath = BoundedText<1024>;

// Whether `value` refers to a word file, and to which: the path is formed from the configuration directory and the
// set's scope. A file name of 255 bytes or more, or a path of 1024 or more, is no reference.
bool ResolveWordFile(const FilterSet& set, std::string_view configuration_directory, std::string_view value,
                     WordFilePath& path);

// One text tested against all lines of a word file, for entry `entry` of a slot: every matching line counts and
// replaces the matched text.
struct WordFileTest {
  std::string_view text;
  std::string_view delimiters;
  SlotIndex slot = 0;
  int entry = 0;
  const char* tag = "";
};

// Where the lines of a word file were looked up.
enum class WordFileSource {
  kCache,  // as loaded with the set
  kFile,   // as it is now
};

// Counts a match of `line`, which becomes the slot's matched text, and prints it.
void record_line(const WordFileTest& test, std::string_view line, WordFileSource source, FilterMatch& match);

// What a line of a word file says: up to its line end and its first NUL.
std::string_view pattern_of_line(std::string_view line);

// Against the file as it was loaded with the set; false when the set's cache does not hold it.
bool MatchWordFileCached(const WordFileTest& test, const PatternCache& cache, std::string_view path,
                         FilterMatch& match);

// Against the file as it is now; false when it cannot be opened.
bool MatchWordFile(const WordFileTest& test, std::string_view path, FilterMatch& match);

}  // namespace pv
