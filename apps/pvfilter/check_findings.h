// What `pvfilter check` finds.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

namespace pvfilter {

// Prints each mistake on standard error as it is found, as "pvfilter: FILE:LINE: what is wrong", and counts.
class Findings {
 public:
  // `line` counts from 1; 0: the file as a whole. `what` says what was found and what the agent does with it.
  void add(std::string_view file, int line, std::string_view what);

  // True the first time that a file is named: what several rows refer to is checked once.
  bool first_visit(const std::string& file) { return visited_.insert(file).second; }

  int mistakes() const { return mistakes_; }
  int files() const { return static_cast<int>(visited_.size()); }

 private:
  int mistakes_ = 0;
  std::set<std::string> visited_;
};

}  // namespace pvfilter
