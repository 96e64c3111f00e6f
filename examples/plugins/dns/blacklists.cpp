#include "dns/blacklists.h"

#include <utility>

namespace example {
namespace {

constexpr std::size_t kMostCached = 10000;  // answers, about 2 MB

}  // namespace

Blacklists::Blacklists(Configuration configuration, std::string_view servers)
    : configuration_(std::move(configuration)),
      resolver_(servers, std::chrono::milliseconds(configuration_.timeout_ms)),
      cache_(kMostCached) {}

std::vector<std::optional<bool>> Blacklists::known(const std::vector<std::string>& names) {
  const AnswerCache::Time now = std::chrono::steady_clock::now();
  std::vector<std::optional<bool>> listed;
  listed.reserve(names.size());
  for (const std::string& name : names) listed.push_back(cache_.find(name, now));
  return listed;
}

void Blacklists::ask_for_unknown(const std::vector<std::string>& names, std::vector<std::optional<bool>>& listed) {
  std::vector<std::string> unknown;
  std::vector<std::size_t> positions;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (listed[i]) continue;
    unknown.push_back(names[i]);
    positions.push_back(i);
  }
  if (unknown.empty()) return;
  const std::vector<std::optional<ServerAnswer>> answers = resolver_.ask(unknown);
  const AnswerCache::Time now = std::chrono::steady_clock::now();
  for (std::size_t i = 0; i < answers.size(); ++i) {
    if (!answers[i]) continue;
    listed[positions[i]] = answers[i]->listed;
    cache_.store(unknown[i], answers[i]->listed, now + answers[i]->valid_for);
  }
}

Finding Blacklists::find(std::string_view host, std::string_view address) {
  std::vector<std::string> names;
  std::vector<std::string> zones;
  for (const Zone& zone : configuration_.zones) {
    std::string name = question(zone, host, address);
    if (name.empty()) continue;
    names.push_back(std::move(name));
    zones.push_back(zone.name);
  }
  std::vector<std::optional<bool>> listed = known(names);
  ask_for_unknown(names, listed);
  Finding finding{"", 0};
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!listed[i]) ++finding.unanswered;
    if (listed[i].value_or(false) && finding.zone.empty()) finding.zone = zones[i];
  }
  return finding;
}

}  // namespace example
