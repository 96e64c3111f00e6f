#include "actions/notification.h"

#include <optional>
#include <string>

#include "actions/filter_mark.h"
#include "actions/filtered_headers.h"
#include "actions/notification_file.h"
#include "actions/notification_template.h"
#include "actions/one_line.h"
#include "common/agent_settings.h"
#include "common/dates.h"
#include "common/output.h"
#include "platform/file.h"
#include "queue/envelope_file.h"
#include "queue/queue_paths.h"

namespace pv {
namespace {

NotificationText text_of(const NotificationRequest& request, const MessageContext& notification, std::string_view from,
                         std::string_view to) {
  NotificationText text;
  text.from = from;
  text.to = on_one_line(to);
  text.message_id = on_one_line("<" + std::string(notification.message_id.view()) + "@" +
                                std::string(settings().local_domain_name.view()) + ">");
  text.date = rfc822_date_now().view();
  text.filter_name = on_one_line(without_line_ends(request.display_name));
  text.description = request.description;
  text.tokens = request.tokens;
  return text;
}

bool open_template(const NotificationRequest& request, platform::InputFile& source) {
  if (request.template_name.empty()) return false;
  const std::string path =
      notification_template_path(request.filtered.directories.configuration, request.template_name);
  print_text(path);
  return source.open(path, platform::FileMode::kText);
}

// The filtered message's headers may stand before the mark in a template, and one of them may hide it.
bool keep_mark_seen(const MessageContext& notification) {
  const std::string path = message_file_path(notification, Queue::kInbound);
  const std::optional<bool> seen = scan_sees_mark(path);
  if (seen && (*seen || put_before(std::string(kFilterMark) + ": 1\r\n", path, notification))) return true;
  (void)platform::remove_file(path);
  return false;
}

bool write_message_file(const NotificationRequest& request, const MessageContext& notification,
                        const NotificationText& text, const NotificationForm& form) {
  FilteredHeaders headers(message_file_path(request.filtered, request.queue));
  if (form.opens_message_first && !headers.open()) return false;
  NotificationFile out(notification);
  if (!out.is_open() || !headers.open()) return false;
  if (!form.opens_message_first) headers.close();

  platform::InputFile source;
  const bool written = open_template(request, source) ? copy_template(source, text, form, headers, out)
                                                      : write_default_text(text, form, headers, out);
  return written && out.commit() && keep_mark_seen(notification);
}

}  // namespace

bool queue_notification(const NotificationRequest& request, const MessageContext& notification, std::string_view from,
                        std::string_view to, const NotificationForm& form) {
  if (!write_message_file(request, notification, text_of(request, notification, from, to), form)) return false;
  (void)write_inbound_envelope(notification);
  return true;
}

}  // namespace pv
