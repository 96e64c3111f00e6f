// The criteria evaluators. Each tests one piece of a message against one criterion slot of every filter of a set in
// which the slot is in use, and records counts, matched texts and match values in the message's results. They keep no
// state and may run on any thread, each with its own results.
//
// One file an evaluator: evaluate_word_list.cpp and so on.
#pragma once

#include <cstdint>
#include <string_view>

#include "filters/filter_set.h"
#include "filters/match_results.h"

namespace pv {

// The words of a slot's values, or the lines of the word files they name, against a text.
void EvaluateWordList(SlotIndex slot, std::string_view text, std::string_view delimiters, const FilterSet& set,
                      MatchResults& results);

// The same for an address header.
void EvaluateAddressList(SlotIndex slot, std::string_view text, std::string_view delimiters, const FilterSet& set,
                         MatchResults& results);

// The same for a field of the envelope.
void EvaluateEnvelopeValue(SlotIndex slot, std::string_view delimiters, std::string_view text, const FilterSet& set,
                           MatchResults& results);

// The words against the attachment name ("filename=", else "name=") in a header line.
void EvaluateAttachmentName(SlotIndex slot, std::string_view header_line, std::string_view delimiters,
                            const FilterSet& set, MatchResults& results);

// Whether a header line announces an attachment ("name="); counts once a message. `delimiters` is not used.
void EvaluateHasAttachment(SlotIndex slot, std::string_view header_line, std::string_view delimiters,
                           const FilterSet& set, MatchResults& results);

// The message's size in bytes against the slot's limit.
void EvaluateSize(SlotIndex slot, std::int32_t size_bytes, const FilterSet& set, MatchResults& results);

// A number against the slot's number.
void EvaluateNumberEquals(SlotIndex slot, std::int32_t number, const FilterSet& set, MatchResults& results);

// A match whatever the slot's values are, described as "<tag>text</tag>".
void EvaluateTag(SlotIndex slot, std::string_view tag, std::string_view text, const FilterSet& set,
                 MatchResults& results);

// Whether the connecting address is whitelisted: words beginning with "1" ask the server's and the postoffice's lists,
// with "2" the postoffice's and mailbox's.
void EvaluateWhitelistedIp(SlotIndex slot, std::string_view account, std::string_view mailbox,
                           std::string_view client_ip, const FilterSet& set, MatchResults& results);

}  // namespace pv
