#include "queue/addresses.h"

#include <gtest/gtest.h>

namespace pv {
namespace {

struct AddressCase {
  const char* what;
  const char* text;
  const char* extracted;  // ExtractAddress
  bool bracketed;
  const char* bare;      // BareSenderAddress
  const char* stripped;  // StripAddressType
  bool typed;
};

constexpr AddressCase kAddresses[] = {
    {"the connector form", "[SMTP:a@b]", "a@b", true, "a@b", "a@b", true},
    {"a plain address", "a@b", "a@b", false, "", "a@b", false},
    {"no closing bracket", "[SMTP:a@b", ":a@b", false, "", "a@", true},
    {"a blank after the bracket", "[SMTP:a@b] ", "a@b", true, "a@b", "a@b]", true},
    {"only the first of a list", "[SMTP:a@b];[SMTP:c@d]", "a@b", true, "a@b", "a@b];[SMTP:c@d", true},
    {"a bracket before the colon", "a]b[SMTP:x]", "x", true, "x", "x", true},
    {"nothing after the colon", "[SMTP:", ":", false, "", "", true},
};

TEST(Addresses, AreTakenOutOfTheConnectorForm) {
  for (const AddressCase& c : kAddresses) {
    BoundedText<2048> extracted;
    BoundedText<1024> bare;
    BoundedText<512> stripped;
    bare.cut("left over");
    EXPECT_EQ(ExtractAddress(c.text, extracted), c.bracketed) << c.what;
    EXPECT_EQ(extracted.view(), c.extracted) << c.what;
    BareSenderAddress(c.text, bare);
    EXPECT_EQ(bare.view(), c.bare) << c.what;
    EXPECT_EQ(StripAddressType(c.text, stripped), c.typed) << c.what;
    EXPECT_EQ(stripped.view(), c.stripped) << c.what;
  }
}

}  // namespace
}  // namespace pv
