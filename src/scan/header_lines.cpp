#include "scan/header_lines.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "common/fields.h"
#include "common/output.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "filters/delimiters.h"
#include "filters/evaluation.h"
#include "queue/header_attributes.h"

namespace pv {
namespace {

// A header of addresses. Its folded lines belong to it, each evaluated as it stands.
struct AddressHeader {
  std::string_view name;
  const char* shown_as;  // printed with the value; nullptr: nothing is printed
  std::array<SlotIndex, 2> slots;
  std::size_t slot_count;
};
constexpr AddressHeader kAddressHeaders[] = {
    {"From:", "From", {kFrom}, 1},
    {"To:", "To", {kTo, kToOrCc}, 2},
    {"Cc:", nullptr, {kCc, kToOrCc}, 2},
};

// A header whose value is evaluated as it stands; folded lines are ordinary header lines.
struct WordHeader {
  std::string_view name;
  SlotIndex slot;
};
constexpr WordHeader kWordHeaders[] = {
    {"Subject:", kSubject},
    {"X-MSMail-Priority:", kPriority},
    {"Received-SPF:", kSpf},
};

// What follows the first colon, without the blanks and tabs before it, with the line end.
std::string_view header_value(std::string_view line) {
  const std::string_view value = line.substr(line.find(':') + 1);
  return value.substr(std::min(value.find_first_not_of(" \t"), value.size()));
}

bool names_postoffice(std::string_view line, std::string_view postoffice) {
  BoundedText<128> name;
  split_field(line, ": ", 2, name);
  replace_all_nocase(name, "\r\n", "");
  return equals_nocase(name, postoffice);
}

bool filtered_before(std::string_view line, const FilterSet& set) {
  switch (set.scope()) {
    case Scope::kSystem:
      return starts_with_nocase(line, kFilteredMark);
    case Scope::kPostoffice:
      return starts_with_nocase(line, kFilteredByPostofficeMark) && names_postoffice(line, set.postoffice);
    case Scope::kMailbox:
      break;
  }
  return false;
}

void note_boundary(std::string_view line, ScanContext& scan) {
  AttributeText value;
  if (!HeaderParameterValue(line, "boundary=", value)) return;
  BoundaryMarker& marker = scan.boundary.emplace();
  append_bounded(marker, "--");
  append_bounded(marker, value);
  print_text("Mime Encapsulatation detected\n");
}

void evaluate_words(SlotIndex slot, std::string_view text, ScanContext& scan) {
  EvaluateWordList(slot, text, kWordDelimiters, scan.set, scan.results);
}

const AddressHeader* address_header(std::string_view line) {
  for (const AddressHeader& header : kAddressHeaders) {
    if (starts_with_nocase(line, header.name)) return &header;
  }
  return nullptr;
}

// Evaluates the header and its folded lines. The line after them is left for the caller.
void evaluate_address_header(const AddressHeader& header, MessageLine line, MessageLines& lines, ScanContext& scan) {
  std::string_view value = header_value(line.text);
  if (header.shown_as != nullptr) {
    print("%s Found:%.*s\n", header.shown_as, static_cast<int>(value.size()), value.data());
  }
  while (true) {
    for (std::size_t i = 0; i < header.slot_count; ++i) {
      EvaluateAddressList(header.slots[i], value, kAddressDelimiters, scan.set, scan.results);
    }
    evaluate_words(kHeadersContain, line.text, scan);
    const std::optional<MessageLine> next = lines.next();
    if (!next) return;
    if (!next->begins_with_blank()) return lines.push_back();
    line = *next;
    value = line.text;
  }
}

// Priorities 2 and 4 have no word of their own.
void evaluate_numeric_priority(std::string_view value, ScanContext& scan) {
  switch (value.empty() ? '\0' : value.front()) {
    case '5':
      return evaluate_words(kPriority, "Low ", scan);
    case '3':
      return evaluate_words(kPriority, "Normal ", scan);
    case '1':
      return evaluate_words(kPriority, "High ", scan);
    default:
      return;
  }
}

void evaluate_ordinary_header(std::string_view line, ScanContext& scan) {
  for (const WordHeader& header : kWordHeaders) {
    if (starts_with_nocase(line, header.name)) evaluate_words(header.slot, header_value(line), scan);
  }
  if (starts_with_nocase(line, "X-Priority:")) evaluate_numeric_priority(header_value(line), scan);
  evaluate_words(kHeadersContain, line, scan);
}

}  // namespace

bool scan_header_section(MessageLines& lines, ScanContext& scan) {
  while (const std::optional<MessageLine> line = lines.next()) {
    if (filtered_before(line->text, scan.set)) return false;
    note_boundary(line->text, scan);
    if (const AddressHeader* header = address_header(line->text)) {
      evaluate_address_header(*header, *line, lines, scan);
      continue;
    }
    evaluate_ordinary_header(line->text, scan);
    if (line->is_blank_line()) break;
  }
  return true;
}

}  // namespace pv
