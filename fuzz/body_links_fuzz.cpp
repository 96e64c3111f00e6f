// Web links in a body line: which hosts are looked up, and how many.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/agent_settings.h"
#include "common/text_search.h"
#include "filters/find_blacklisted_link.h"
#include "fuzz_target.h"
#include "platform/host_lookup.h"

namespace pv::fuzz {
namespace {

std::vector<std::string>& asked() {
  static auto& hosts = *new std::vector<std::string>();
  return hosts;
}

std::optional<std::string> no_address(std::string_view) {
  return std::nullopt;
}

// Fills both buffers to their end.
void answer(const char* host, char* scratch, char* list_name) {
  require(*scratch == '\0', "the scratch text is empty at each look-up");
  asked().emplace_back(host);
  for (std::size_t i = 0; i < kLookUpScratch; ++i) scratch[i] = 'x';
  for (std::size_t i = 0; i < BlacklistName::kCapacity; ++i) list_name[i] = 'x';
}

std::int32_t list_none(const char* host, const char*, char* scratch, char* list_name) {
  answer(host, scratch, list_name);
  return 0;
}

std::int32_t list_all(const char* host, const char*, char* scratch, char* list_name) {
  answer(host, scratch, list_name);
  return 1;
}

std::size_t prefixes(std::string_view line) {
  std::size_t count = 0;
  for (std::size_t at = find_nocase(line, "http://"); at != std::string_view::npos;
       at = find_nocase(line, "http://", at + 1)) {
    ++count;
  }
  return count;
}

void require_host_of_line(std::string_view host, std::string_view line) {
  require(host.size() <= 1023, "a host has at most 1023 bytes");
  if (line.find('%') != std::string_view::npos) return;
  require(line.find(host) != std::string_view::npos, "a host stands in the line");
  require(host.find_first_of("/ \t\r\n\v\f\"'<>") == std::string_view::npos, "no host holds what ends it");
}

// The first byte is the limit of look-ups.
void run(std::string_view input) {
  if (input.empty()) return;
  static_cast<void>(server());  // reports go where its settings say: nowhere
  platform::set_host_lookup_for_test(&no_address);
  const auto limit = static_cast<unsigned char>(input.front());
  settings().uri_sbl_max_checks = limit;
  const std::string_view line = until_nul(input.substr(1));

  asked().clear();
  std::uint32_t look_ups = 0;
  BlacklistName list;
  require(FindBlacklistedLink(kMessageId, look_ups, line, list, &list_none) == 0, "nothing is listed");
  require(look_ups == asked().size(), "each look-up is counted");
  require(asked().size() <= prefixes(line) && asked().size() <= limit + 2U, "no more look-ups than links and limit");
  require(asked().empty() == (prefixes(line) == 0), "a line with a link is looked up");
  for (const std::string& host : asked()) require_host_of_line(host, line);

  const std::vector<std::string> before = asked();
  asked().clear();
  look_ups = 0;
  const std::int32_t found = FindBlacklistedLink(kMessageId, look_ups, line, list, &list_all);
  require(found == (before.empty() ? 0 : 1) && look_ups == 0, "the first link is listed and not counted");
  require(asked().size() == static_cast<std::size_t>(found), "nothing is looked up after a finding");
  require(before.empty() || (asked().front() == before.front() && list.size() == 255),
          "the list's name is ended by us");
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
