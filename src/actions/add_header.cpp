#include "actions/add_header.h"

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>

#include "actions/one_line.h"
#include "common/text_search.h"
#include "platform/file.h"
#include "queue/queue_paths.h"

namespace pv {
namespace {

constexpr std::size_t kHeaderLine = 4096;      // bytes of a line, one spare; the pieces of longer ones are lines
constexpr std::size_t kBodyBlock = 262144;     // bytes copied at once
constexpr std::size_t kSmallBodyBlock = 2048;  // the same when memory is short

struct NewHeader {
  std::string match;  // "name: ", as a line that is replaced begins
  std::string line;   // "name: value\r\n"
};

bool ends_header_block(std::string_view line) {
  return line.front() == '\r' || line.front() == '\n';
}

// What a line that ends the header block holds beyond its empty line: nothing, but for a stray CR before other text.
std::string_view after_empty_line(std::string_view line) {
  if (line.starts_with("\r\n")) return line.substr(2);
  return line.substr(1);
}

// Writes the header in place of the empty line, and the empty line anew.
bool add_before_body(std::string_view empty_line, const NewHeader& header, platform::FileReplacement& out) {
  return out.write(header.line) && out.write("\r\n") && out.write(after_empty_line(empty_line));
}

// Copies the header block with the new header in it. A failed read looks like the end of the file here; copy_rest
// refuses it.
bool rewrite_header_block(platform::InputFile& in, const NewHeader& header, platform::FileReplacement& out) {
  bool found = false;
  while (const std::optional<std::string_view> line = in.read_line(kHeaderLine)) {
    if (ends_header_block(*line)) return found ? out.write(*line) : add_before_body(*line, header, out);
    const bool replaced = starts_with_nocase(*line, header.match);
    if (!out.write(replaced ? std::string_view(header.line) : *line)) return false;
    found = found || replaced;
  }
  return found || (out.write(header.line) && out.write("\r\n"));
}

bool copy_rest(platform::InputFile& in, platform::FileReplacement& out) {
  const std::unique_ptr<char[]> large(new (std::nothrow) char[kBodyBlock]);
  std::array<char, kSmallBodyBlock> small;
  const std::span<char> block = large ? std::span<char>(large.get(), kBodyBlock) : std::span<char>(small);
  while (const std::size_t size = in.read(block)) {
    if (!out.write({block.data(), size})) return false;
  }
  return !in.failed();
}

NewHeader new_header(std::string_view name, std::string_view value) {
  std::string match = on_one_line(name) + ": ";
  std::string line = match + on_one_line(value) + "\r\n";
  return {std::move(match), std::move(line)};
}

}  // namespace

bool AddHeader(const MessageContext& message, std::string_view name, std::string_view value, Queue queue) {
  if (name.empty()) return false;
  const std::string path = message_file_path(message, queue);
  platform::InputFile in;
  if (!in.open(path, platform::FileMode::kBinary)) return false;
  platform::FileReplacement out(path, temporary_message_file_path(message, queue), platform::FileMode::kBinary);
  if (!out.is_open()) return false;
  if (!rewrite_header_block(in, new_header(name, value), out) || !copy_rest(in, out)) return false;
  in = platform::InputFile();  // an open file cannot be replaced on every system
  return out.commit();
}

}  // namespace pv
