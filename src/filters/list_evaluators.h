// The evaluators that walk lists of words, what each does with a word, and the texts each is given. Lists that are
// given other texts than these are walked word by word.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "filters/criteria_keywords.h"
#include "filters/delimiters.h"
#include "filters/filter_set.h"
#include "filters/limits.h"

namespace pv {

enum class ListEvaluator { kWordList, kAddressList, kEnvelopeValue, kAttachmentName };

struct ListRules {
  std::size_t value_capacity;   // bytes of an entry's value
  std::size_t sender_capacity;  // bytes of a word with the sender put in; 0: the sender is not put in
  const char* file_tag;         // of a word file's matches; nullptr: values name no word files
};

inline constexpr ListRules kListRules[] = {
    // A word list's word that would have all of its capacity keeps its token.
    {kWordListValue, kWordListValue - 1, tag::kWord},
    {kAddressValue, kAddressValue, tag::kWord},
    {kAddressValue, 0, tag::kEnvelope},
    {kAddressValue, 0, nullptr},
};
constexpr const ListRules& rules_of(ListEvaluator evaluator) {
  return kListRules[static_cast<std::size_t>(evaluator)];
}

struct ListCriterion {
  SlotIndex slot;
  ListEvaluator evaluator;
  std::string_view delimiters;
};

// In the order of the slots.
inline constexpr ListCriterion kListCriteria[] = {
    {kSubject, ListEvaluator::kWordList, kWordDelimiters},
    {kBody, ListEvaluator::kWordList, kWordDelimiters},
    {kTo, ListEvaluator::kAddressList, kAddressDelimiters},
    {kCc, ListEvaluator::kAddressList, kAddressDelimiters},
    {kToOrCc, ListEvaluator::kAddressList, kAddressDelimiters},
    {kToOrCc, ListEvaluator::kEnvelopeValue, kEnvelopeDelimiters},
    {kPriority, ListEvaluator::kWordList, kWordDelimiters},
    {kFrom, ListEvaluator::kAddressList, kAddressDelimiters},
    {kHasAttachmentsMatching, ListEvaluator::kAttachmentName, kPartAttachmentNameDelimiters},
    {kHasAttachmentsMatching, ListEvaluator::kAttachmentName, kBlockAttachmentDelimiters},
    {kHeadersContain, ListEvaluator::kWordList, kWordDelimiters},
    {kSpf, ListEvaluator::kWordList, kWordDelimiters},
    {kIpAddress, ListEvaluator::kEnvelopeValue, kEnvelopeDelimiters},
    {kAccount, ListEvaluator::kEnvelopeValue, kEnvelopeDelimiters},
    {kConnector, ListEvaluator::kEnvelopeValue, kEnvelopeDelimiters},
    {kBoundaryHeadersContain, ListEvaluator::kWordList, kWordDelimiters},
};
inline constexpr std::size_t kListCriterionCount = std::size(kListCriteria);

// By slot: its first row of kListCriteria, or where it would stand.
inline constexpr std::array<std::uint8_t, kSlotCount> kFirstListCriterion = [] {
  std::array<std::uint8_t, kSlotCount> first{};
  std::uint8_t row = 0;
  for (SlotIndex slot = 0; slot < kSlotCount; ++slot) {
    while (row < kListCriterionCount && kListCriteria[row].slot < slot) ++row;
    first[static_cast<std::size_t>(slot)] = row;
  }
  return first;
}();

}  // namespace pv
