// The structure of a multipart message (RFC 2046), as far as annotations need it.
#pragma once

#include <string>
#include <string_view>

namespace pv {

// Watches the lines of a header block for "Content-Type: multipart" and its boundary, which is looked for on that line
// and on the folded line after it.
class MultipartHeader {
 public:
  void take(std::string_view line);

  bool is_multipart() const { return multipart_; }
  // Empty: none was found, or it has more than 255 characters.
  const std::string& boundary() const { return boundary_; }

 private:
  bool take_boundary(std::string_view line);

  bool multipart_ = false;
  bool expected_ = false;  // on the next line
  std::string boundary_;
};

enum class Marker { kNone, kStart, kEnd };

// The lines that separate the parts: "--boundary", and "--boundary--" after the last one. White space may follow; any
// other text makes it a line of its own meaning, such as the boundary of a multipart within this one.
class PartMarkers {
 public:
  explicit PartMarkers(const std::string& boundary) : start_("--" + boundary), end_(start_ + "--") {}

  Marker find(std::string_view line) const;
  const std::string& text(Marker marker) const { return marker == Marker::kEnd ? end_ : start_; }

 private:
  std::string start_;
  std::string end_;
};

}  // namespace pv
