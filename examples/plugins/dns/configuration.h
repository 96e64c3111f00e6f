// Which blacklists are asked, and how names are asked about.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace example {

enum class ZoneKind { kHost, kAddress };

struct Zone {
  ZoneKind kind;
  std::string name;
};

struct Configuration {
  std::vector<Zone> zones;
  int timeout_ms = 2000;  // for all zones together
};

// Reads a text file of zones, one a line; without the file there are none.
//
//     # a comment
//     host     dbl.example.org      asked about the link's host:     spam.example.dbl.example.org
//     address  bl.example.org       asked about the host's address:  7.2.0.192.bl.example.org
//     timeout  1500                 milliseconds, 1 to 60000
Configuration read_configuration(const std::string& path);

// The name that a zone is asked for; empty when the zone has nothing to say about this host. A port, a user name and a
// leading "www." are not part of a host's name.
std::string question(const Zone& zone, std::string_view host, std::string_view address);

}  // namespace example
