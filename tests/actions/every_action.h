// Every action on a server of its own, for tests that break each of its steps.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"
#include "support/server_tree.h"

namespace pv::test {

struct ActionCase {
  std::string keyword;
  std::string data{};
  std::optional<std::string> fallback{};  // data for the outcome when its template cannot be read
  bool queues = false;                    // a new message; recorded although its command file cannot be written
  bool mailbox_rule = false;
  bool always_recorded = false;  // whatever became of it
  bool ends_table = false;       // no action runs after it
};

// One at least for each keyword that the agent knows.
std::vector<ActionCase> every_action();

// The files of a server by their paths in it. New identifiers are written as "NEW.MAI" and dates are left out, so that
// two runs compare equal.
using Files = std::map<std::string, std::string>;

// A server with a message in every queue and mailbox that an action acts on.
class ActionServer {
 public:
  ActionServer();
  ~ActionServer();

  // Puts every file back to what it was at the beginning.
  void restore();
  Files files() const;

  struct Outcome {
    bool done = false;      // the action says that it was carried out (a mailbox rule: that the message left)
    bool next_ran = false;  // an action that cannot fail stands behind it in the table
  };
  // Has the dispatcher carry out a table with the action, through kTableOperations file operations of its own first.
  Outcome run(const ActionCase& action);
  static constexpr int kTableOperations = 2;

 private:
  void remove_all_named(const std::string& path);

  const Files original_;
  ServerTree tree_;
  FilterSet set_;
  MatchResults results_;
};

// What is wrong with the files after an action was broken off or a step of it failed; empty when nothing is. Each old
// file has its old or its new content, and each new one is a complete one; a command file comes with its message.
// `leftovers`: other new files may lie in the directories of message files.
std::string damage(const Files& before, const Files& finished, const Files& now, bool leftovers);

// Whether nothing is missing from `finished` that the action needs to be recorded; mailboxes' flags may be.
bool is_finished(const ActionCase& action, const Files& finished, const Files& now);

}  // namespace pv::test
