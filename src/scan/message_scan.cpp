#include "scan/message_scan.h"

#include <string>

#include "common/files.h"
#include "common/output.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "providers/scanners.h"
#include "queue/queue_paths.h"
#include "scan/body_lines.h"
#include "scan/header_lines.h"
#include "scan/message_lines.h"
#include "scan/scan_context.h"

namespace pv {
namespace {

// The criteria that need the message as a whole.
void evaluate_whole_message(const std::string& path, const MessageContext& message, const FilterSet& set,
                            MatchResults& results) {
  EvaluateSize(kSize, file_size(path), set, results);
  ScanBayesian(kSpamProbability, message, set, results);
  ScanSpamAssassin(kSpamAssassin, message, set, results);
  ScanDkim(kDkim, message, set, results);
  ScanAntivirus(kHasVirus, message, set, results);
}

}  // namespace

bool ScanMessage(const MessageContext& message, const FilterSet& set, MatchResults& results) {
  const Queue queue = set.postoffice.empty() ? Queue::kInbound : Queue::kOutgoing;
  const std::string path = message_file_path(message, queue);
  print_text("Processing Message... \r\n");
  evaluate_whole_message(path, message, set, results);
  print_text("Processing Message Content... \r\n");

  MessageLines lines(results.moment);
  if (!lines.open(path)) return false;
  ScanContext scan{message, set, results, std::nullopt};
  if (!scan_header_section(lines, scan)) return false;
  scan_body(lines, scan);
  return true;
}

}  // namespace pv
