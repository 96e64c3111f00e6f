#include "agent/filter_execute.h"

#include "agent/process_filter.h"
#include "agent/reload_gate.h"
#include "common/caught_exception.h"
#include "common/registry_access.h"

namespace pv {
namespace {

// Counts a message as in flight, also when an exception ends it. The last one stores the counters.
class InFlight {
 public:
  InFlight() { messages_in_flight.fetch_add(1); }
  ~InFlight() {
    if (messages_in_flight.fetch_sub(1) == 1) store_counters_at_rest();
  }
  InFlight(const InFlight&) = delete;
  InFlight& operator=(const InFlight&) = delete;
};

}  // namespace

void filter_queued_message(std::string_view message_id, std::string_view connector) noexcept {
  try {
    wait_at_reload_gate();
    const InFlight counted;
    ReportLine report_line;
    ProcessFilter(connector, message_id, report_line);
  } catch (...) {
    report_caught_exception("FilterExecute", "agent/filter_execute.cpp", __LINE__);
  }
}

}  // namespace pv
