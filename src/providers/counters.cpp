#include "providers/counters.h"

#include "common/agent_settings.h"
#include "common/registry_access.h"

namespace pv {

constinit Counters counters;

void Counter::increment() {
  if (settings().update_statistics != 0) number_.fetch_add(1, std::memory_order_relaxed);
}

void Counter::publish() {
  const std::uint32_t number = number_.load(std::memory_order_relaxed);
  if (published_.load(std::memory_order_relaxed) == number || settings().update_statistics == 0) return;
  publish_counter(kCountersKey, name_, number);
  published_.store(number, std::memory_order_relaxed);
}

void Counter::restart() {
  number_ = 0;
  published_ = kNever;
}

void restart_counters() {
  for (Counter* counter : {&counters.bayesian_total_scans, &counters.bayesian_detections, &counters.sa_total_scans,
                           &counters.sa_detections, &counters.dkim_scans, &counters.dkim_detections,
                           &counters.antivirus_total_scans, &counters.antivirus_detected}) {
    counter->restart();
  }
}

}  // namespace pv
