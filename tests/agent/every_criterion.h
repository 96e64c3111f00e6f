// A server that uses every criterion that needs no scanner, so that a change anywhere on a message's road shows.
#pragma once

#include <string>
#include <utility>

#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "support/server_tree.h"

namespace pv::test {

// One filter per criterion, so that the report says of each whether it was met and by what.
inline void enable_every_criterion(const ServerTree& server) {
  const std::pair<int, const char*> values[] = {{kSubject, "free,money,re:*,*e*"},
                                                {kBody, "free,click,<html>,*http*,**="},
                                                {kTo, "*example*,*@*"},
                                                {kCc, "*@*"},
                                                {kToOrCc, "*@*,jane@example.org"},
                                                {kPriority, "High,Low,Normal"},
                                                {kFrom, "*@*,[PV_SENDER]"},
                                                {kSize, "4000"},
                                                {kHasAttachmentsMatching, "*.txt,*.gif,*.jpg,*.exe"},
                                                {kHasAnAttachment, ""},
                                                {kHeadersContain, "Received:*,X-*,MIME*"},
                                                {kSpf, "pass"},
                                                {kSenderAuth, "0"},
                                                {kIpAddress, "192.0.2.*"},
                                                {kAccount, "example.org"},
                                                {kConnector, "SMTP"},
                                                {kBoundaryHeadersContain, "Content-*"},
                                                {kIpAddressWhitelisted, "1,2"}};
  std::string table;
  for (const auto& [slot, value] : values) {
    const std::string name(kCriteriaKeywords[static_cast<std::size_t>(slot)]);
    table += name + "\t1\t" + name + "\t\t" + name + "\t\n";
    server.criteria(name, {{slot, value}});
    // Each is reported; only the first inserts the prefix, because every rewrite waits for the disk.
    server.actions(name, {{"ADD_SUBJECT_PREFIX", "[seen] "}});
  }
  server.actions("BODY", {{"ADD_HEADER", "X-Words|[PV_MF-W][PV_MF-R][PV_MF-A] [PV_WORDLIST]"}});
  server.actions("CONNECTOR", {{"ADD_HEADER", "X-Connector|[PV_MF-E]"}});
  server.write("conf/FILTERS/FILTER.TAB", table);
  server.set_number(kAgentKey, "Activity Log Enabled", 1);
}

// The command file that goes with every message.
inline constexpr char kCommandFile[] =
    "Recipients=[SMTP:jane@example.org]\r\nSender=[SMTP:ann@example.com]\r\nClientIP=192.0.2.7\r\n"
    "Account=example.org\r\nSubject=s\r\n";

}  // namespace pv::test
