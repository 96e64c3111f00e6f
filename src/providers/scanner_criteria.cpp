#include "providers/scanner_criteria.h"

#include "common/fields.h"
#include "common/text_search.h"
#include "queue/queue_paths.h"

namespace pv {
namespace {

constexpr std::size_t kLongestPath = 1023;   // bytes in a request; cut beyond
constexpr std::size_t kLongestEntry = 1023;  // bytes; a longer one is empty, because a cut number is another number

}  // namespace

ScannerRequest request_of_files(const MessageContext& message, const FilterSet& set, std::string_view before) {
  const Queue queue = set.postoffice.empty() ? Queue::kInbound : Queue::kOutgoing;
  const std::string message_file = message_file_path(message, queue);
  const std::string command_file = command_file_path(message, queue);
  ScannerRequest request;
  for (const std::string_view part :
       {before, std::string_view("<FILENAME>"), std::string_view(message_file).substr(0, kLongestPath),
        std::string_view("</FILENAME><CMDFILE>"), std::string_view(command_file).substr(0, kLongestPath),
        std::string_view("</CMDFILE>")}) {
    request.append_cut(part);
  }
  return request;
}

std::string_view element(std::string_view reply, std::string_view opening, std::string_view closing) {
  const std::optional<Extract> found = extract_between(reply, opening, closing);
  return found ? found->text : std::string_view();
}

std::string_view criterion_entry(const CriterionSlot& criterion, int entry) {
  const std::string_view field = find_field(criterion.data, "\t", entry + 1).value_or(std::string_view());
  return field.size() <= kLongestEntry ? field : std::string_view();
}

void count_match(SlotIndex slot, FilterMatch& match) {
  ++match.match_count[static_cast<std::size_t>(slot)];
}

}  // namespace pv
