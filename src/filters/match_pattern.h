// The one rule by which every criterion word and every line of a word file matches a text.
#pragma once

#include <string_view>

namespace pv {

// Whether `pattern` occurs in `text`:
//  - without an asterisk it is a word: its first occurrence (only that one is examined) must have a delimiter or an
//    end of the text on both sides;
//  - with single asterisks it is prefix*middle*tail: the text begins with the prefix, the middles follow in order in
//    any case, the tail is followed by a delimiter or the end;
//  - with two adjacent asterisks it is a literal text, found anywhere in any case.
//
// `delimiters` holds the delimiting characters. With `case_sensitive` words, prefix and tail are compared exactly, else
// without regard to the case of ASCII letters; then a middle or tail that does not follow may still stand where the
// text first has its initial letter in the opposite case. An empty pattern never matches.
//
// Allocates nothing; the time is bounded by the lengths of text and pattern multiplied.
bool MatchPattern(std::string_view text, std::string_view pattern, std::string_view delimiters, bool case_sensitive);

}  // namespace pv
