#include "actions/append_annotations.h"

#include <optional>
#include <string>
#include <string_view>

#include "actions/filter_mark.h"
#include "actions/message_text.h"
#include "actions/multipart.h"
#include "common/files.h"
#include "common/text_search.h"
#include "platform/directory.h"
#include "platform/file.h"
#include "platform/paths.h"
#include "scan/message_lines.h"

namespace pv {
namespace {

constexpr std::string_view kContentType = "Content-Type: ";

// In the queue of the connector that delivers into mailboxes.
std::string delivered_message_path(const MessageContext& message, std::string_view file_name) {
  return platform::join_path({message.directories.connector_root, "LS", "Outgoing", "Messages", file_name});
}

bool begins_header(const MessageText& in, std::string_view line) {
  return in.begins_line() && !line.starts_with(' ') && !line.starts_with('\t');
}

bool is_text(std::string_view content_type) {
  return equals_nocase(content_type, "text/plain;") || equals_nocase(content_type, "text/html;");
}

// What a header block says about how the message is to be annotated.
struct HeaderBlock {
  bool marked = false;  // as annotated before
  MultipartHeader multipart;
};

// A message on its way into the new file. Once a write has failed, nothing more is written or read.
class AnnotatedMessage {
 public:
  AnnotatedMessage(const MessageContext& message, const AnnotationRequest& request)
      : message_(message),
        request_(request),
        out_(delivered_message_path(message, message.message_id),
             delivered_message_path(message, new_message_file_name()), platform::FileMode::kText) {}

  bool is_open() const { return out_.is_open(); }
  bool rewrite(MessageText& in);

 private:
  enum class Headers { kEnded, kMarker, kFileEnd };  // where a part's header lines stop

  void write(std::string_view bytes) { failed_ = failed_ || !out_.write(bytes); }
  std::optional<std::string_view> next(MessageText& in) { return failed_ ? std::nullopt : in.next(); }

  HeaderBlock copy_header_block(MessageText& in);
  void write_last_header_line(std::string_view line, bool mark_first);
  void insert(std::string_view name);
  void insert_header() {
    if (request_.header == 1) insert(request_.header_name);
  }
  void insert_footer() {
    if (request_.footer == 1) insert(request_.footer_name);
  }
  void annotate_whole(MessageText& in);
  void annotate_parts(MessageText& in, const PartMarkers& markers);
  bool copy_preamble(MessageText& in, const PartMarkers& markers);
  Marker copy_until_marker(MessageText& in, const PartMarkers& markers);
  Headers copy_part_headers(MessageText& in, const PartMarkers& markers, Marker& met);
  Marker annotate_part(MessageText& in, const PartMarkers& markers);

  const MessageContext& message_;
  const AnnotationRequest& request_;
  platform::FileReplacement out_;
  std::string content_type_;  // of the part; of an earlier one when it has none
  bool failed_ = false;
};

// With the mark before it. In a file that ends inside its headers that might tear a folded one; then it stands behind.
void AnnotatedMessage::write_last_header_line(std::string_view line, bool mark_first) {
  if (mark_first) write(kFilterMarkLine);
  write(line);
  if (!line.empty() && !line.ends_with('\n')) write("\n");
  if (!mark_first) write(kFilterMarkLine);
}

// The line read last is held back: the mark belongs before it.
HeaderBlock AnnotatedMessage::copy_header_block(MessageText& in) {
  HeaderBlock block;
  std::string held;
  bool mark_first = true;
  while (const std::optional<std::string_view> line = next(in)) {
    write(held);
    held = *line;
    mark_first = begins_header(in, held);
    if (!in.begins_line()) continue;
    if (ends_header_block(held)) break;
    block.marked = block.marked || starts_with_nocase(held, kFilteredMark);
    block.multipart.take(held);
  }
  write_last_header_line(held, mark_first);
  return block;
}

void AnnotatedMessage::insert(std::string_view name) {
  platform::InputFile annotation;
  const std::string path = platform::join_path({message_.directories.configuration, "Postoffices", request_.postoffice,
                                                "Annotations", std::string(name) + ".TXT"});
  if (!annotation.open(path, platform::FileMode::kText)) {
    // A file that is there and cannot be read at the moment is not left out: the action fails.
    const std::optional<platform::DirectoryEntry> entry = platform::find_first_entry(path);
    failed_ = failed_ || (entry && !entry->is_directory);
    return;
  }
  write("\n");
  while (const std::optional<std::string_view> line = annotation.read_line(platform::InputFile::kLargestLine)) {
    write(*line);
  }
  failed_ = failed_ || annotation.failed();
  write("\n");
}

void AnnotatedMessage::annotate_whole(MessageText& in) {
  insert_header();
  while (const std::optional<std::string_view> line = next(in)) write(*line);
  insert_footer();
}

// Copies up to the next marker, which is not copied; kNone at the end of the file.
Marker AnnotatedMessage::copy_until_marker(MessageText& in, const PartMarkers& markers) {
  while (const std::optional<std::string_view> line = next(in)) {
    const Marker met = in.begins_line() ? markers.find(*line) : Marker::kNone;
    if (met != Marker::kNone) return met;
    write(*line);
  }
  return Marker::kNone;
}

// A marker among the headers ends the part as well.
AnnotatedMessage::Headers AnnotatedMessage::copy_part_headers(MessageText& in, const PartMarkers& markers,
                                                              Marker& met) {
  while (const std::optional<std::string_view> line = next(in)) {
    if (in.begins_line() && (met = markers.find(*line)) != Marker::kNone) return Headers::kMarker;
    write(*line);
    if (!in.begins_line()) continue;
    if (ends_header_block(*line)) return Headers::kEnded;
    if (!starts_with_nocase(*line, kContentType)) continue;
    content_type_ = line->substr(kContentType.size());
    if (!content_type_.empty()) content_type_.pop_back();  // the line end
  }
  return Headers::kFileEnd;
}

Marker AnnotatedMessage::annotate_part(MessageText& in, const PartMarkers& markers) {
  Marker met = Marker::kNone;
  if (copy_part_headers(in, markers, met) != Headers::kEnded) return met;
  if (!is_text(content_type_)) return copy_until_marker(in, markers);
  insert_header();
  met = copy_until_marker(in, markers);
  insert_footer();
  return met;
}

// Up to the first part, its marker included. False: the message has none and was copied whole.
bool AnnotatedMessage::copy_preamble(MessageText& in, const PartMarkers& markers) {
  while (const std::optional<std::string_view> line = next(in)) {
    write(*line);
    if (in.begins_line() && markers.find(*line) == Marker::kStart) return true;
  }
  return false;
}

// Without an end marker the last part ends with the file.
void AnnotatedMessage::annotate_parts(MessageText& in, const PartMarkers& markers) {
  if (!copy_preamble(in, markers)) return;
  Marker met = annotate_part(in, markers);
  while (met == Marker::kStart) {
    write(markers.text(met));
    write("\n");
    met = annotate_part(in, markers);
  }
  if (met != Marker::kEnd) return;
  write(markers.text(met));
  write("\n");
}

bool AnnotatedMessage::rewrite(MessageText& in) {
  const HeaderBlock block = copy_header_block(in);
  if (block.marked || (request_.header == 0 && request_.footer == 0)) return true;  // without commit: as it was
  if (!block.multipart.is_multipart()) {
    annotate_whole(in);
  } else if (block.multipart.boundary().empty()) {
    return false;
  } else {
    annotate_parts(in, PartMarkers(block.multipart.boundary()));
  }
  if (failed_ || in.failed()) return false;
  in.close();  // an open file cannot be replaced on every system
  return out_.commit();
}

}  // namespace

bool AppendAnnotations(const MessageContext& message, const AnnotationRequest& request) {
  MessageText in;
  if (!in.open(delivered_message_path(message, message.message_id))) return false;
  AnnotatedMessage annotated(message, request);
  return annotated.is_open() && annotated.rewrite(in);
}

}  // namespace pv
