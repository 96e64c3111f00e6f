// How many messages the scanners saw and what they found, since the library was loaded.
#pragma once

#include <atomic>
#include <cstdint>

namespace pv {

// One counter, and the value of its name below the counters' key. Neither counts nor publishes while "Update
// Statistics" is 0. Any thread.
class Counter {
 public:
  constexpr explicit Counter(const char* name) : name_(name) {}

  void increment();
  // Publishes the number as it is now. Costs two loads when that was published before.
  void publish();
  // Back to 0, and not published.
  void restart();

 private:
  static constexpr std::uint64_t kNever = ~std::uint64_t{0};

  const char* const name_;
  std::atomic<std::uint32_t> number_{0};
  std::atomic<std::uint64_t> published_{kNever};
};

struct Counters {
  Counter bayesian_total_scans{"Bayesian Total Scans"};
  Counter bayesian_detections{"Bayesian Detections"};
  Counter sa_total_scans{"SA Total Scans"};
  Counter sa_detections{"SA Detections"};
  Counter dkim_scans{"DKIM Scans"};
  Counter dkim_detections{"DKIM Detections"};
  Counter antivirus_total_scans{"Antivirus Total Scans"};
  Counter antivirus_detected{"Antivirus Detected"};
};
extern Counters counters;

// All of them back to 0, for the next start in the same process.
void restart_counters();

}  // namespace pv
