// The message file of a notification while it is written.
//
// Failure policy: it is written beside its place ("_<message id>") and put there by commit(), flushed and closed.
// Before that, or when commit() fails, nothing of it remains.
#pragma once

#include <string_view>

#include "platform/file.h"
#include "queue/message_context.h"

namespace pv {

class NotificationFile {
 public:
  explicit NotificationFile(const MessageContext& notification);

  bool is_open() const { return file_.is_open(); }
  // Text mode: every "\n" is stored as CR LF, one after a CR too.
  [[nodiscard]] bool write(std::string_view text);
  // Ends a line that has no end yet, so that what follows stands at the start of one.
  [[nodiscard]] bool begin_line() { return at_line_start_ || write("\n"); }
  [[nodiscard]] bool commit() { return file_.commit(); }

 private:
  platform::FileReplacement file_;
  bool at_line_start_ = true;
};

}  // namespace pv
