#include "agent/process_filter.h"

#include <algorithm>
#include <memory>

#include "agent/system_filters.h"
#include "common/agent_settings.h"
#include "common/output.h"
#include "common/report_log.h"
#include "filters/criteria_keywords.h"
#include "filters/delimiters.h"
#include "filters/evaluation.h"
#include "platform/com.h"
#include "queue/envelope_file.h"
#include "scan/message_scan.h"

namespace pv {
namespace {

// COM on this thread for the length of a message whose filters need the script host.
class ComForScripts {
 public:
  explicit ComForScripts(bool needed) : initialised_(needed) {
    if (initialised_) platform::initialise_com();
  }
  ~ComForScripts() {
    if (initialised_) platform::uninitialise_com();
  }
  ComForScripts(const ComForScripts&) = delete;
  ComForScripts& operator=(const ComForScripts&) = delete;

 private:
  const bool initialised_;
};

// As much of a name as a report line shows.
int shown_length(std::string_view name) {
  return static_cast<int>(std::min<std::size_t>(name.size(), 200));
}

// False when a name is too long for its field: cut, it would name another message's files.
bool name_message(MessageContext& message, std::string_view connector, std::string_view message_id) {
  if (message.message_id.assign(message_id) && message.connector.assign(connector)) return true;
  report_write_format("Message %.*s of connector %.*s is not filtered: a name has more than 63 characters.\n",
                      shown_length(message_id), message_id.data(), shown_length(connector), connector.data());
  return false;
}

void evaluate_envelope(const MessageContext& message, const FilterSet& set, MatchResults& results) {
  const Envelope& envelope = message.envelope;
  EvaluateEnvelopeValue(kToOrCc, kEnvelopeDelimiters, envelope.recipients, set, results);
  EvaluateEnvelopeValue(kIpAddress, kEnvelopeDelimiters, envelope.client_ip, set, results);
  EvaluateWhitelistedIp(kIpAddressWhitelisted, envelope.account, {}, envelope.client_ip, set, results);
  EvaluateEnvelopeValue(kAccount, kEnvelopeDelimiters, envelope.account, set, results);
  EvaluateEnvelopeValue(kConnector, kEnvelopeDelimiters, message.connector, set, results);
  EvaluateNumberEquals(kSenderAuth, envelope.authentication_status_check, set, results);
  EvaluateTag(kAllMessages, tag::kAll, "All Messages", set, results);
}

}  // namespace

FilterOutcome ProcessFilter(std::string_view connector, std::string_view message_id, ReportLine& report_line) {
  MessageContext message;
  // The snapshot stays valid to the end of this message though a reload replaces the set meanwhile.
  std::shared_ptr<const FilterSet> filters;
  {
    platform::SameSettings settings_at_start;
    filters = system_filters_for_message(settings_at_start);
    if (filters == nullptr || filters->filter_count < 1) return FilterOutcome::kNothing;
    message.directories = reread_directories();
  }
  if (!name_message(message, connector, message_id)) return FilterOutcome::kNothing;
  read_inbound_envelope(message);

  const PrintedTogether output;
  MatchResults results;
  AllocateMatchResults(*filters, results);
  results.message = &message;

  FilterOutcome outcome = FilterOutcome::kNothing;
  {
    const ComForScripts com(filters->has_script_filters);
    evaluate_envelope(message, *filters, results);
    if (ScanMessage(message, *filters, results)) {
      outcome = ExecuteFilterActions(message, *filters, results, report_line);
      print("ProcessFilter: %s\n", report_line.c_str());
    }
  }
  ReleaseMatchResults(results);
  return outcome;
}

}  // namespace pv
