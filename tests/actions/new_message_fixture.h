// A filter that fires with one row in its action table, and the messages that the row queues.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "actions/queued_message.h"
#include "common/agent_settings.h"
#include "common/dates.h"
#include "platform/clock.h"

namespace pv::test {

inline constexpr char kInbound[] = "queues/SMTP/Inbound";
inline constexpr char kNewMessages[] = "queues/SMTP/Inbound/Messages";
inline constexpr char kAgentSettings[] = R"(SOFTWARE\Post Vane\Post Vane\Agents\MTA\Filters\MTAFILTER)";

class NewMessages : public QueuedMessage {
 protected:
  NewMessages() {
    tree_.set_text(R"(SOFTWARE\Post Vane\Post Vane\Connectors\SMTP)", "Bad Mail Notification Sender Address",
                   "filter@example.org");
    settings().local_domain_name.cut("example.org");
    platform::set_time_of_day_for_test(1700000000);
    message_.envelope.recipients = "[SMTP:jane@example.org];[SMTP:joe@example.org]";
    message_.envelope.server.cut("mx");
    message_.envelope.time_acquired = 42;
    FilterDefinition& filter = set_.filters.emplace_back();
    filter.definition_name.cut("D");
    filter.display_name.cut("Virus\n");
    filter.slots[kSubject].status = 1;
    filter.slots[kSubject].minimum_matches = 1;
    results_.matches.resize(1);
    set_.filter_count = results_.filter_count = 1;
    results_.match(1).match_count[kSubject] = 1;
    set_matched("<MF-W>free</MF-W>");
  }
  ~NewMessages() override {
    platform::set_time_of_day_for_test(-1);
    forget_agent_settings();
  }

  void set_matched(std::string_view text) { results_.match(1).set_matched_text(kSubject, text); }
  void use_postoffice(std::string_view name, std::string_view message) {
    set_.postoffice.cut(name);
    tree_.write("queues/SMTP/Outgoing/Messages/M1.MAI", message);
  }

  // Whether the row was carried out. What it printed is in printed_, what it queued in id_ (the last one).
  bool run(std::string_view keyword, std::string_view data, std::string_view description = "why") {
    const std::string table = set_.postoffice.empty()
                                  ? "conf/FILTERS/ACTIONS/D.TAB"
                                  : "conf/Postoffices/" + std::string(set_.postoffice.view()) + "/RULES/ACTIONS/D.TAB";
    tree_.write(table, "1\t\t" + std::string(data) + "\t" + std::string(keyword) + "\t" + std::string(description));
    platform::OutputCapture capture;
    ReportLine report;
    ExecuteFilterActions(message_, set_, results_, report);
    printed_ = capture.take();
    printed_.erase(0, printed_.find('\n') + 1);  // the announcement of the filter
    const std::vector<std::string> names = tree_.names(kNewMessages);
    const auto found = std::find_if(names.begin(), names.end(), [](const auto& name) { return name != "M1.MAI"; });
    id_ = found == names.end() ? "" : *found;
    return !report.empty();
  }

  void remove_new_message() {
    tree_.remove(std::string(kNewMessages) + "/" + id_);
    tree_.remove(std::string(kInbound) + "/" + id_);
  }

  std::string text() const { return id_.empty() ? "" : tree_.message(id_); }
  std::string command() const { return id_.empty() ? "" : tree_.read(std::string(kInbound) + "/" + id_); }
  static std::string command_for(std::string_view recipients, std::string_view sender = "filter@example.org") {
    return "Recipients=" + std::string(recipients) + "\r\nServer=mx\r\nSender=[SMTP:" + std::string(sender) +
           "]\r\nTimeAcquired=42\r\nStatus=Undelivered\r\n";
  }
  std::string message_id() const { return "<" + id_ + "@example.org>"; }

  FilterSet set_;
  MatchResults results_;
  std::string printed_;
  std::string id_;
};

}  // namespace pv::test
