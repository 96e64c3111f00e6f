#include "platform/buffered_output.h"

#include <cstring>

#include "platform/file_faults.h"
#include "platform/last_error.h"

namespace pv::platform {

bool BufferedOutput::refused() {
  if (error_ == 0 && file_.is_open()) return false;
  set_last_system_error(error_ != 0 ? error_ : kNotOpenError);
  return true;
}

bool BufferedOutput::note(bool succeeded) {
  if (!succeeded && error_ == 0) error_ = last_system_error();
  return succeeded;
}

bool BufferedOutput::empty_buffer() {
  const std::size_t used = std::exchange(used_, 0);
  return write_all(file_, {buffer_.data(), used});
}

bool BufferedOutput::append(std::string_view bytes) {
  if (bytes.size() > buffer_.size() - used_ && !empty_buffer()) return false;
  if (bytes.size() > buffer_.size()) return write_all(file_, bytes);
  if (bytes.empty()) return true;
  std::memcpy(buffer_.data() + used_, bytes.data(), bytes.size());
  used_ += bytes.size();
  return true;
}

bool BufferedOutput::append_text(std::string_view bytes) {
  for (std::size_t end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
    if (!append(bytes.substr(0, end)) || !append("\r\n")) return false;
    bytes.remove_prefix(end + 1);
  }
  return append(bytes);
}

bool BufferedOutput::write(std::string_view bytes) {
  if (refused()) return false;
  return note(!fails_for_test(FileOperation::kWrite) && (text_ ? append_text(bytes) : append(bytes)));
}

bool BufferedOutput::flush() {
  if (refused()) return false;
  return note(!fails_for_test(FileOperation::kFlush) && empty_buffer());
}

bool BufferedOutput::close() {
  const bool flushed = flush();
  if (!file_.is_open()) return false;
  const bool simulated_failure = fails_for_test(FileOperation::kClose);
  const bool closed = note(close_checked(file_) && !simulated_failure);
  if (error_ != 0) set_last_system_error(error_);
  return flushed && closed;
}

}  // namespace pv::platform
