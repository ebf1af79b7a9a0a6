#include "libSystemState/diaglog/DeviceHeader.h"

#include <gtest/gtest.h>

#include "libCommon/xml/XmlDocument.h"
#include "tests/libSystemState/TestDevices.h"

namespace vrx {
namespace {

TEST(DeviceHeaderTest, holdsTheIdentifyingTexts) {
    XmlDocument document;
    const auto device = test::makeDevice(u"cpu", u"A & B", u"socket \"0\"", u"");
    EXPECT_EQ(diaglog::deviceToXmlHeader(document, device.get())->toString(),
              u"<device type=\"Processor\" name=\"A &amp; B\" hwlocator=\"socket &quot;0&quot;\" oslocator=\"\"/>");
    const auto unknown = test::makeDevice(u"what");
    EXPECT_EQ(diaglog::deviceToXmlHeader(document, unknown.get())->Attribute(u"type"), u"what");
}

}  // namespace
}  // namespace vrx
