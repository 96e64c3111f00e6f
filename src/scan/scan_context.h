// What the two halves of a message scan work on.
#pragma once

#include <optional>

#include "common/bounded_text.h"
#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

using BoundaryMarker = BoundedText<1024>;  // "--" and the boundary; cut beyond

struct ScanContext {
  const MessageContext& message;
  const FilterSet& set;
  MatchResults& results;
  std::optional<BoundaryMarker> boundary;  // set: the header section announced a MIME multipart
};

}  // namespace pv
