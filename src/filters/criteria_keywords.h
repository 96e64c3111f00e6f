// The criterion types. A type's position is its slot number everywhere: in criteria tables (line k fills slot k), in
// match results, and in the tokens of decision scripts ("[PV_SUBJECT]").
#pragma once

#include <array>
#include <string_view>

#include "filters/limits.h"

namespace pv {

enum Slot : int {
  kSubject = 0,
  kBody,
  kTo,
  kCc,
  kToOrCc,
  kPriority,
  kFrom,
  kSize,
  kHasAttachmentsMatching,
  kHasAnAttachment,
  kSecure,  // nothing evaluates it; it never matches
  kHeadersContain,
  kSpamProbability,
  kSpf,
  kHasVirus,
  kAllMessages,
  kSenderAuth,
  kIpAddress,
  kAccount,
  kConnector,
  kUrlBl,
  kBoundaryHeadersContain,
  kIpAddressWhitelisted,
  kDkim,
  kSpamAssassin,
};

inline constexpr std::array<std::string_view, kSlotCount> kCriteriaKeywords = {
    "SUBJECT",
    "BODY",
    "TO",
    "CC",
    "TOorCC",
    "PRIORITY",
    "FROM",
    "SIZE",
    "HASATTACHMENTSMATCHING",
    "HASANATTACHMENT",
    "SECURE",
    "HEADERS_CONTAIN",
    "SPAM_PROBABILITY",
    "SPF",
    "HASVIRUS",
    "ALLMESSAGES",
    "SENDERAUTH",
    "IPADDRESS",
    "ACCOUNT",
    "CONNECTOR",
    "URLBL",
    "BOUNDARYHEADERS_CONTAIN",
    "IPADDRESS_WHITELISTED",
    "DKIM",
    "SPAMASSASSIN",
};

// "MF-W" and its like: the tags of match descriptions, which are also the "[PV_MF-W]" tokens of action texts.
namespace tag {
inline constexpr char kWord[] = "MF-W";
inline constexpr char kRecipient[] = "MF-R";
inline constexpr char kEnvelope[] = "MF-E";
inline constexpr char kAttachment[] = "MF-A";
inline constexpr char kHasAttachment[] = "MF-HA";
inline constexpr char kSenderAuth[] = "MF-ES";
inline constexpr char kAll[] = "MF-ALL";
inline constexpr char kLink[] = "MF-SBLURI";
inline constexpr char kSize[] = "SZ";
inline constexpr char kSizeLimit[] = "SZL";
}  // namespace tag

}  // namespace pv
