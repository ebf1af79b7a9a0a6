/// Random contents tried on random devices: what they fail, against checks of these single devices.

#include "libInventory/DeviceContent.h"

#include <gtest/gtest.h>

#include "libInventory/script/ScriptWalk.h"
#include "tests/libInventory/support/RandomWorld.h"

namespace vrx::test::plain {
namespace {

/// Each failure with the number of its element, counted from the one around the content.
std::string inWords(const Array<Finding>& failures, const XmlElement& around) {
    std::string words;
    for (const Finding& failure : failures) {
        int number = 0;
        for (ScriptWalk walk(around); walk && walk->element != failure.element; ++walk) {
            number += walk->kind == vocabulary::ElementKind::Error ? 0 : 1;
        }
        words += std::to_string(number) + ":" + std::to_string(static_cast<int>(failure.kind)) + " " +
                 utf8(failure.key) + " " + utf8(failure.found);
        for (const String& pattern : failure.expected) {
            words += " [" + utf8(pattern) + "]";
        }
        words += "\n";
    }
    return words;
}

String innerXml(const Element& device) {
    std::string xml;
    for (const Element& child : device.children) {
        xml += child.toXml();
    }
    return text(xml);
}

TEST(DeviceContentTest, SaysWhatACheckOfTheSingleDeviceSays) {
    int met = 0;
    int failed = 0;
    for (unsigned seed = 0; seed < 600; ++seed) {
        RandomWorld world(seed);
        const DeviceContent content(innerXml(world.content()));
        StateManager store;
        for (const Device& device : world.machine()) {
            const auto tried =
                addDevice(store, device.type, device.name, device.hwLocator, device.osLocator, device.properties);
            Inventory engine;
            const bool isMet = Inventory::checkDevice(*tried, content.text(), nullptr, false, engine);
            const XmlElement& asking = *engine.script().RootElement()->FirstChildElement();
            const DeviceOutcome outcome = engine.outcomeOf(asking);
            ASSERT_EQ(outcome.candidates.size(), 1U);
            ASSERT_EQ(content.isMetBy(*tried), isMet) << utf8(content.text());
            ASSERT_EQ(inWords(content.failuresOf(*tried), *content.element()),
                      inWords(outcome.candidates[0].failures, asking))
                << "seed " << seed << " " << utf8(content.text());
            met += isMet ? 1 : 0;
            failed += isMet ? 0 : 1;
        }
    }
    EXPECT_GT(met, 300);
    EXPECT_GT(failed, 300);
}

}  // namespace
}  // namespace vrx::test::plain
