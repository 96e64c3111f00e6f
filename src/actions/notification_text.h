// What a notification says: the values that its text, from a template or the default one, is filled with.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "actions/filtered_headers.h"
#include "actions/notification_file.h"

namespace pv {

// Values on one line each, so that none of them can begin a header; only `description` is as the action table has it.
struct NotificationText {
  std::string from;         // the notification sender address
  std::string to;           // value of the default text's To header
  std::string message_id;   // "<id@domain>"
  std::string date;         // as a Date header has it
  std::string filter_name;  // the filter's display name
  std::string description;  // the action's, which is the reason given
  std::string tokens;       // the fired filter's tagged values
};

// What differs between the three notifications.
struct NotificationForm {
  bool opens_message_first;    // else the new file is created first, and the message is only looked for
  bool auto_submitted_first;   // the order of the last two headers of the default text
  std::size_t token_capacity;  // bytes a template line may reach through the fixed tokens, terminator included
};

// Writes the text that is sent without a template: headers, the reason, and the filtered message's headers if it can be
// opened. False when reading or writing failed.
[[nodiscard]] bool write_default_text(const NotificationText& text, const NotificationForm& form,
                                      FilteredHeaders& headers, NotificationFile& out);

}  // namespace pv
