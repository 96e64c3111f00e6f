// One list criterion against a text, with the evaluator that the agent asks.
#pragma once

#include <string_view>

#include "filters/evaluation.h"
#include "filters/list_evaluators.h"

namespace pv::test {

inline void evaluate(const ListCriterion& criterion, std::string_view text, const FilterSet& set,
                     MatchResults& results) {
  switch (criterion.evaluator) {
    case ListEvaluator::kWordList:
      return EvaluateWordList(criterion.slot, text, criterion.delimiters, set, results);
    case ListEvaluator::kAddressList:
      return EvaluateAddressList(criterion.slot, text, criterion.delimiters, set, results);
    case ListEvaluator::kEnvelopeValue:
      return EvaluateEnvelopeValue(criterion.slot, criterion.delimiters, text, set, results);
    case ListEvaluator::kAttachmentName:
      return EvaluateAttachmentName(criterion.slot, text, criterion.delimiters, set, results);
  }
}

}  // namespace pv::test
