#include "actions/notification_text.h"

#include "actions/filter_mark.h"

namespace pv {
namespace {

constexpr std::string_view kAutoSubmitted = "Auto-Submitted: auto-replied\n";
constexpr std::string_view kBulk = "Precedence: bulk\n";

std::string header_lines(const NotificationText& text, const NotificationForm& form) {
  std::string lines = "Message-ID: " + text.message_id + "\n";
  lines += "From: \"Message Filter Agent\" <" + text.from + ">\n";
  lines += "To: " + text.to + "\n";
  lines += "Subject: Message Filter Notification: " + text.filter_name + "\n";
  lines += "Date: " + text.date + "\n";
  lines += kFilterMarkLine;
  lines += form.auto_submitted_first ? kAutoSubmitted : kBulk;
  lines += form.auto_submitted_first ? kBulk : kAutoSubmitted;
  return lines;
}

std::string reason(const NotificationText& text) {
  return "\nPostVane: PostVane Message Scan intercepted the delivery of this message. \r\nReason: (" +
         text.description + ")\n\n";
}

}  // namespace

bool write_default_text(const NotificationText& text, const NotificationForm& form, FilteredHeaders& headers,
                        NotificationFile& out) {
  if (!out.write(header_lines(text, form) + "\n" + reason(text))) return false;
  if (!headers.open()) return true;
  return out.write("Message headers follow:\n\n") && headers.copy_to(out);
}

}  // namespace pv
