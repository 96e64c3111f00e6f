// Real mail and word lists for it. The mail is the corpus beside the project, when it is there, else a few lines over
// and over. Words come from the system's dictionary, when it is there, else from syllables; the lists are nested: a
// longer one begins with the shorter ones.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace pv::bench {

// The files of the corpus; none when it is not there.
const std::vector<std::string>& mail_files();

// The body lines of every message, with their line ends.
const std::vector<std::string>& mail_lines();

enum class Asterisks { kNone, kOneInEight };

// Dictionary words and pairs of them, phrases of words that are common in advertisements, names of domains, misspelt
// words; no two alike.
std::vector<std::string> word_list(std::size_t count, Asterisks asterisks);

}  // namespace pv::bench
