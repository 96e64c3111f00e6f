// Questions to name servers, through c-ares.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace example {

// What a server said about a name of a blacklist.
struct ServerAnswer {
  bool listed = false;
  std::chrono::seconds valid_for{0};
};

// Asks a list of servers; any thread, several at once. ares_library_init must have been called.
class Resolver {
 public:
  // `servers`: addresses, each with ":port" if it is not 53, separated by blanks, commas or semicolons. Empty: the
  // system's servers.
  Resolver(std::string_view servers, std::chrono::milliseconds time_limit);

  // Asks for all names at once and waits until each has its answer or the time is over. No answer stays empty: it is
  // not known whether the name is listed.
  std::vector<std::optional<ServerAnswer>> ask(const std::vector<std::string>& names) const;

 private:
  const std::string servers_;  // as c-ares takes them
  const std::chrono::milliseconds time_limit_;
};

}  // namespace example
