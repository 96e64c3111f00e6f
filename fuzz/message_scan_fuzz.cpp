// The message file: the scan gives the same twice and changes nothing; the actions that rewrite the message insert what
// they should and leave every other byte.
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "actions/add_header.h"
#include "actions/subject_prefix.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "fuzz_target.h"
#include "match_summary.h"
#include "queue/queue_paths.h"
#include "scan/message_scan.h"

namespace pv::fuzz {
namespace {

const std::string kInbound = std::string("queues/SMTP/Inbound/Messages/") + kMessageId;
const std::string kOutgoing = std::string("queues/SMTP/Outgoing/Messages/") + kMessageId;
constexpr std::string_view kHeader = "X-Fuzz: 1\r\n";
constexpr std::string_view kPrefix = "[F] ";

// Two filters in which every criterion is in use, with words of each kind: as a table has them and as a script does.
FilterSet make_filters(std::string_view postoffice) {
  FilterSet set;
  set.postoffice.cut(postoffice);
  for (const int entry_count : {1, 4}) {
    for (CriterionSlot& slot : set.filters.emplace_back().slots) {
      slot = {1, "a\t*b*\tc*d\t[PV_SENDER]", 1, entry_count};
    }
    set.filters.back().slots[kSize].data = "100";
    ++set.filter_count;
  }
  return set;
}

std::string scan(const MessageContext& message, const FilterSet& set) {
  MatchResults results;
  AllocateMatchResults(set, results);
  results.message = &message;
  const bool apply = ScanMessage(message, set, results);
  require_within_limits(set, results);
  return (apply ? "apply\n" : "leave\n") + summary(results);
}

void check_scan(const MessageContext& message, const FilterSet& set, const std::string& file, std::string_view input) {
  server().write(file, input);
  const std::string first = scan(message, set);
  require(scan(message, set) == first, "the same message gives the same results");
  require(server().read(file) == input, "the scan leaves the message alone");
}

bool holds_empty_line(std::string_view headers) {
  bool at_line_start = true;
  for (const char c : headers) {
    if (at_line_start && (c == '\r' || c == '\n')) return true;
    at_line_start = c == '\n';
  }
  return false;
}

// Without the header and what makes its end, the bytes are the old ones. The line that ended the header block, also a
// bare CR or LF, has become an empty line.
void require_header_inserted(std::string_view old, std::string_view now) {
  const std::size_t at = now.find(kHeader);
  require(at != std::string_view::npos, "the header is there");
  const std::string_view before = now.substr(0, at);
  std::string_view after = now.substr(at + kHeader.size());
  require(after.starts_with("\r\n"), "an empty line follows");
  after.remove_prefix(2);
  require(!holds_empty_line(before), "the header stands in the header block");
  require(old.starts_with(before), "what stands before the header is old");
  const std::string_view rest = old.substr(before.size());
  require(
      (rest.empty() && after.empty()) || (rest.starts_with("\r\n") && after == rest.substr(2)) ||
          (!rest.starts_with("\r\n") && (rest.starts_with('\r') || rest.starts_with('\n')) && after == rest.substr(1)),
      "the bytes around the header are the old ones");
}

void check_add_header(const MessageContext& message) {
  const std::string old = server().read(kInbound);
  require(AddHeader(message, "X-Fuzz", "1", Queue::kInbound), "the header can be added");
  const std::string now = server().read(kInbound);
  if (!contains_nocase(old, "X-Fuzz: ")) require_header_inserted(old, now);
  require(AddHeader(message, "X-Fuzz", "1", Queue::kInbound), "the header can be replaced");
  // Behind a last line without end it is no header of its own, and none is found.
  const std::size_t at = now.find(kHeader);
  if (at > 0 && now[at - 1] != '\n') return;
  require(server().read(kInbound) == now, "the same header once more changes nothing");
}

std::size_t common_prefix(std::string_view a, std::string_view b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}
std::size_t common_suffix(std::string_view a, std::string_view b) {
  return static_cast<std::size_t>(std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend()).first - a.rbegin());
}

void require_prefix_inserted(std::string_view old, std::string_view now) {
  require(now.size() == old.size() + kPrefix.size(), "the prefix is inserted once");
  const std::size_t from = old.size() - common_suffix(old, now);
  const std::size_t at = now.find(kPrefix, from);
  require(at <= common_prefix(old, now), "without the prefix the bytes are the old ones");
  const std::size_t line_end = old.rfind('\n', at == 0 ? 0 : at - 1);
  const std::size_t line = line_end == std::string_view::npos ? 0 : line_end + 1;
  require(starts_with_nocase(old.substr(line), "Subject:"), "the prefix stands in a subject line");
  require(old.substr(0, at).find("\r\n\r\n") == std::string_view::npos, "the subject line stands in the header block");
}

void check_subject_prefix(const MessageContext& message) {
  const std::string path = message_file_path(message, Queue::kInbound);
  const std::string old = server().read(kInbound);
  InsertSubjectPrefix(kPrefix, path, path);
  const std::string now = server().read(kInbound);
  if (now != old) require_prefix_inserted(old, now);
  InsertSubjectPrefix(kPrefix, path, path);
  require(server().read(kInbound) == now, "the prefix is inserted only once");
}

void run(std::string_view input) {
  const MessageContext message = queued_message();
  static const FilterSet& server_filters = *new FilterSet(make_filters({}));
  static const FilterSet& postoffice_filters = *new FilterSet(make_filters("po"));
  check_scan(message, server_filters, kInbound, input);
  check_scan(message, postoffice_filters, kOutgoing, input);
  check_subject_prefix(message);
  server().write(kInbound, input);
  check_add_header(message);
  require(server().names("queues/SMTP/Inbound/Messages").size() == 1, "no temporary file is left");
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
