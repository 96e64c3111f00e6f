// The blacklists that are asked about the hosts of links.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "dns/answer_cache.h"
#include "dns/configuration.h"
#include "dns/resolver.h"

namespace example {

struct Finding {
  std::string zone;        // the first, in the order of the configuration, that lists the host; empty: none does
  std::size_t unanswered;  // zones of which it is not known: no server answered in time, or it refused
};

// Any thread, several at once.
class Blacklists {
 public:
  Blacklists(Configuration configuration, std::string_view servers);

  // Asks all zones that have something to say. `address` may be empty. Takes the configured time at most, no time when
  // everything is known from earlier answers.
  Finding find(std::string_view host, std::string_view address);

  const Configuration& configuration() const { return configuration_; }

 private:
  std::vector<std::optional<bool>> known(const std::vector<std::string>& names);
  void ask_for_unknown(const std::vector<std::string>& names, std::vector<std::optional<bool>>& listed);

  const Configuration configuration_;
  const Resolver resolver_;
  AnswerCache cache_;
};

}  // namespace example
