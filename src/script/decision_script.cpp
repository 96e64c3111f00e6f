#include "script/decision_script.h"

namespace pv {

// The program's generation and its run through run_script belong here. Nothing can run it so far, so no script filter
// fires.
std::int32_t RunDecisionScript(const MessageContext&, const FilterSet&, FilterIndex, const MatchResults&,
                               BoundedText<1024>&) {
  return 0;
}

}  // namespace pv
