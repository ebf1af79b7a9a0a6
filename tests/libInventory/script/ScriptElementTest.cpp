#include "libInventory/script/ScriptElement.h"

#include <gtest/gtest.h>

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/script/FailOnExtraRules.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

class ScriptElementTest : public testing::Test {
protected:
    /// The first element below the root.
    const XmlElement& first(const char16_t* content, const char16_t* flags = u"") {
        EXPECT_TRUE(document.Parse(concat(u"<inventory-check", flags, u">\n", content, u"</inventory-check>")));
        return *document.RootElement()->FirstChildElement();
    }
    XmlDocument document;
};

TEST_F(ScriptElementTest, AttributesAreFoundInAnyLetterCaseTheExactOneFirst) {
    const XmlElement& element = first(u"<device NAME='upper' name='exact' Type='t'/>");
    EXPECT_EQ(attributeOf(element, u"name"), u"exact");
    EXPECT_EQ(attributeOf(element, u"type"), u"t");
    EXPECT_EQ(attributeOf(element, u"hwlocator"), u"");
}

TEST_F(ScriptElementTest, KnowTheDeviceThatTheyLieInAndTheirPlace) {
    const XmlElement& group = first(u"<and><DEVICE><not><property/></not></DEVICE></and>");
    const XmlElement* const device = group.FirstChildElement();
    const XmlElement* const property = device->FirstChildElement()->FirstChildElement();
    EXPECT_EQ(deviceAround(*property), device);
    EXPECT_EQ(deviceAround(*device), device);
    EXPECT_EQ(deviceAround(group), nullptr);
    EXPECT_EQ(placeOf(device), u"(2:6)");
}

TEST_F(ScriptElementTest, AskForNothingThatTheRootSwitchesOff) {
    const char16_t* const device = u"<device name='a%u002Eb' hwlocator='h' oslocator='o'/>";
    EXPECT_EQ(askedFor(first(device), u"name"), u"a.b");
    EXPECT_EQ(askedFor(first(device), u"type"), u"");
    const char16_t* const off = u" check-names='false' check-osLocators='true'";
    EXPECT_EQ(askedFor(first(device, off), u"name"), u"");
    EXPECT_EQ(askedFor(first(device, off), u"hwlocator"), u"h");
    EXPECT_EQ(askedFor(first(device, off), u"oslocator"), u"o");
}

TEST(FailOnExtraRulesTest, AreAddedForTypesOfWhichAllDevicesAreNamed) {
    StateManager store;
    addDevice(store, "Fan", "one", "1");
    addDevice(store, "Fan", "two", "2", "o");
    addDevice(store, "Battery", "battery", "b");
    const String fans = u"<device type='Fan' hwlocator='1'/>\n<device type='Fan' hwlocator='2' oslocator='o'/>\n";
    const auto with = [&](const String& devices) {
        const String all = withFailOnExtraRules(concat(u"<inventory-check>", devices, u"</inventory-check>"), store);
        return utf8(String(all.view().substr(17 + devices.size())));
    };
    const std::string end = "</inventory-check>";
    const std::string fanRule = "    <fail-on-extra type=\"Fan\"/>\n";
    EXPECT_EQ(with(fans), fanRule + end);
    EXPECT_EQ(with(fans + u"<device type='Battery' hwlocator='b'/>"),
              fanRule + "    <fail-on-extra type=\"Battery\"/>\n" + end);
    EXPECT_EQ(with(u"<device type='Fan' hwlocator='1'/><device type='Warp'/>"), end);
    EXPECT_EQ(with(fans + u"<device type='Battery' hwlocator='c'/>"), fanRule + end);
    EXPECT_EQ(utf8(withFailOnExtraRules(u"<inventory-check/>", store)), "<inventory-check/>");
}

}  // namespace
}  // namespace vrx::test
