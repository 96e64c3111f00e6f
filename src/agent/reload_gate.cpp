#include "agent/reload_gate.h"

#include "agent/pump_wait.h"
#include "common/report_log.h"

namespace pv {

std::atomic<std::int32_t> messages_in_flight{0};
std::atomic<std::int32_t> reload_in_progress{0};

void wait_at_reload_gate() {
  if (reload_in_progress.load() != 1) return;
  platform::Event never_signalled;
  int rounds = 0;
  for (; reload_in_progress.load() == 1 && rounds < kGateRounds; ++rounds) wait_round(&never_signalled, kWaitRoundMs);
  if (rounds < kGateRounds) return;
  report_write("Filters are taking too long to reload and filter executing. This may cause filter instability.\n");
}

void wait_for_other_messages() {
  platform::Event never_signalled;
  int rounds = 0;
  for (; messages_in_flight.load() >= 2 && rounds < kReloadRounds; ++rounds) {
    wait_round(&never_signalled, kWaitRoundMs);
  }
  if (rounds < kReloadRounds) return;
  report_write("Filters are taking too long to execute and are being reloaded. This may cause filter instability.\n");
}

}  // namespace pv
