// The example DNS library against a name server on this machine.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "agent/loaded_agent.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "platform/library.h"
#include "platform/output_capture.h"
#include "plugins/posix/name_server.h"
#include "pvmtafilter/plugin.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using test::NameServer;
using test::SilentServer;
using testing::HasSubstr;

constexpr char kZones[] = "host dbl.example\naddress bl.example\ntimeout 5000\n";
const std::vector<std::string>& records() {
  static const auto& list = *new std::vector<std::string>{
      "spam.example.dbl.example/127.0.0.2",     "7.2.0.192.bl.example/127.0.0.9",
      "both.example.dbl.example/127.0.0.2",     "refused.example.dbl.example/127.255.255.254",
      "parked.example.dbl.example/192.0.2.200",
  };
  return list;
}

std::mutex log_mutex;
std::string& logged() {
  static auto& text = *new std::string();
  return text;
}
std::int32_t log(void*, void*, void*, std::uint32_t, const char* text) {
  const std::lock_guard lock(log_mutex);
  logged() += text;
  return 1;
}

void install_library(const test::TemporaryDirectory& directory, const char* zones) {
  std::filesystem::create_directories(directory.path("app"));
  std::filesystem::copy_file(std::filesystem::path(PLUGIN_DIRECTORY) / "PVWINDNS.so",
                             directory.path("app/PVWINDNS.so"));
  directory.write("app/PVWINDNS.zones", zones);
}

// The library in a directory of its own, initialised.
class DnsPlugin {
 public:
  explicit DnsPlugin(const std::string& servers, const char* zones = kZones) {
    install_library(directory_, zones);
    std::string reason;
    library_ = platform::Library::load(directory_.path("app/PVWINDNS.DLL"), &reason);
    if (!library_) throw std::runtime_error(reason);
    logged().clear();
    library_->find<decltype(SetLoggingFunction)>("SetLoggingFunction")("", &log, nullptr, nullptr);
    initialise(servers);
  }
  ~DnsPlugin() { library_->keep_loaded(); }  // as the agent does
  DnsPlugin(const DnsPlugin&) = delete;
  DnsPlugin& operator=(const DnsPlugin&) = delete;

  void initialise(const std::string& servers) const {
    EXPECT_EQ(library_->find<decltype(DNSInitialize)>("DNSInitialize")(servers.c_str()), 1);
  }
  // The list that a host is on; empty for none.
  std::string listed_by(const char* host, const char* address = "") const {
    char scratch[PV_SCRATCH_SIZE] = {};
    char list_name[PV_LIST_NAME_SIZE] = {};
    const bool listed =
        library_->find<decltype(HasORBDBEntry)>("HasORBDBEntry")(host, address, scratch, list_name) != 0;
    EXPECT_EQ(listed, *list_name != '\0');
    return list_name;
  }

 private:
  test::TemporaryDirectory directory_;
  std::optional<platform::Library> library_;
};

class ExampleDnsLibrary : public testing::Test {
 protected:
  void SetUp() override {
    if (!NameServer::is_available()) GTEST_SKIP() << "dnsmasq is not installed: see scripts/install-tools";
  }
};

TEST_F(ExampleDnsLibrary, FindsWhatTheZonesList) {
  const NameServer server(records(), 60);
  const DnsPlugin library(" " + server.address() + " ; ");
  const struct {
    const char* what;
    const char* host;
    const char* address;
    const char* list;
  } cases[] = {
      {"a listed host", "spam.example", "192.0.2.1", "dbl.example"},
      {"in any letter case", "www.SPAM.example", "", "dbl.example"},
      {"a listed address", "other.example", "192.0.2.7", "bl.example"},
      {"both: the first zone", "both.example", "192.0.2.7", "dbl.example"},
      {"neither", "other.example", "192.0.2.8", ""},
      {"an answer that is a refusal", "refused.example", "", ""},
      {"an answer that is no listing", "parked.example", "", ""},
      {"no name and no address", "", "", ""},
      {"a host that is no name", "spam example", "", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(library.listed_by(c.host, c.address), c.list) << c.what;
  EXPECT_EQ(logged(), "PVWINDNS: 2 blacklist zones\n");
}

TEST_F(ExampleDnsLibrary, RemembersAnswersAsLongAsTheyHold) {
  for (const int ttl_seconds : {0, 600}) {
    NameServer server(records(), ttl_seconds);
    const DnsPlugin library(server.address(), "host dbl.example\ntimeout 200\n");
    EXPECT_EQ(library.listed_by("spam.example"), "dbl.example");
    EXPECT_EQ(library.listed_by("other.example"), "");
    server.stop();
    EXPECT_EQ(library.listed_by("spam.example"), ttl_seconds > 0 ? "dbl.example" : "");
    EXPECT_EQ(library.listed_by("other.example"), "");
    const std::string unanswered = "PVWINDNS: 1 blacklist zones gave no answer about a host\n";
    EXPECT_EQ(logged(), "PVWINDNS: 1 blacklist zones\n" + (ttl_seconds > 0 ? "" : unanswered))
        << "that a name is not listed is remembered too";
  }
}

TEST_F(ExampleDnsLibrary, TakesANewListOfServers) {
  const NameServer server(records(), 60);
  const DnsPlugin library("127.0.0.1:1", "host dbl.example\ntimeout 200\n");
  EXPECT_EQ(library.listed_by("spam.example"), "");
  library.initialise(server.address());
  EXPECT_EQ(library.listed_by("spam.example"), "dbl.example");
}

TEST(ExampleDnsLibraryAlone, GivesUpOnAServerThatDoesNotAnswer) {
  const SilentServer server;
  const DnsPlugin library(server.address(), "host dbl.example\naddress bl.example\ntimeout 100\n");
  EXPECT_EQ(library.listed_by("spam.example", "192.0.2.7"), "");
  EXPECT_THAT(logged(), HasSubstr("2 blacklist zones gave no answer about a host\n"));
}

TEST(ExampleDnsLibraryAlone, KnowsNothingWithoutServersItUnderstands) {
  const DnsPlugin library("not a server");
  EXPECT_EQ(library.listed_by("spam.example"), "");
}

TEST_F(ExampleDnsLibrary, MakesTheAgentFindListedLinks) {
  const NameServer name_server(records(), 60);
  const test::ServerTree server;
  install_library(server, kZones);
  server.set_text(kRootKey, "Application Directory", server.path("app"));
  server.set_text(kSmtpKey, "Local DNS Server List", name_server.address());
  server.set_number(kAgentKey, "Activity Log Enabled", 1);
  server.set_number(kAgentKey, "Perform SBLRBL", 1);
  server.filters({"links"});
  server.criteria("links", {{kUrlBl, ""}});
  server.actions("links", {{"ADD_HEADER", "X-Listed|[PV_MF-SBLURI]"}});
  server.queue("A.MAI", "", "Subject: a\r\n\r\nhttp://192.0.2.8/ and http://192.0.2.7/offer\r\n");
  const test::LoadedAgent agent(server);
  {
    platform::OutputCapture output;
    EXPECT_EQ(agent.execute("A.MAI"), 1);
  }
  EXPECT_THAT(server.message("A.MAI"), HasSubstr("X-Listed: bl.example\r\n"));
  EXPECT_THAT(test::report_log(server), HasSubstr("\tPVWINDNS: 2 blacklist zones\r\n"))
      << "it writes into the agent's log";
  EXPECT_THAT(test::report_log(server), HasSubstr("192.0.2.7 (192.0.2.7) was found in blacklist bl.example\r\n"));
}

class ExampleDnsLibraryConcurrent : public ExampleDnsLibrary {};

TEST_F(ExampleDnsLibraryConcurrent, AnswersSeveralThreads) {
  const NameServer server(records(), 60);
  const DnsPlugin library(server.address());
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 10; ++i) {
        const std::string unlisted = "host" + std::to_string(t * i) + ".example";
        EXPECT_EQ(library.listed_by(unlisted.c_str(), "192.0.2.8"), "");
        EXPECT_EQ(library.listed_by("spam.example"), "dbl.example");
      }
    });
  }
  library.initialise(server.address());
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace pv
