// DKIM: whether the signature of a message from outside holds: "FAIL", "PASS" or "INDETERMINATE", the last also when
// nothing was verified.
#include <algorithm>
#include <optional>
#include <string>

#include "common/fields.h"
#include "common/text_search.h"
#include "filters/list_criteria.h"
#include "providers/counters.h"
#include "providers/scanner_criteria.h"
#include "providers/scanner_provider.h"
#include "providers/scanners.h"

namespace pv {
namespace {

constexpr std::int32_t kFail = 0;
constexpr std::int32_t kPass = 1;
constexpr std::int32_t kIndeterminate = 2;

struct Verification {
  std::int32_t verdict = kIndeterminate;
  std::int32_t result = 100;  // the provider's number; 100 when it was not asked
};

// What stands behind the first `opening` of a text, without blanks and line ends at its front, up to the next `closing`
// or the end. nullopt without an `opening`.
std::optional<std::string_view> part_of_sender(std::string_view text, char opening, char closing) {
  const std::size_t at = text.find(opening);
  if (at == std::string_view::npos) return std::nullopt;
  text.remove_prefix(at + 1);
  text.remove_prefix(std::min(text.find_first_not_of(" \r\n"), text.size()));
  return text.substr(0, text.find(closing));
}

bool may_verify(const ScannerProvider& provider, const MessageContext& message) {
  return provider.can_scan() && message.envelope.authentication_status == 0 && equals_nocase(message.connector, "SMTP");
}

std::int32_t verdict_of(std::int32_t result) {
  if (result < 1) return kFail;
  return result == 1 ? kPass : kIndeterminate;
}

Verification verify(const MessageContext& message, const FilterSet& set) {
  const ScannerProvider& provider = scanner_providers().dkim;
  if (!may_verify(provider, message)) return {};
  const std::optional<std::string_view> local_part = part_of_sender(message.envelope.sender, ':', '@');
  const std::optional<std::string_view> domain = part_of_sender(message.envelope.sender, '@', ']');
  if (!local_part || !domain) return {};

  counters.dkim_scans.increment();
  ScannerRequest request = request_of_files(message, set, "<COMMAND>VERIFY</COMMAND>");
  for (const std::string_view part : {std::string_view("<DOMAIN>"), *domain, std::string_view("</DOMAIN><SENDER>"),
                                      *local_part, std::string_view("</SENDER>")}) {
    request.append_cut(part);
  }
  ProviderReply reply;
  ask_provider(provider.execute, request, PV_REPLY_SIZE, reply);
  const std::int32_t result = leading_number(element(reply.view(), "<RESULT>", "</RESULT>"));
  const Verification verification{verdict_of(result), result};
  if (verification.verdict == kFail) counters.dkim_detections.increment();
  counters.dkim_scans.publish();
  counters.dkim_detections.publish();
  return verification;
}

}  // namespace

std::int32_t dkim_verdict_from_text(std::string_view text) {
  if (equals_nocase(text, "FAIL")) return kFail;
  if (equals_nocase(text, "PASS")) return kPass;
  if (equals_nocase(text, "INDETERMINATE")) return kIndeterminate;
  return leading_number(text);
}

void ScanDkim(SlotIndex slot, const MessageContext& message, const FilterSet& set, MatchResults& results) {
  std::optional<Verification> verification;
  for_each_criterion(slot, set, results, [&](const CriterionSlot& criterion, FilterMatch& match) {
    if (!verification) verification = verify(message, set);
    for (int entry = 0; entry < entries_of(criterion); ++entry) {
      if (dkim_verdict_from_text(criterion_entry(criterion, entry)) != verification->verdict) continue;
      count_match(slot, match);
      match.set_match_value(slot, entry, std::to_string(verification->result));
    }
    match.set_matched_text(slot, "");
  });
}

}  // namespace pv
