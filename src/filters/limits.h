// The limits of filter tables and match results.
#pragma once

#include <cstddef>

namespace pv {

inline constexpr int kMaxFilters = 100;  // enabled rows of one filter table; further rows are reported and not read
inline constexpr int kSlotCount = 25;    // criterion types, and lines of a criteria table that are read
inline constexpr int kMaxEntries = 16;   // values of one criterion with match values of their own; more are not counted

inline constexpr std::size_t kTableLine = 2048;    // bytes of a table line, terminator included; longer ones in pieces
inline constexpr std::size_t kStatusField = 56;    // bytes of a status or number field
inline constexpr std::size_t kMatchedText = 1024;  // bytes of a match description, terminator included; cut beyond
inline constexpr std::size_t kMatchValue = 16;     // bytes of a match value, terminator included; cut beyond
inline constexpr std::size_t kWordListValue = 2048;  // bytes of an entry's value for word lists; cut or emptied beyond
inline constexpr std::size_t kAddressValue = 1024;   // the same for the other list criteria

inline constexpr std::size_t kLargestScript = std::size_t{16} << 20;  // bytes of a script file; a larger one is empty
inline constexpr std::size_t kScriptTokenName = 1023;  // bytes between "[PV_" and "]"; longer names are passed over
inline constexpr std::size_t kWordFileName = 254;      // bytes of a "<FILE>" text; a longer one is no reference

inline constexpr std::size_t kTagName = 254;     // bytes of a tag's name in token expansion; longer ones are not used
inline constexpr std::size_t kTagValue = 4093;   // bytes of a tagged value; a longer one leaves its token
inline constexpr std::size_t kListedWord = 127;  // bytes of a value in "[PV_WORDLIST]"; longer ones are left out
inline constexpr std::size_t kWordListText = 2048;  // bytes of "[PV_WORDLIST]", terminator included; cut beyond

}  // namespace pv
