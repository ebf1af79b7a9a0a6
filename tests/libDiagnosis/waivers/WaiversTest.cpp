#include <gmock/gmock.h>

#include "libCommon/xml/XmlDocument.h"
#include "libDiagnosis/waivers/ApplyWaivers.h"

namespace vrx {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<Waiver> read(const std::string& content, std::vector<WaiverMistake>& mistakes) {
    XmlDocument document;
    EXPECT_TRUE(document.ParseUtf8("<waivers>" + content + "</waivers>")) << content;
    return readWaivers(*document.RootElement(), mistakes);
}

/// A waiver with what every waiver needs.
std::vector<Waiver> waiver(const std::string& attributes, const std::string& expires = "2026-12-31") {
    std::vector<WaiverMistake> mistakes;
    std::vector<Waiver> waivers =
        read("<waiver reason='r' decided-by='d' expires='" + expires + "' " + attributes + "/>", mistakes);
    EXPECT_THAT(mistakes, IsEmpty()) << mistakes.front().text;
    return waivers;
}

Fault wrongModule(const std::vector<String>& keys) {
    Fault fault;
    fault.kind = FaultKind::Wrong;
    fault.asked = {u"", u"MemoryModule", u"dimm:A1", u""};
    fault.device = DeviceIdentity{};
    fault.device->spec = fault.asked;
    fault.device->serialNumber = u"S1";
    for (const String& key : keys) {
        fault.differences.push_back({Difference::What::Property, {}, key, {u"^1$"}, u"2"});
    }
    return fault;
}

WaivedFaults applied(const std::vector<Waiver>& waivers, const Fault& fault, StringView now = u"2026-12-31T23:59:59Z") {
    return applyWaivers({fault}, waivers, DateTime::fromIso8601(now).value());
}

TEST(WaiversTest, CoverAFaultByKindTypePlaceSerialNumberAndProperty) {
    const Fault fault = wrongModule({u"Speed"});
    for (const char* covers :
         {"type='MemoryModule'", "type='DIMM'", "type='Memory'", "hwlocator='dimm:A1'", "serial-number='S1'",
          "kind='wrong' type='Memory' hwlocator='dimm:A1' property='Speed'"}) {
        EXPECT_THAT(applied(waiver(covers), fault).waived, SizeIs(1)) << covers;
    }
    for (const char* misses : {"type='Storage'", "hwlocator='dimm:A10'", "oslocator='x'", "serial-number='S'",
                               "kind='missing' type='Memory'", "type='Memory' property='Size'"}) {
        const WaivedFaults outcome = applied(waiver(misses), fault);
        EXPECT_THAT(outcome.left, SizeIs(1)) << misses;
        EXPECT_THAT(outcome.idle, SizeIs(1)) << misses;
    }
}

TEST(WaiversTest, EveryDifferenceOfAFaultNeedsOne) {
    const Fault fault = wrongModule({u"Speed", u"Size"});
    std::vector<Waiver> waivers = waiver("type='Memory' property='Speed'");
    const WaivedFaults half = applied(waivers, fault);
    EXPECT_THAT(half.left, SizeIs(1));
    EXPECT_THAT(half.idle, IsEmpty());
    waivers.push_back(waiver("type='Memory' property='Size'").front());
    EXPECT_THAT(applied(waivers, fault).waived, SizeIs(1));
    EXPECT_THAT(applied(waiver("type='Memory' property='Speed'"), wrongModule({})).left, SizeIs(1));
}

TEST(WaiversTest, EndWithTheirLastDay) {
    const Fault fault = wrongModule({u"Speed"});
    const std::vector<Waiver> waivers = waiver("type='Memory'");
    EXPECT_THAT(applied(waivers, fault).waived, SizeIs(1));
    const WaivedFaults late = applied(waivers, fault, u"2027-01-01");
    EXPECT_THAT(late.left, SizeIs(1));
    EXPECT_THAT(late.expired, SizeIs(1));
    EXPECT_THAT(late.idle, IsEmpty());
}

TEST(WaiversTest, WhatNobodyKnowsIsWaivedOnlyWhereTheWaiverSaysSo) {
    Fault fault = wrongModule({});
    fault.kind = FaultKind::Undetermined;
    EXPECT_THAT(applied(waiver("type='Memory'"), fault).left, SizeIs(1));
    EXPECT_THAT(applied(waiver("kind='undetermined' type='Memory'"), fault).waived, SizeIs(1));
}

TEST(WaiversTest, RefusesWhatCoversMoreThanWasMeant) {
    const std::string rest = "reason='r' decided-by='d' expires='2026-12-31' ";
    for (const std::string& content :
         {"<waiver " + rest + "/>", "<waiver " + rest + "kind='wrong'/>", "<waiver " + rest + "type='Fann'/>",
          "<waiver " + rest + "type='Fan' Property='Size'/>", "<waiver " + rest + "type='Fan' kind='broken'/>",
          "<Waiver " + rest + "type='Fan'/>", std::string("<waiver type='Fan' decided-by='d' expires='2026-12-31'/>"),
          std::string("<waiver type='Fan' reason='r' decided-by=' ' expires='2026-12-31'/>"),
          std::string("<waiver type='Fan' reason='r' decided-by='d'/>"),
          std::string("<waiver type='Fan' reason='r' decided-by='d' expires='2026-12'/>"),
          std::string("<waiver type='Fan' reason='r' decided-by='d' expires='2026-02-30'/>")}) {
        std::vector<WaiverMistake> mistakes;
        read(content, mistakes);
        EXPECT_THAT(mistakes, SizeIs(1)) << content;
    }
}

}  // namespace
}  // namespace vrx
