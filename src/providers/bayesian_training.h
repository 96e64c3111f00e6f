// Commands that go past the agent to the Bayesian scanner.
#pragma once

#include <atomic>
#include <cstdint>

namespace pv {

// Commands that the scanner is working on, which must not be unloaded meanwhile.
extern std::atomic<std::int32_t> trainings_in_progress;

// Hands the command to the scanner as it is and returns its result. 0, and a line in the report log, when no scanner
// that could take it is loaded; its status does not matter. Any thread. An exception of the scanner comes out.
std::int32_t train_bayesian(const char* command);

}  // namespace pv
