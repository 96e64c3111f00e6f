#include "actions/notification_template.h"

#include <cstddef>
#include <optional>

#include "actions/filter_mark.h"
#include "actions/one_line.h"
#include "common/text_search.h"
#include "filters/token_expansion.h"
#include "platform/paths.h"
#include "scan/message_lines.h"

namespace pv {
namespace {

constexpr std::size_t kTemplateLine = 2048;  // bytes of a line, terminator included
constexpr std::size_t kExpandedLine = 1024;  // bytes a line may reach through the filter's tokens, terminator included
constexpr std::string_view kAnyToken = "[PV_";
constexpr std::string_view kHeadersToken = "[PV_HEADERS]";

void replace_fixed_tokens(const NotificationText& text, std::size_t capacity, std::string& line) {
  const struct {
    std::string_view token;
    std::string value;
  } fixed_tokens[] = {
      {"[PV_FILTERNAME]", text.filter_name},
      {"[PV_ACTIONDESC]", on_one_line(text.description)},
      {"[PV_BADMAILSENDER]", text.from},
      {"[PV_MID]", text.message_id},
      {"[PV_TIME]", text.date},
  };
  for (const auto& [token, value] : fixed_tokens) (void)replace_all(line, token, value, capacity);
}

// Values that are not encoded (names, the word list) may hold anything.
std::string kept_on_one_line(std::string_view line) {
  const bool ended = line.ends_with('\n');
  if (ended) line.remove_suffix(1);
  return on_one_line(line) + (ended ? "\n" : "");
}

std::string with_tokens_replaced(std::string_view template_line, const NotificationText& text,
                                 const NotificationForm& form) {
  std::string line(template_line);
  if (line.find(kAnyToken) == std::string::npos) return line;
  replace_fixed_tokens(text, form.token_capacity, line);
  ExpandTokens(text.tokens, line, kExpandedLine, TokenMode::kHeaderEncoded);
  return kept_on_one_line(line);
}

// One template on its way into the message file.
class TemplateCopy {
 public:
  TemplateCopy(const NotificationText& text, const NotificationForm& form, FilteredHeaders& headers,
               NotificationFile& out)
      : text_(text), form_(form), headers_(headers), out_(out) {}

  bool copy(platform::InputFile& source) {
    while (const std::optional<std::string_view> line = source.read_line(kTemplateLine)) {
      if (!copy_line(*line)) return false;
      at_line_start_ = line->ends_with('\n');
    }
    return !source.failed() && (marked_ || write_mark());
  }

 private:
  bool copy_line(std::string_view template_line) {
    // The headers of a message without a last line end must not run into the template's next line.
    if (at_line_start_ && !out_.begin_line()) return false;
    if (template_line.find(kHeadersToken) != std::string_view::npos) return headers_.copy_to(out_);
    const std::string line = with_tokens_replaced(template_line, text_, form_);
    return mark_before(line) && out_.write(line);
  }

  // A piece of a long line is neither a mark nor the end of the headers: the notification would go out unmarked.
  bool mark_before(std::string_view line) {
    if (marked_ || !at_line_start_ || line.empty()) return true;
    if (line.front() == '\r' || line.front() == '\n') return write_mark();
    marked_ = starts_with_nocase(line, kFilteredMark);
    return true;
  }

  bool write_mark() {
    marked_ = true;
    return out_.begin_line() && out_.write(kFilterMarkLine);
  }

  const NotificationText& text_;
  const NotificationForm& form_;
  FilteredHeaders& headers_;
  NotificationFile& out_;
  bool at_line_start_ = true;
  bool marked_ = false;
};

}  // namespace

std::string notification_template_path(std::string_view configuration_directory, std::string_view template_name) {
  return platform::join_path({configuration_directory, "FILTERS", "Templates", std::string(template_name) + ".TXT"});
}

bool copy_template(platform::InputFile& source, const NotificationText& text, const NotificationForm& form,
                   FilteredHeaders& headers, NotificationFile& out) {
  return TemplateCopy(text, form, headers, out).copy(source);
}

}  // namespace pv
