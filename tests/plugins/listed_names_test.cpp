// What the DNS library asks for, and how long it remembers.
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

#include "dns/answer_cache.h"
#include "dns/configuration.h"
#include "support/server_tree.h"

namespace example {
namespace {

using std::chrono::seconds;

TEST(Zones, AreReadFromAFile) {
  const pv::test::TemporaryDirectory directory;
  directory.write("zones",
                  "# lists\r\nhost dbl.example\r\naddress\tbl.example more\n# host off.example\nhost\ntimeout 150\n");
  const Configuration read = read_configuration(directory.path("zones"));
  ASSERT_EQ(read.zones.size(), 2U);
  EXPECT_EQ(read.zones[0].kind, ZoneKind::kHost);
  EXPECT_EQ(read.zones[0].name, "dbl.example");
  EXPECT_EQ(read.zones[1].kind, ZoneKind::kAddress);
  EXPECT_EQ(read.zones[1].name, "bl.example");
  EXPECT_EQ(read.timeout_ms, 150);

  directory.write("bad", "timeout 0\ntimeout 60001\ntimeout soon\n");
  EXPECT_EQ(read_configuration(directory.path("bad")).timeout_ms, 2000);
  EXPECT_EQ(read_configuration(directory.path("none")).zones.size(), 0U);
}

TEST(Zones, AreAskedForWhatTheyList) {
  const Zone hosts{ZoneKind::kHost, "dbl.example"};
  const Zone addresses{ZoneKind::kAddress, "bl.example"};
  const std::string label(63, 'a');
  const struct {
    const char* what;
    const Zone& zone;
    std::string host;
    std::string address;
    std::string question;
  } cases[] = {
      {"a host", hosts, "spam.example", "192.0.2.7", "spam.example.dbl.example"},
      {"its address", addresses, "spam.example", "192.0.2.7", "7.2.0.192.bl.example"},
      {"port, user and www", hosts, "ann@WWW.Spam.example.:80", "", "spam.example.dbl.example"},
      {"an address as host", hosts, "192.0.2.7", "192.0.2.7", ""},
      {"no address", addresses, "spam.example", "", ""},
      {"no IPv4 address", addresses, "spam.example", "2001:db8::1", ""},
      {"an address out of range", addresses, "a", "192.0.2.256", ""},
      {"an address of three parts", addresses, "a", "192.0.2", ""},
      {"an address of five parts", addresses, "a", "192.0.2.7.1", ""},
      {"an empty host", hosts, "", "", ""},
      {"a host of dots", hosts, "a..b", "", ""},
      {"a host that is no name", hosts, "spam example\n", "", ""},
      {"the longest label", hosts, label, "", label + ".dbl.example"},
      {"a label too long", hosts, label + "a", "", ""},
      {"a name too long", hosts, label + "." + label + "." + label + "." + label.substr(0, 50), "", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(question(c.zone, c.host, c.address), c.question) << c.what;
}

TEST(AnswerCache, RemembersUntilTheAnswerIsTooOld) {
  AnswerCache cache(10);
  const AnswerCache::Time now;
  EXPECT_EQ(cache.find("a", now), std::nullopt);
  cache.store("a", true, now + seconds(10));
  EXPECT_EQ(cache.find("a", now + seconds(9)), true);
  EXPECT_EQ(cache.find("a", now + seconds(10)), std::nullopt);
  cache.store("a", false, now + seconds(20));
  EXPECT_EQ(cache.find("a", now + seconds(10)), false) << "a newer answer takes the place of the old one";
}

TEST(AnswerCache, MakesRoomForNewAnswers) {
  AnswerCache cache(2);
  const AnswerCache::Time now;
  for (const char* name : {"a", "b"}) cache.store(name, true, now + seconds(10));
  cache.find("a", now);
  cache.store("c", true, now + seconds(10));
  EXPECT_EQ(cache.find("a", now), true);
  EXPECT_EQ(cache.find("b", now), std::nullopt) << "not asked for the longest time";
  EXPECT_EQ(cache.find("c", now), true);
}

}  // namespace
}  // namespace example
