#include "providers/load_scanners.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "platform/output_capture.h"
#include "providers/bayesian_training.h"
#include "providers/scanner_library.h"
#include "providers/scanner_provider.h"

namespace pv {
namespace {

using test::install_scanner;
using test::ScannerLibrary;
using test::ServerTree;

constexpr char kInitialized[] = "initialize  0 0\n";

class LoadScanners : public testing::Test {
 protected:
  LoadScanners() { read_settings(); }
  ~LoadScanners() override {
    release_scanners();
    finish_publishing_counters();
    forget_agent_settings();
  }

  void read_settings() {
    forget_agent_settings();
    read_general_settings();
    read_server_settings();
    read_scanner_settings();
    read_antivirus_setting();
  }

  std::string printed_by(void (*load)()) {
    read_settings();
    platform::OutputCapture output;
    load();
    return output.take();
  }

  ServerTree server;
};

struct LoadCase {
  const char* what;
  void (*load)();
  ScannerProvider& (*provider)();
  const char* library;  // name without its ending
  const char* kind;     // nullptr: none is installed
  std::uint32_t setting;
  std::uint32_t load_mode;
  const char* printed;
  std::int32_t status;
  bool initialized;
  bool can_scan;
};

ScannerProvider& bayesian() {
  return scanner_providers().bayesian;
}
ScannerProvider& spam_assassin() {
  return scanner_providers().spam_assassin;
}
ScannerProvider& dkim() {
  return scanner_providers().dkim;
}

constexpr char kB[] = "PVFLTMBF";
constexpr char kS[] = "PVFLTMSA";
constexpr char kD[] = "PVDomainKeys";
constexpr char kBLoading[] = "Bayesian Filter Loading Library..\nBayesian Filter - Loading Dictionary..\n";
constexpr char kBComplete[] =
    "Bayesian Filter Loading Library..\nBayesian Filter - Loading Dictionary..\nBayesian Filter - Loading Complete.\n";
constexpr char kBFailed[] =
    "Bayesian Filter Loading Library..\nBayesian Filter - Loading Dictionary..\nBayesian Filter - Loading Failed.\n";
constexpr char kSComplete[] = "SA Filter Loading Library..\nSA Filter - Loading Complete.\n";
constexpr char kSFailed[] = "SA Filter Loading Library..\nSA Filter - Loading Failed.\n";
constexpr char kDComplete[] = "Domain Keys Loading Library..\nDomain Keys - Loading Complete.\n";
constexpr char kDFailed[] = "Domain Keys Loading Library..\nDomain Keys - Loading Failed.\n";

const LoadCase kLoads[] = {
    {"off", load_bayesian_scanner, bayesian, kB, "whole", 0, 1, "", 0, false, false},
    {"missing", load_bayesian_scanner, bayesian, kB, nullptr, 1, 1,
     "Bayesian Filter - Unable to locate Filter Provider.\n", 1, false, false},
    {"whole", load_bayesian_scanner, bayesian, kB, "whole", 5, 1, kBComplete, 1, true, true},
    {"other names", load_bayesian_scanner, bayesian, kB, "fallback_names", 1, 2, kBComplete, 1, true, true},
    {"one other name", load_bayesian_scanner, bayesian, kB, "mixed_names", 1, 1, kBComplete, 1, true, true},
    {"no clean-up", load_bayesian_scanner, bayesian, kB, "without_clean_up", 1, 1, kBFailed, 3, false, false},
    {"not examined", load_bayesian_scanner, bayesian, kB, "whole", 1, 0, kBLoading, 1, false, true},
    {"not examined and incomplete", load_bayesian_scanner, bayesian, kB, "without_clean_up", 1, 0, kBLoading, 1, false,
     true},
    {"not examined, status of the setting", load_bayesian_scanner, bayesian, kB, "whole", 2, 0, kBLoading, 2, false,
     false},

    {"off by any number but 1", load_spam_assassin_scanner, spam_assassin, kS, "whole", 2, 1, "", 0, false, false},
    {"missing", load_spam_assassin_scanner, spam_assassin, kS, nullptr, 1, 1,
     "SA Filter - Unable to locate Filter Provider.\n", 1, false, false},
    {"whole", load_spam_assassin_scanner, spam_assassin, kS, "whole", 1, 0, kSComplete, 1, true, true},
    {"other names do not count", load_spam_assassin_scanner, spam_assassin, kS, "fallback_names", 1, 0, kSFailed, 3,
     false, false},
    {"no execute", load_spam_assassin_scanner, spam_assassin, kS, "without_execute", 1, 0, kSFailed, 3, false, false},

    {"off", load_dkim_scanner, dkim, kD, "whole", 0, 0, "", 0, false, false},
    {"missing", load_dkim_scanner, dkim, kD, nullptr, 7, 0, "Domain Keys - Unable to locate Filter Provider.\n", 1,
     false, false},
    {"whole", load_dkim_scanner, dkim, kD, "whole", 7, 0, kDComplete, 1, true, true},
    {"other names", load_dkim_scanner, dkim, kD, "fallback_names", 1, 0, kDComplete, 1, true, true},
    {"no execute", load_dkim_scanner, dkim, kD, "without_execute", 1, 0, kDFailed, 3, false, false},
};

TEST_F(LoadScanners, EachByItsRules) {
  for (const LoadCase& c : kLoads) {
    SCOPED_TRACE(std::string(c.library) + ": " + c.what);
    const ServerTree tree;
    if (c.kind != nullptr) install_scanner(tree, c.kind, c.library);
    tree.set_number(kAgentKey, "Bayesian Filtering Status", c.setting);
    tree.set_number(kAgentKey, "Bayesian Filtering Load Mode", c.load_mode);
    tree.set_number(kAgentKey, "SpamAssassin Enabled", c.setting);
    tree.set_number(kSmtpKey, "Domain Keys Status", c.setting);
    EXPECT_EQ(printed_by(c.load), c.printed);
    EXPECT_EQ(c.provider().status, c.status);
    EXPECT_EQ(c.provider().can_scan(), c.can_scan);
    if (c.kind != nullptr) {
      EXPECT_EQ(ScannerLibrary(tree, c.library).calls(), c.initialized ? kInitialized : "");
    }
    release_scanners();
    EXPECT_FALSE(c.provider().can_scan()) << "released";
  }
}

struct AntivirusCase {
  const char* what;
  const char* kind;
  std::uint32_t setting;
  const char* printed;
  std::int32_t status;
  bool has_execute;
};

TEST_F(LoadScanners, AntivirusIsNotExamined) {
  const AntivirusCase cases[] = {
      {"off", "whole", 0, "", 0, false},
      {"whole", "whole", 1, "Antivirus Loading Library..\n", 1, true},
      {"status of the setting", "whole", 2, "Antivirus Loading Library..\n", 2, true},
      {"no entry", "fallback_names", 1, "Antivirus Loading Library..\n", 1, false},
      {"missing", nullptr, 1, "Antivirus Loading - Unable to locate Filter Provider.\n", 1, false},
  };
  for (const AntivirusCase& c : cases) {
    const ServerTree tree;
    if (c.kind != nullptr) install_scanner(tree, c.kind, "PVAVGEN");
    tree.set_number(kAgentKey, "Antivirus Status", c.setting);
    EXPECT_EQ(printed_by(load_antivirus_scanner), c.printed) << c.what;
    EXPECT_EQ(scanner_providers().antivirus.status, c.status) << c.what;
    EXPECT_EQ(scanner_providers().antivirus.execute != nullptr, c.has_execute) << c.what;
    release_scanners();
  }
}

TEST_F(LoadScanners, ReleaseCleansUpInOrder) {
  const std::string file = server.path("cleaned");
  server.set_number(kAgentKey, "Bayesian Filtering Status", 1);
  server.set_number(kAgentKey, "SpamAssassin Enabled", 1);
  server.set_number(kSmtpKey, "Domain Keys Status", 1);
  const std::pair<const char*, void (*)()> loads[] = {
      {kS, load_spam_assassin_scanner}, {kD, load_dkim_scanner}, {kB, load_bayesian_scanner}};
  for (const auto& [name, load] : loads) {
    install_scanner(server, "whole", name);
    const ScannerLibrary library(server, name);
    ScannerScript script;
    script.file = file.c_str();
    script.clean_up_line = name;
    library.set(script);
    printed_by(load);
  }
  release_scanners();
  EXPECT_EQ(server.read("cleaned"), "PVFLTMBFPVDomainKeysPVFLTMSA");
}

TEST_F(LoadScanners, AnExceptionAtStartOrEndStopsNothing) {
  if (!SCANNERS_THROW) GTEST_SKIP() << "exceptions do not leave a library of this system";
  server.set_number(kAgentKey, "SpamAssassin Enabled", 1);
  install_scanner(server, "whole", kS);
  const ScannerLibrary library(server, kS);
  ScannerScript script;
  script.behaviour = ScannerScript::kThrows;
  library.set(script);
  EXPECT_EQ(printed_by(load_spam_assassin_scanner), kSComplete);
  EXPECT_TRUE(spam_assassin().can_scan());
  release_scanners();
}

TEST_F(LoadScanners, CountersBeginAtZeroOnlyWhereStatisticsAreOn) {
  for (const std::uint32_t on : {0U, 1U}) {
    const ServerTree tree;
    tree.set_number(kRootKey, "Update Statistics", on);
    tree.set_number(kCountersKey, "SA Total Scans", 70);
    tree.set_number(kCountersKey, "DKIM Scans", 80);
    tree.set_number(kAgentKey, "Bayesian Filtering Status", 1);
    tree.set_number(kAgentKey, "SpamAssassin Enabled", 1);
    tree.set_number(kSmtpKey, "Domain Keys Status", 1);
    printed_by(load_dkim_scanner);
    printed_by(load_bayesian_scanner);
    printed_by(load_spam_assassin_scanner);
    printed_by(load_antivirus_scanner);
    finish_publishing_counters();
    EXPECT_EQ(reg_read_dword_or(kCountersKey, "Bayesian Total Scans", 9), on == 0 ? 9U : 0U);
    EXPECT_EQ(reg_read_dword_or(kCountersKey, "Bayesian Detections", 9), on == 0 ? 9U : 0U);
    EXPECT_EQ(reg_read_dword_or(kCountersKey, "SA Total Scans", 9), on == 0 ? 70U : 0U);
    EXPECT_EQ(reg_read_dword_or(kCountersKey, "DKIM Scans", 9), 80U) << "kept until the first verification";
    EXPECT_EQ(reg_read_dword_or(kCountersKey, "Antivirus Total Scans", 9), 9U) << "switched off";
    release_scanners();
  }
}

TEST_F(LoadScanners, ACommandGoesToTheBayesianScannerAsItIs) {
  install_scanner(server, "whole", kB);
  server.set_number(kAgentKey, "Bayesian Filtering Status", 2);
  printed_by(load_bayesian_scanner);
  const ScannerLibrary library(server, kB);
  ScannerScript script;
  script.result = 77;
  script.behaviour = ScannerScript::kFillsAll;
  library.set(script);
  EXPECT_EQ(train_bayesian("<COMMAND>SPAM</COMMAND>"), 77) << "whatever its status";
  EXPECT_EQ(library.calls(), "execute <COMMAND>SPAM</COMMAND> 23 0\n");
}

}  // namespace
}  // namespace pv
