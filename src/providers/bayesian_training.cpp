#include "providers/bayesian_training.h"

#include "common/report_log.h"
#include "providers/scanner_provider.h"

namespace pv {
namespace {

class InProgress {
 public:
  InProgress() { trainings_in_progress.fetch_add(1); }
  ~InProgress() { trainings_in_progress.fetch_sub(1); }
  InProgress(const InProgress&) = delete;
  InProgress& operator=(const InProgress&) = delete;
};

}  // namespace

constinit std::atomic<std::int32_t> trainings_in_progress{0};

std::int32_t train_bayesian(const char* command) {
  const InProgress counted;
  ProviderEntry* const execute = scanner_providers().bayesian.execute;
  if (execute == nullptr) {
    report_write(
        "Bayesian AutoTraining is being called, but the system could not find a reference to BayesianExecute.\n");
    return 0;
  }
  ProviderReply discarded;
  return ask_provider(execute, command, 0, discarded);
}

}  // namespace pv
