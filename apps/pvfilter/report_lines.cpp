#include "pvfilter/report_lines.h"

#include <fstream>
#include <iterator>

namespace pvfilter {
namespace fs = std::filesystem;
namespace {

std::vector<std::string> split(std::string_view text, char delimiter) {
  std::vector<std::string> parts;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find(delimiter, start);
    parts.emplace_back(text.substr(start, end == std::string_view::npos ? end : end - start));
    if (end == std::string_view::npos) return parts;
    start = end + 1;
  }
}

// The report lines of one message in a text. Each is introduced by what the log or the console puts before it and a
// line holds: Executed, message, connector, filter, result, account, sender, address, data, subject.
void collect(std::string_view text, std::string_view lead, const std::string& message_id,
             std::vector<ReportLine>& lines) {
  const std::string mark = std::string(lead) + "Executed\t" + message_id + "\t";
  for (std::string_view line : split(text, '\n')) {
    const std::size_t at = line.find(mark);
    if (at == std::string_view::npos) continue;
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::vector<std::string> columns = split(line.substr(at + lead.size()), '\t');
    if (columns.size() < 9) continue;
    lines.push_back({columns[1], columns[3], split(columns[4], ','), columns[8]});
  }
}

FileMarks mark_logs(const Server& server) {
  FileMarks marks;
  std::error_code error;
  if (server.log_directory.empty()) return marks;
  for (const fs::directory_entry& entry : fs::directory_iterator(server.log_directory, error)) {
    if (!entry.path().filename().string().starts_with("MTAFILTER-Report-")) continue;
    std::error_code unreadable;
    marks[entry.path()] = {entry.file_size(unreadable), entry.last_write_time(unreadable)};
  }
  return marks;
}

std::string read_from(const fs::path& file, std::uintmax_t offset) {
  std::ifstream in(file, std::ios::binary);
  in.seekg(static_cast<std::streamoff>(offset));
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

ReportLogPosition::ReportLogPosition(const Server& server) : server_(server), marks_(mark_logs(server)) {}

std::vector<ReportLine> ReportLogPosition::lines_since(const std::string& message_id) const {
  std::vector<ReportLine> lines;
  // At midnight a message's lines stand in two files.
  for (const auto& [file, mark] : mark_logs(server_)) {
    const auto before = marks_.find(file);
    const std::uintmax_t offset = before == marks_.end() ? 0 : before->second.size;
    if (mark.size > offset) collect(read_from(file, offset), "\t", message_id, lines);
  }
  return lines;
}

std::vector<ReportLine> printed_report_lines(std::string_view output, const std::string& message_id) {
  std::vector<ReportLine> lines;
  collect(output, " ", message_id, lines);
  return lines;
}

}  // namespace pvfilter
