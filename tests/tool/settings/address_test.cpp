#include "settings/network.h"

#include <gtest/gtest.h>

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::settings;

struct Checked {
  std::string (*whyNot)(const std::string&);
  std::string text;
  std::string why;
};

void PrintTo(const Checked& checked, std::ostream* out) {
  *out << "'" << checked.text << "' " << checked.why;
}

class AddressTest : public testing::TestWithParam<Checked> {};

TEST_P(AddressTest, SaysWhyATextCannotBeUsed) {
  EXPECT_EQ(GetParam().whyNot(GetParam().text), GetParam().why);
}

const std::string kForm = " is not of the form 192.0.2.1";
const std::string kBroken = " is not a netmask: its set bits are not all at the beginning";
const std::string kCharacter = " has a character that is not a letter, digit or hyphen";
const std::string kHyphen = " has a label that begins or ends with a hyphen";
const std::string kLabel63(63, 'a');
const std::string kLabels253 =
    kLabel63 + "." + kLabel63 + "." + kLabel63 + "." + kLabel63.substr(2);

INSTANTIATE_TEST_SUITE_P(
    Addresses, AddressTest,
    testing::Values(
        Checked{whyNotAnAddress, "1.0.0.0", ""}, Checked{whyNotAnAddress, "223.255.255.255", ""},
        Checked{whyNotAnAddress, "", "''" + kForm},
        Checked{whyNotAnAddress, "192.0.2", "'192.0.2'" + kForm},
        Checked{whyNotAnAddress, "192.0.2.256", "'192.0.2.256'" + kForm},
        Checked{whyNotAnAddress, "192.0.2.7 ", "'192.0.2.7 '" + kForm},
        Checked{whyNotAnAddress, "fe80::1", "'fe80::1'" + kForm},
        Checked{whyNotAnAddress, std::string("192.0.2.7\0x", 11),
                std::string("'192.0.2.7\0x'", 13) + kForm},
        Checked{whyNotAnAddress, "0.0.0.0", "'0.0.0.0' is not a host's address: it begins with 0"},
        Checked{whyNotAnAddress, "127.0.0.1", "'127.0.0.1' is the device itself, not its network"},
        Checked{whyNotAnAddress, "224.0.0.1", "'224.0.0.1' is a multicast address"},
        Checked{whyNotAnAddress, "255.255.255.255",
                "'255.255.255.255' is a reserved or the broadcast address"},
        Checked{whyNotAnOptionalAddress, "", ""},
        Checked{whyNotAnOptionalAddress, "x", "'x'" + kForm}, Checked{whyNotAServer, "", ""},
        Checked{whyNotAServer, "127.0.0.53", ""},
        Checked{whyNotAServer, "240.0.0.1", "'240.0.0.1' is a reserved or the broadcast address"}));

INSTANTIATE_TEST_SUITE_P(
    Masks, AddressTest,
    testing::Values(Checked{whyNotAMask, "255.255.255.255", ""},
                    Checked{whyNotAMask, "255.255.255.254", ""},
                    Checked{whyNotAMask, "128.0.0.0", ""},
                    Checked{whyNotAMask, "0.0.0.0", "'0.0.0.0' has no set bit"},
                    Checked{whyNotAMask, "0.255.255.255", "'0.255.255.255'" + kBroken},
                    Checked{whyNotAMask, "255.255.255.253", "'255.255.255.253'" + kBroken},
                    Checked{whyNotAMask, "24", "'24'" + kForm}));

INSTANTIATE_TEST_SUITE_P(
    Names, AddressTest,
    testing::Values(Checked{whyNotAHostname, "a", ""}, Checked{whyNotAHostname, "9-a.B", ""},
                    Checked{whyNotAHostname, kLabel63, ""},
                    Checked{whyNotAHostname, kLabels253, ""},
                    Checked{whyNotAHostname, kLabels253 + "a",
                            "it has 254 characters, the limit is 253"},
                    Checked{whyNotAHostname, kLabel63 + "a",
                            "'" + kLabel63 + "a' has a label of 64 characters, the limit is 63"},
                    Checked{whyNotAHostname, "", "'' has an empty label"},
                    Checked{whyNotAHostname, "a..b", "'a..b' has an empty label"},
                    Checked{whyNotAHostname, "a.", "'a.' has an empty label"},
                    Checked{whyNotAHostname, "-a", "'-a'" + kHyphen},
                    Checked{whyNotAHostname, "a.b-", "'a.b-'" + kHyphen},
                    Checked{whyNotAHostname, "a_b", "'a_b'" + kCharacter},
                    Checked{whyNotAHostname, "\xc3\xbc", "'\xc3\xbc'" + kCharacter},
                    Checked{whyNotDomains, "", ""}, Checked{whyNotDomains, "a.example b", ""},
                    Checked{whyNotDomains, "a,b", "'a,b'" + kCharacter},
                    Checked{whyNotDomains, "a  b", "'' has an empty label"}));

}  // namespace
}  // namespace camcfg::tests
