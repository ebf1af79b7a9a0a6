#include "libMachine/record/Pseudonym.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "libMachine/record/Anonymize.h"
#include "libMachine/record/Recording.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {
namespace {

/// The kind of each character: what a tool that reads the text depends on.
std::string formOf(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char unit) {
        return std::isdigit(unit) != 0 ? '0' : std::islower(unit) != 0 ? 'a' : std::isupper(unit) != 0 ? 'A' : unit;
    });
    return text;
}

TEST(PseudonymTest, keepsTheForm) {
    for (const std::string text :
         {"S4EVNX0R123456", "WD-wcc4E0000000", "5JT2RQ2", "/5JT2RQ2/CN7016/", "1A2B-3C4D", "Bj\xC3\xB6rn 77",
          "naa.5000c500a1b2c3d4", "0x5000c500", "PHBT7112026Q400BGN-longer-than-one-block-0123456789"}) {
        EXPECT_EQ(formOf(pseudonymByForm(text)), formOf(text));
        EXPECT_NE(pseudonymByForm(text), text);
        EXPECT_EQ(pseudonymByForm(text), pseudonymByForm(text));
    }
    EXPECT_TRUE(pseudonym("naa.5000c500a1b2c3d4").starts_with("naa."));
    EXPECT_EQ(pseudonym("5000c500a1b2c3d4").find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_EQ(pseudonym("S4EVNX0R123456"), "H0YLNT3X598603") << "what other recordings hold must stay the same";
}

TEST(PseudonymTest, addressesAndUuidsStayWhatTheyAre) {
    const std::string address = pseudonymByForm("00:1d:00:ab:cd:ef");
    EXPECT_TRUE(isHardwareAddress(address));
    EXPECT_EQ(std::stoi(address.substr(0, 2), nullptr, 16) & 3, 2) << "locally administered, for one receiver";
    std::string plain = address;
    std::erase(plain, ':');
    EXPECT_EQ(addressPseudonym("001d00abcdef"), plain);
    std::transform(plain.begin(), plain.end(), plain.begin(), [](unsigned char unit) { return std::toupper(unit); });
    EXPECT_EQ(addressPseudonym("001D00ABCDEF"), plain) << "letter case is no difference";

    const std::string uuid = pseudonymByForm("4c4c4544-0051-5610-8052-b4c04f4a5432");
    EXPECT_TRUE(isUuid(uuid));
    EXPECT_EQ(uuid[14], '5') << "made from a name";
    std::string capital = uuid;
    std::transform(capital.begin(), capital.end(), capital.begin(),
                   [](unsigned char unit) { return std::toupper(unit); });
    EXPECT_EQ(uuidPseudonym("4C4C4544-0051-5610-8052-B4C04F4A5432"), capital);
    EXPECT_FALSE(isHardwareAddress("00:1d:00-ab:cd:ef"));
    EXPECT_FALSE(isUuid("4c4c4544-0051-5610-8052-b4c04f4a543"));
}

TEST(PseudonymTest, differentStaysDifferent) {
    std::set<std::string> serials;
    std::set<std::string> addresses;
    for (int i = 0; i < 2000; ++i) {
        serials.insert(pseudonym("SN" + std::to_string(1000000 + i) + "XQ"));
        addresses.insert(
            addressPseudonym("00:1d:00:00:" + std::to_string(10 + i / 90) + ":" + std::to_string(10 + i % 90)));
    }
    EXPECT_EQ(serials.size(), 2000U);
    EXPECT_EQ(addresses.size(), 2000U);
}

TEST(AnonymizeTest, replacesAnIdentityWhereverItStands) {
    Recording recording;
    DeviceRecord root;
    root.type = u"System";
    root.name = "System SN77-4410 (system)";
    root.hwLocator = "system";
    root.text(property::SERIAL_NUMBER, "SN77-4410");
    root.text(property::HOST_NAME, "system");
    root.add(property::ASSET_TAG, u"Not Specified");
    root.text(property::VERSION, "1.2");
    recording.add(root);
    DeviceRecord child;
    child.type = u"Ethernet";
    child.parent = 0;
    child.name = "Network interface enx001d00000077";
    child.hwLocator = "net:enx001d00000077";
    child.osLocator = "/by-id/SN77-4410-part1/SN77-44101";
    child.text(property::ADDRESS, "00:1d:00:00:00:77");
    child.text(property::MODEL, "at 00:1D:00:00:00:77, 5a1c7f2e-0b1d-4c55-9e77-0123456789ab, 0000:00:1f.2");
    child.text(property::PARTITION_TYPE, "c12a7328-f81f-11d2-ba4b-00a0c93ec93b");
    child.text(property::SLOT, "12");
    child.text(property::SERIAL_NUMBER, "12");
    recording.add(child);
    anonymize(recording);

    const auto text = [&](std::size_t place, StringView key) {
        for (const PropertyRecord& property : recording.at(place).properties) {
            if (property.key == key) {
                return property.value.toString(false).toUtf8();
            }
        }
        return std::string();
    };
    const std::string serial = pseudonym("SN77-4410");
    const std::string address = addressPseudonym("001d00000077");
    EXPECT_EQ(text(0, property::SERIAL_NUMBER), serial);
    EXPECT_EQ(recording.at(0).name, "System " + serial + " (" + pseudonym("system") + ")");
    EXPECT_EQ(recording.at(0).hwLocator, "system") << "a name that is a word of the recording's own";
    EXPECT_EQ(text(0, property::ASSET_TAG), "Not Specified");
    EXPECT_EQ(text(0, property::VERSION), "1.2");
    EXPECT_EQ(recording.at(1).hwLocator, "net:enx" + address);
    EXPECT_EQ(recording.at(1).name, "Network interface enx" + address);
    EXPECT_EQ(recording.at(1).osLocator, "/by-id/" + serial + "-part1/SN77-44101") << "whole words only";
    EXPECT_EQ(text(1, property::ADDRESS), addressPseudonym("00:1d:00:00:00:77"));
    EXPECT_EQ(text(1, property::MODEL), "at " + addressPseudonym("00:1D:00:00:00:77") + ", " +
                                            uuidPseudonym("5a1c7f2e-0b1d-4c55-9e77-0123456789ab") + ", 0000:00:1f.2");
    EXPECT_EQ(text(1, property::PARTITION_TYPE), "c12a7328-f81f-11d2-ba4b-00a0c93ec93b") << "the same on all machines";
    EXPECT_EQ(text(1, property::SLOT), "12") << "too short to be looked for";
}

}  // namespace
}  // namespace vrx
