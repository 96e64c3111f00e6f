#include "pvfilter/check_findings.h"

#include <cstdio>

namespace pvfilter {

void Findings::add(std::string_view file, int line, std::string_view what) {
  ++mistakes_;
  const std::string place = line > 0 ? ":" + std::to_string(line) : std::string();
  std::fprintf(stderr, "pvfilter: %.*s%s: %.*s\n", static_cast<int>(file.size()), file.data(), place.c_str(),
               static_cast<int>(what.size()), what.data());
}

}  // namespace pvfilter
