#include <gtest/gtest.h>

#include "libInventory/Finding.h"
#include "tests/libInventory/support/RandomWorld.h"

/// Elements that choose among the same devices are matched against all of these at once, except while the log is told
/// of each: both ways have to end alike, in every text and in the count of patterns that were given up.
namespace vrx::test::plain {
namespace {

class Crowd {
public:
    explicit Crowd(unsigned seed) : m_random(seed + 1) {}

    Machine machine() {
        Machine machine;
        for (unsigned i = 2 + below(90); i > 0; --i) {
            Device device{oneOf({"Storage", "Fan"}), oneOf({"red", "green"}), "h" + std::to_string(i), "", {}};
            for (const char* const key : {"A", "B"}) {
                std::vector<std::string> texts;
                for (unsigned j = below(12) == 0 ? below(3) : 1; j > 0; --j) {
                    texts.push_back(value());
                }
                if (below(9) != 0) {
                    device.properties.push_back({key, texts});
                }
            }
            machine.push_back(device);
        }
        return machine;
    }

    Element script() {
        Element root{"inventory-check", {}, {}};
        for (unsigned i = 2 + below(8); i > 0; --i) {
            Element device{"device", {{"type", "Storage"}}, {test(2), test(0)}};
            if (below(4) == 0) {
                device.attributes.push_back({"name", oneOf({"red", "^(red|green)$", "^(e+)+d$"})});
            }
            root.children.push_back(below(9) == 0 ? Element{"not", {}, {device}} : device);
        }
        return root;
    }

private:
    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }
    std::string oneOf(std::initializer_list<const char*> texts) {
        return texts.begin()[below(static_cast<unsigned>(texts.size()))];
    }
    std::string number() { return std::to_string(below(60)); }

    std::string value() {
        const std::string odd =
            oneOf({"SN7", "sn7", "VRXRRANGE[1-5]", "S.7", "eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee!", "1e1"});
        return below(5) == 0 ? odd : number() + oneOf({"", "", "", " GB", " MB", ".0"});
    }

    Element test(unsigned depth) {
        if (depth > 0 && below(3) == 0) {
            Element group{oneOf({"and", "or", "not"}), {}, {}};
            for (unsigned i = below(4); i > 0; --i) {
                group.children.push_back(test(depth - 1));
            }
            return group;
        }
        Element property{"property", {{"key", oneOf({"A", "B", "A", "B", "C"})}}, {}};
        const std::string range = "^VRXRRANGE[" + number() + "-" + number() + "]" + oneOf({"$", "$", " GB$", "x$", ""});
        const std::string other =
            oneOf({"^SN7$", "^s\\.7$", "^(e+)+$", "[", "^.[0-9]$", "^10$", "VRXRRANGE[1-5]", "^1[0-9]$", "^2{2}",
                   "^SN?[0-9]", "^1[0-9]|2$", "^e+(e+)+$", "^S", "^4\\d", "^(?i)sn"});
        const std::pair<std::string, std::string> asked{"value", below(2) == 0 ? range : other};
        if (below(6) == 0) {
            property.children.assign(1 + below(2), Element{"value", {asked}, {}});
        } else if (below(9) != 0) {
            property.attributes.push_back(asked);
        }
        return property;
    }

    std::minstd_rand m_random;
};

TEST(ContentSweepTest, endsAsTryingOneDeviceAfterTheOther) {
    std::uint64_t givenUp = 0;
    for (unsigned seed = 0; seed < 120; ++seed) {
        Crowd crowd(seed);
        const Machine machine = crowd.machine();
        const Element script = crowd.script();
        Engine atOnce(machine, false);
        Engine oneByOne(machine, false);
        atOnce.load(script);
        oneByOne.load(script);
        ASSERT_EQ(atOnce.run(), oneByOne.runWithDebugLines()) << "seed " << seed << "\n" << script.toXml();
        givenUp += atOnce.inventory().summary().patternsGivenUp;
        ASSERT_EQ(atOnce.inventory().summary().patternsGivenUp, oneByOne.inventory().summary().patternsGivenUp) << seed;
    }
    EXPECT_GT(givenUp, 0U);
}

}  // namespace
}  // namespace vrx::test::plain
