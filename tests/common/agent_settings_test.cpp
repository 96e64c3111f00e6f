#include "common/agent_settings.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "common/registry_access.h"
#include "support/server_tree.h"

namespace pv {
namespace {

class AgentSettingsTest : public testing::Test {
 protected:
  AgentSettingsTest() { forget_agent_settings(); }
  ~AgentSettingsTest() override { forget_agent_settings(); }
  static void read_all() {
    read_logging_directory();
    read_general_settings();
    read_server_settings();
    read_scanner_settings();
    read_antivirus_setting();
  }
  test::ServerTree tree_;
};

struct NumberField {
  const char* key;
  const char* name;
  std::uint32_t AgentSettings::*field;
  std::uint32_t otherwise;
};
constexpr NumberField kNumbers[] = {
    {kRootKey, "Update Statistics", &AgentSettings::update_statistics, 0},
    {kAgentKey, "Debug Status", &AgentSettings::debug_status, 0},
    {kAgentKey, "Script Literal Mode", &AgentSettings::script_literal_mode, 1},
    {kAgentKey, "URI SBL Max Checks", &AgentSettings::uri_sbl_max_checks, 0},
    {kAgentKey, "Allow Pattern Caching", &AgentSettings::allow_pattern_caching, 0},
    {kAgentKey, "Debug Logging Level", &AgentSettings::debug_logging_level, 5},
    {kSfKey, "Indexing Enabled", &AgentSettings::indexing_enabled, 0},
    {kAgentKey, "Bayesian Filtering Status", &AgentSettings::bayesian_filtering_status, 0},
    {kAgentKey, "Bayesian Filtering Load Mode", &AgentSettings::bayesian_filtering_load_mode, 0},
    {kSmtpKey, "Domain Keys Status", &AgentSettings::domain_keys_status, 0},
    {kAgentKey, "Antivirus Status", &AgentSettings::antivirus_status, 0},
};

TEST_F(AgentSettingsTest, NumbersAreReadAtStartUpAndHaveDefaults) {
  std::uint32_t number = 100;
  for (const NumberField& c : kNumbers) tree_.set_number(c.key, c.name, number++);
  read_all();
  tree_.remove("settings.reg");
  number = 100;
  for (const NumberField& c : kNumbers) EXPECT_EQ(settings().*c.field, number++) << c.name;
  read_all();
  for (const NumberField& c : kNumbers) EXPECT_EQ(settings().*c.field, c.otherwise) << c.name;
}

TEST_F(AgentSettingsTest, TextsAreReadFromTheirKeysUpToTheirLimits) {
  tree_.set_text(kAgentKey, "Activity Log Directory", std::string(511, 'a'));
  tree_.set_text(kSmtpKey, "Local DNS Server List", std::string(2047, 'd'));
  tree_.set_text(kSmtpKey, "Local Domain Name", "example.com");
  read_all();
  EXPECT_EQ(settings().activity_log_directory.size(), 511U);
  EXPECT_EQ(settings().local_dns_server_list.size(), 2047U);
  EXPECT_EQ(settings().local_domain_name.view(), "example.com");
  EXPECT_EQ(settings().mail_root.view(), tree_.path("mail"));
  EXPECT_EQ(settings().application_directory.view(), tree_.path("app"));
  EXPECT_EQ(settings().whitelist_configuration_directory.view(), tree_.path("conf"));
}

struct LazyCase {
  const char* what;
  const char* name;
  bool (*get)();
  std::uint32_t stored;  // first
  bool first;
  bool after_storing_1;  // asked again after 1 was stored
};
constexpr LazyCase kLazy[] = {
    {"2 is no 1", "Case Sensitivity", case_sensitive_criteria, 2, false, false},
    {"1 makes criteria case-sensitive", "Case Sensitivity", case_sensitive_criteria, 1, true, true},
    {"all bits set are read again", "Case Sensitivity", case_sensitive_criteria, 0xFFFFFFFF, false, true},
    {"only 1 enables SpamAssassin", "SpamAssassin Enabled", spamassassin_enabled, 3, false, false},
    {"0 switches link look-ups off", "Perform SBLRBL", looks_up_body_links, 0, false, false},
    {"the marker of the link look-ups", "Perform SBLRBL", looks_up_body_links, 200000, true, true},
};

TEST_F(AgentSettingsTest, LazyNumbersAreReadOnceUnlessTheyHoldTheirMarker) {
  for (const LazyCase& c : kLazy) {
    forget_agent_settings();
    tree_.set_number(kAgentKey, c.name, c.stored);
    EXPECT_EQ(c.get(), c.first) << c.what;
    tree_.set_number(kAgentKey, c.name, 1);
    EXPECT_EQ(c.get(), c.after_storing_1) << c.what;
  }
  forget_agent_settings();
  tree_.remove("settings.reg");
  EXPECT_FALSE(looks_up_body_links());
  tree_.set_number(kAgentKey, "Perform SBLRBL", 1);
  EXPECT_FALSE(looks_up_body_links()) << "a missing number is stored as 0";
}

TEST_F(AgentSettingsTest, DirectoriesArePublishedWhenReread) {
  const Directories first = reread_directories();
  EXPECT_EQ(first.connector_root.view(), tree_.path("queues"));
  EXPECT_EQ(first.configuration.view(), tree_.path("conf"));
  EXPECT_EQ(first.bad_mail.view(), tree_.path("badmail"));
  EXPECT_EQ(first.quarantine.view(), tree_.path("quarantine"));
  tree_.set_text(kRootKey, "Configuration Directory", "/elsewhere");
  tree_.set_text(kConnectorsKey, "Connector Root Directory", std::string(1024, 'x'));
  EXPECT_EQ(current_directories().configuration.view(), tree_.path("conf")) << "not yet read";
  reread_directories();
  EXPECT_EQ(current_directories().configuration.view(), "/elsewhere");
  EXPECT_EQ(current_directories().connector_root.view(), "") << "too long reads as empty, nothing is left over";
}

TEST(AgentSettingsConcurrent, NoThreadSeesHalfADirectory) {
  const test::ServerTree tree;
  const std::string texts[] = {std::string(1000, 'a'), std::string(10, 'b')};
  tree.set_text(kRootKey, "Quarantine Directory", texts[0]);
  reread_directories();
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  threads.reserve(3);
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&texts, &wrong, t] {
      for (int i = 0; i < 300; ++i) {
        const Directories seen = t == 0 ? reread_directories() : current_directories();
        if (seen.quarantine.view() != texts[0] && seen.quarantine.view() != texts[1]) ++wrong;
      }
    });
  }
  for (int i = 0; i < 30; ++i) {
    EXPECT_TRUE(platform::write_text_setting(kRootKey, "Quarantine Directory", texts[i % 2]));
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  forget_agent_settings();
}

}  // namespace
}  // namespace pv
