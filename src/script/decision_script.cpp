#include "script/decision_script.h"

#include <string>
#include <string_view>

#include "common/agent_settings.h"
#include "common/formats.h"
#include "common/output.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "script/script_debug.h"
#include "script/script_host.h"

namespace pv {
namespace {

// The administrator's text becomes the body of PV_Execute, between these two.
constexpr std::string_view kPrologue =
    "Dim PVResultData\r\n"
    "PVResultData = \"SCRIPT\"\r\n"
    "Function PV_GetResultData()\r\n"
    "PV_GetResultData=PVResultData\r\n"
    "End Function\r\n"
    "Function CriteriaMet(Value,Condition)\r\n"
    "\tCriteriaMet=(Value<>0)\r\n"
    "End Function\r\n"
    "Function PV_Execute\r\n"
    "\tFilterResult=0\r\n";
constexpr std::string_view kEpilogue =
    "\r\nPV_Execute = FilterResult\r\n"
    "End Function\r\n";
constexpr char kFunction[] = "PV_Execute";

void replace_every(std::string& text, std::string_view token, std::string_view value) {
  replace_in_string(text, token, value, 0, false, true);
}

// "[SMTP:a@b]" gives "a@b": the last character is taken for the closing bracket.
std::string_view bare_address(std::string_view sender) {
  const std::size_t colon = sender.find(':');
  if (colon == std::string_view::npos) return sender;
  const std::string_view address = sender.substr(colon + 1);
  return address.substr(0, address.empty() ? 0 : address.size() - 1);
}

// Only the subject is made fit for a quoted text: scripts put quotes around the others themselves. A value that holds a
// later token has it replaced in its turn.
void put_in_envelope(const Envelope& envelope, std::string& script) {
  replace_every(script, "%IPADDRESS%", envelope.client_ip);
  replace_every(script, "%POSTOFFICE%", envelope.account);
  replace_every(script, "%SENDER%", envelope.sender);
  replace_every(script, "%SENDERADDRESS%", bare_address(envelope.sender));
  replace_every(script, "%RECIPIENTS%", envelope.recipients);
  std::string subject(envelope.subject.view());
  replace_every(subject, "\"", "\"\"");
  replace_every(script, "%SUBJECT%", subject);
}

// One occurrence of a criterion's token. The first that is left is this entry's, as those before it are replaced.
void put_in_entry(std::string_view token, std::string_view value, std::string& script, std::string& progress) {
  const bool met = !value.empty() && value != "0";
  progress += met ? "Setting True value " : "Setting False\n";
  if (met) progress.append(value).push_back('\n');
  replace_in_string(script, token, met ? value : "0", 1, false, true);
}

void put_in_criteria(const FilterSet& set, FilterIndex filter, const FilterMatch& match, std::string& script) {
  std::string progress;
  for (SlotIndex slot = 0; slot < kSlotCount; ++slot) {
    const int entries = set.filter(filter).slots[static_cast<std::size_t>(slot)].entry_count;
    if (entries < 1) continue;
    const std::string token = "[PV_" + std::string(kCriteriaKeywords[static_cast<std::size_t>(slot)]) + "]";
    for (int entry = 0; entry < entries; ++entry) {
      const std::string value(match.match_value(slot, entry));
      const auto first = static_cast<signed char>(value.c_str()[0]);
      progress += format_text("Checking Filter[%ld]Criteria[%ld]::(%s)->%ld\n", static_cast<long>(filter),
                              static_cast<long>(slot), value.c_str(), static_cast<long>(first));
      put_in_entry(token, value, script, progress);
    }
  }
  if (!progress.empty()) print_text(progress);
}

}  // namespace

std::string decision_program(std::string_view script) {
  std::string program;
  program.reserve(kPrologue.size() + script.size() + kEpilogue.size());
  return program.append(kPrologue).append(script).append(kEpilogue);
}

std::int32_t RunDecisionScript(const MessageContext& message, const FilterSet& set, FilterIndex filter,
                               const MatchResults& results, BoundedText<1024>& result_text) {
  std::string script = set.filter(filter).script_text;
  if (settings().script_literal_mode != 0) put_in_envelope(message.envelope, script);
  put_in_criteria(set, filter, results.match(filter), script);
  script_debug_print(format_text("Executing filter script for %s\n", set.filter(filter).name.c_str()));
  char text[1024] = "";
  const std::int32_t verdict = run_script(decision_program(script), kFunction, text, false);
  copy_bounded(result_text, text);
  return verdict;
}

}  // namespace pv
