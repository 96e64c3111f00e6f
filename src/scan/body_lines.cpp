#include "scan/body_lines.h"

#include <cstdint>
#include <string_view>

#include "common/agent_settings.h"
#include "common/output.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "filters/delimiters.h"
#include "filters/evaluation.h"
#include "queue/header_attributes.h"
#include "scan/body_links.h"

namespace pv {
namespace {

// Where in the body the scan is.
struct BodyState {
  bool in_part_header = false;    // MIME: from a boundary line to the next empty line
  bool in_block = false;          // no MIME: from "begin" to "end"
  bool skipping_encoded = false;  // MIME: base64 until the next boundary line
  std::uint32_t link_look_ups = 0;
};

struct AttachmentDelimiters {
  const char* presence;
  const char* name;
};

void evaluate_links(std::string_view line, BodyState& state, ScanContext& scan) {
  if (!looks_up_body_links()) return;
  BlacklistName list;
  const std::uint32_t look_ups_before = state.link_look_ups;
  const bool listed = find_listed_link(scan.message.message_id, state.link_look_ups, line, list);
  scan.results.moment += state.link_look_ups - look_ups_before;
  if (!listed) return;
  EvaluateTag(kUrlBl, tag::kLink, list, scan.set, scan.results);
}

// The evaluators receive the whole line and find the name themselves.
void evaluate_attachment(std::string_view line, const AttachmentDelimiters& delimiters, ScanContext& scan) {
  EvaluateHasAttachment(kHasAnAttachment, line, delimiters.presence, scan.set, scan.results);
  EvaluateAttachmentName(kHasAttachmentsMatching, line, delimiters.name, scan.set, scan.results);
}

// "name" is found inside "filename" too, so that a broken "filename" gets a second, equally broken, chance.
bool announces_attachment(std::string_view line) {
  AttributeText name;
  return AttributeValue(line, "filename", name) || AttributeValue(line, "name", name);
}

void update_part_state(const MessageLine& line, std::string_view boundary, BodyState& state) {
  if (state.in_part_header) {
    if (line.first() == '\0' || line.is_blank_line()) state.in_part_header = false;
  } else if (line.text.find(boundary) != std::string_view::npos) {
    state.in_part_header = true;
    state.skipping_encoded = false;
  }
}

void evaluate_part_header(std::string_view line, BodyState& state, ScanContext& scan) {
  EvaluateWordList(kBoundaryHeadersContain, line, kWordDelimiters, scan.set, scan.results);
  if (announces_attachment(line)) {
    print("Attachment Found:%.*s\n", static_cast<int>(line.size()), line.data());
    evaluate_attachment(line, {kPartAttachmentDelimiters, kPartAttachmentNameDelimiters}, scan);
  }
  if (contains_nocase(line, "Content-Transfer-Encoding: ") && contains_nocase(line, "base64")) {
    print_text("Skipping encoded attachment\n");
    state.skipping_encoded = true;
  }
}

void evaluate_block_line(std::string_view line, BodyState& state, ScanContext& scan) {
  if (equals_nocase(line, "begin \r\n")) state.in_block = true;
  if (!state.in_block) return;
  if (contains_nocase(line, "filename=\"") || contains_nocase(line, "name=\"")) {
    print("Binhex Attachment Found:%.*s\n", static_cast<int>(line.size()), line.data());
    evaluate_attachment(line, {kBlockAttachmentDelimiters, kBlockAttachmentDelimiters}, scan);
  }
  if (equals_nocase(line, "end \r\n")) state.in_block = false;
}

void evaluate_structure(const MessageLine& line, BodyState& state, ScanContext& scan) {
  if (!scan.boundary) return evaluate_block_line(line.text, state, scan);
  update_part_state(line, *scan.boundary, state);
  if (state.in_part_header) evaluate_part_header(line.text, state, scan);
}

}  // namespace

void scan_body(MessageLines& lines, ScanContext& scan) {
  BodyState state;
  while (const std::optional<MessageLine> line = lines.next()) {
    evaluate_links(line->text, state, scan);
    evaluate_structure(*line, state, scan);
    if (state.skipping_encoded || line->text.empty()) continue;
    EvaluateWordList(kBody, line->text, kWordDelimiters, scan.set, scan.results);
  }
}

}  // namespace pv
