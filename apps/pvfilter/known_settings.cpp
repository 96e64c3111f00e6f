#include "pvfilter/known_settings.h"

#include "common/registry_access.h"
#include "common/text_search.h"

namespace pvfilter {
namespace {

constexpr char kNothing[] = "the empty text";
constexpr bool kText = false;
constexpr bool kNumber = true;

constexpr KnownSetting kKnownSettings[] = {
    {"Activity Log Directory", pv::kAgentKey, kText, kNothing},
    {"Activity Log Enabled", pv::kAgentKey, kNumber, "0"},
    {"Allow Pattern Caching", pv::kAgentKey, kNumber, "0"},
    {"Antivirus Status", pv::kAgentKey, kNumber, "0"},
    {"Application Directory", pv::kRootKey, kText, kNothing},
    {"Bad Mail Directory", pv::kRootKey, kText, kNothing},
    {"Bad Mail Notification Sender Address", pv::kSmtpKey, kText, kNothing},
    {"Bayesian Filtering Load Mode", pv::kAgentKey, kNumber, "0"},
    {"Bayesian Filtering Status", pv::kAgentKey, kNumber, "0"},
    {"Case Sensitivity", pv::kAgentKey, kNumber, "0"},
    {"Configuration Directory", pv::kRootKey, kText, kNothing},
    {"Connector Root Directory", pv::kConnectorsKey, kText, kNothing},
    {"Debug Logging Level", pv::kAgentKey, kNumber, "5"},
    {"Debug Status", pv::kAgentKey, kNumber, "0"},
    {"Domain Keys Status", pv::kSmtpKey, kNumber, "0"},
    {"Forward Sender Address", pv::kAgentKey, kText, kNothing},
    {"Indexing Enabled", pv::kSfKey, kNumber, "0"},
    {"Local DNS Server List", pv::kSmtpKey, kText, kNothing},
    {"Local Domain Name", pv::kSmtpKey, kText, kNothing},
    {"Mail Root", pv::kRootKey, kText, kNothing},
    {"Perform SBLRBL", pv::kAgentKey, kNumber, "0"},
    {"Processing Order", pv::kFiltersKey, kText, kNothing},
    {"Public Folders Enabled", pv::kRootKey, kNumber, "1"},
    {"Quarantine Directory", pv::kRootKey, kText, kNothing},
    {"Reload", pv::kAgentKey, kNumber, "0"},
    {"Script Literal Mode", pv::kAgentKey, kNumber, "1"},
    {"SpamAssassin Enabled", pv::kAgentKey, kNumber, "0"},
    {"URI SBL Max Checks", pv::kAgentKey, kNumber, "0"},
    {"Update Statistics", pv::kRootKey, kNumber, "0"},
    {"Whitelist Outbound IPAddress Mode", pv::kSmtpKey, kNumber, "0"},
    {"Whitelist Outbound IPAddresses", pv::kSmtpKey, kNumber, "0"},
};

}  // namespace

const KnownSetting* find_known_setting(std::string_view name) {
  for (const KnownSetting& setting : kKnownSettings) {
    if (pv::equals_nocase(setting.name, name)) return &setting;
  }
  return nullptr;
}

}  // namespace pvfilter
