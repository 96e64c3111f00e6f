#include "actions/subject_prefix.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "actions/one_line.h"
#include "common/files.h"
#include "common/output.h"
#include "common/text_search.h"
#include "platform/file.h"
#include "platform/system_error.h"
#include "queue/queue_paths.h"

namespace pv {
namespace {

constexpr std::size_t kLargestMessage = std::numeric_limits<std::int32_t>::max();  // bytes; larger ones stay unmarked
constexpr std::string_view kSubjectName = "Subject:";

std::optional<std::string> read_message(std::string_view path) {
  std::optional<std::string> bytes = platform::read_whole_file(path, kLargestMessage);
  if (!bytes) {
    const int error = platform::last_system_error();
    print("Failed to open %.*s error %d\n", static_cast<int>(path.size()), path.data(), error);
  }
  return bytes;
}

// Position behind the name of the first subject header; npos without one.
std::size_t after_subject_name(std::string_view headers) {
  std::size_t at = find_nocase(headers, kSubjectName);
  while (at != std::string_view::npos && at > 0 && headers[at - 1] != '\n') {
    at = find_nocase(headers, kSubjectName, at + kSubjectName.size());
  }
  return at == std::string_view::npos ? at : at + kSubjectName.size();
}

// Where the text of the subject begins and what it is; nullopt without a subject in a header block that ends properly.
struct Subject {
  std::size_t position;
  std::string_view text;
};
std::optional<Subject> find_subject(std::string_view message) {
  const std::size_t header_end = message.find("\r\n\r\n");
  if (header_end == std::string_view::npos) return std::nullopt;
  // Where lines end in bare line feeds the header block may end before that, and a subject behind it is body text.
  const std::string_view before_end = message.substr(0, header_end);
  const std::size_t empty_line = std::min(before_end.find("\n\r\n"), before_end.find("\n\n"));
  const std::size_t name_end = after_subject_name(message.substr(0, std::min(header_end, empty_line)));
  if (name_end == std::string_view::npos) return std::nullopt;
  // Both searches end at the CR of the header block's end, at the latest.
  const std::size_t position = message.find_first_not_of(" \t", name_end);
  return Subject{position, message.substr(position, message.find_first_of("\r\n", position) - position)};
}

[[nodiscard]] bool write_with_prefix(std::string_view message, std::size_t position, std::string_view prefix,
                                     std::string_view target) {
  platform::FileReplacement out(target, platform::temporary_beside(target), platform::FileMode::kBinary);
  return out.is_open() && out.write(message.substr(0, position)) && out.write(prefix) &&
         out.write(message.substr(position)) && out.commit();
}

}  // namespace

void InsertSubjectPrefix(std::string_view prefix, std::string_view source, std::string_view target) {
  if (file_size(source) < 1) return;
  const std::optional<std::string> message = read_message(source);
  if (!message) return;
  const std::optional<Subject> subject = find_subject(*message);
  if (!subject || contains_nocase(subject->text, prefix)) return;
  (void)write_with_prefix(*message, subject->position, prefix, target);  // a failure leaves the message unmarked
}

bool AddSubjectPrefix(const MessageContext& message, std::string_view prefix, Queue queue) {
  const std::string path = message_file_path(message, queue);
  InsertSubjectPrefix(on_one_line(prefix), path, path);
  return true;
}

}  // namespace pv
