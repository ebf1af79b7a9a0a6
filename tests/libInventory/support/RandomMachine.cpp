#include "tests/libInventory/support/RandomMachine.h"

#include <boost/make_shared.hpp>
#include <cmath>

#include "libCommon/text/NumberText.h"
#include "libCommon/text/UuCode.h"
#include "libCommon/values/Unit.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"

namespace vrx::test {

namespace {

constexpr const char16_t* TYPES[] = {u"Processor", u"Storage", u"SolidStateDrive", u"Memory", u"MemoryModule", u"Fan"};
constexpr const char16_t* TOLERANCES[] = {u"0", u"1.5", u"33.3", u"100", u"100.5", u"-1", u"0.0001"};
constexpr const char16_t* UNITS[] = {u"KB",  u"MiB",  u"bit", u"GB/s", u"Mbit/s", u"GHz",  u"MT/s", u"mV",
                                     u"A",   u"kW",   u"Wh",  u"mAh",  u"J",      u"degC", u"degF", u"K",
                                     u"RPM", u"inch", u"mm",  u"ns",   u"min",    u"px",   u"dpi",  u"dB",
                                     u"lm",  u"lx",   u"cd",  u"N",    u"g",      u"%",    u"bar",  u"hPa"};

using namespace std::string_view_literals;
constexpr StringView PIECES[] = {u""sv,
                                 u" "sv,
                                 u"\t"sv,
                                 u"\n"sv,
                                 u"\r\n"sv,
                                 u"\r"sv,
                                 u"\0"sv,
                                 u"\x01"sv,
                                 u"\x1F"sv,
                                 u"\x7F"sv,
                                 u"%u0041"sv,
                                 u"%u0025"sv,
                                 u"%"sv,
                                 u"%%u00"sv,
                                 u"u0041"sv,
                                 u"\\"sv,
                                 u"^"sv,
                                 u"$"sv,
                                 u"."sv,
                                 u"?"sv,
                                 u"*"sv,
                                 u"+"sv,
                                 u"{2}"sv,
                                 u"("sv,
                                 u")"sv,
                                 u"["sv,
                                 u"]"sv,
                                 u"|"sv,
                                 u"-"sv,
                                 u"&"sv,
                                 u"<"sv,
                                 u">"sv,
                                 u"\""sv,
                                 u"'"sv,
                                 u"]]>"sv,
                                 u"-->"sv,
                                 u"\\Q"sv,
                                 u"\\E"sv,
                                 u"VRXRRANGE[1-2]"sv,
                                 u"&amp;"sv,
                                 u"&#9;"sv,
                                 u"\u65E5\u672C"sv,
                                 u"\xD83D\xDE00"sv,
                                 u"\xD83D"sv,
                                 u"\xDE00"sv,
                                 u"\xFFFE"sv,
                                 u"\xFFFF"sv,
                                 u"\x0085"sv,
                                 u"\u2028"sv,
                                 u"\u0130"sv,
                                 u"\u00DF"sv,
                                 u"\xFEFF"sv,
                                 u"a"sv,
                                 u"A"sv,
                                 u"12"sv};

template <typename T, std::size_t N>
T pick(const T (&table)[N], unsigned random) {
    return table[random % N];
}

}  // namespace

RandomMachine::RandomMachine(unsigned seed, Devices devices) : m_random(seed), m_devices(devices) {
    const bool areAllPlain = devices == Devices::LookAlikes;
    for (unsigned i = 4 + below(8); i-- > 0;) {
        const auto locators = static_cast<Locators>(below(3));
        addDevice(locators, areAllPlain || locators != Locators::Unique, 1 + (below(4) == 0 ? below(6) : 0));
    }
}

void RandomMachine::addDevice(Locators locators, bool isPlain, unsigned copies) {
    const String number = toText(std::uint32_t{++m_count});
    const bool isUnique = locators == Locators::Unique;
    const bool isAlone = locators == Locators::None && m_devices == Devices::ToldApartByLocators;
    const String type = isAlone ? u"Fan" : pick(TYPES, below(100));
    const String hwLocator = isUnique                       ? anyText() + number
                             : locators == Locators::Shared ? concat(u"bus:1|\\", type)
                                                            : String();
    const String osLocator = isUnique ? anyText() : locators == Locators::Shared ? String(u"/dev/<&>%u0041") : String();
    const boost::shared_ptr<IDeviceImp> device = DeviceImp::createGeneric(
        CapabilityImp(type), CapabilityImp(), 0, isPlain ? plainText() : anyText(), u"", osLocator, hwLocator);
    addProperties(*device, isPlain);
    const auto devices = store.getDevices(CapabilityImp::ALL(), false);
    const boost::shared_ptr<IDeviceImp> parent =
        devices.isEmpty() ? boost::shared_ptr<IDeviceImp>() : devices[below(static_cast<unsigned>(devices.size()))];
    store.addDevice(device, nullptr, parent);
    for (unsigned copy = 1; copy < copies && !isUnique; ++copy) {
        store.addDevice(boost::shared_ptr<IDeviceImp>(device->clone()), nullptr);
    }
}

void RandomMachine::addProperties(IDeviceImp& device, bool isPlain) {
    constexpr PropertyCategoryImp CATEGORIES[] = {PropertyCategoryImp::SysInfo(), PropertyCategoryImp::SysInfo(),
                                                  PropertyCategoryImp::Internal(), PropertyCategoryImp::Volatile(),
                                                  PropertyCategoryImp::Group()};
    for (const String& key : distinctKeys(isPlain)) {
        const ValueImp value = isPlain ? plainValue(key) : anyValue();
        const unsigned category = isPlain ? key[1] : below(100);
        const auto spec =
            boost::make_shared<PropertySpecImp>(key, pick(CATEGORIES, category), value.type(), CapabilityImp::ALL());
        // Now and then a second time, with the same value.
        for (unsigned times = 1 + (below(8) == 0 ? 1 : 0); times-- > 0;) {
            device.addProperty(boost::make_shared<PropertyImp>(spec, value));
        }
    }
}

/// Keys K0 to K9 are those that filters name.
Array<String> RandomMachine::distinctKeys(bool isPlain) {
    Array<String> keys;
    for (unsigned i = 0; i < 10; ++i) {
        if (below(2) == 0) {
            keys.append(concat(u"K", toText(std::uint32_t{i})));
        }
    }
    if (!isPlain) {
        keys.append(keyText() + u"1");
        keys.append(keyText() + u"2");
    }
    return keys;
}

String RandomMachine::anyText() {
    String text;
    for (unsigned i = below(6); i-- > 0;) {
        text.append(pick(PIECES, below(1000)));
        if (below(10) == 0) {
            text.append(static_cast<char16_t>(below(0x10000)));
        }
    }
    return text;
}

String RandomMachine::keyText() {
    for (;;) {
        if (String text = anyText(); !needsUuEncode(text)) {
            return text;
        }
    }
}

/// Among these, a pattern matches the same texts as the pattern of every text that it matches.
String RandomMachine::plainText() {
    constexpr const char16_t* TEXTS[] = {u"",       u"disk",   u"DISK", u"Disk 2", u" x<&>\"'\t\n ",
                                         u"\u65E5", u"%u0041", u"\x01"};
    return pick(TEXTS, below(100));
}

ValueImp RandomMachine::plainValue(const String& key) {
    if (key == u"K0") {
        return ValueImp(std::int32_t{-10});
    }
    if (key == u"K1") {
        return ValueImp(Array<std::uint32_t>{5U, 5U, 7U});
    }
    if (below(3) > 0) {
        return ValueImp(plainText());
    }
    Array<String> texts;
    for (unsigned i = below(4); i-- > 0;) {
        texts.append(plainText());
    }
    return ValueImp(std::move(texts));
}

double RandomMachine::anyNumber() {
    constexpr double NUMBERS[] = {0,
                                  -0.0,
                                  1,
                                  -1,
                                  0.1,
                                  -2.5,
                                  3000,
                                  1e-7,
                                  1e21,
                                  -1e300,
                                  4.9e-324,
                                  1.7976931348623157e308 / 4,
                                  9007199254740993.0,
                                  1e16,
                                  1e15,
                                  1e-5};
    const auto digits = static_cast<double>(static_cast<std::int32_t>(m_random()));
    return below(2) == 0 ? pick(NUMBERS, below(1000)) : digits * std::pow(10.0, static_cast<int>(below(30)) - 20);
}

template <typename Measurement>
ValueImp RandomMachine::anyMeasurement() {
    if (below(10) == 0) {
        return ValueImp(Measurement(UnitKind::None, anyNumber(), UnitMagnitude()));
    }
    const Unit unit = *Unit::lookupByString(pick(UNITS, below(1000)));
    const UnitMagnitude magnitude = below(8) == 0 ? UnitMagnitude() : unit.magnitude();
    return ValueImp(Measurement(unit.type(), anyNumber(), magnitude));
}

ValueImp RandomMachine::anyValue() {
    const auto many = [this](auto make) {
        Array<decltype(make())> values;
        for (unsigned i = below(5); i-- > 0;) {
            values.append(values.size() > 0 && below(3) == 0 ? values.back() : make());
        }
        return values;
    };
    const auto number = [this] {
        return static_cast<std::uint32_t>(m_random());
    };
    const auto integer = [this] {
        return static_cast<std::int32_t>(m_random());
    };
    const auto large = [this] {
        return (std::uint64_t{m_random()} << 32) | m_random();
    };
    switch (below(17)) {
        case DataTypeImp::UINT32: return ValueImp(number());
        case DataTypeImp::INT32: return ValueImp(integer());
        case DataTypeImp::UINT64: return ValueImp(large());
        case DataTypeImp::BOOLEAN: return ValueImp(below(2) == 0);
        case DataTypeImp::DOUBLE: return ValueImp(anyNumber());
        case DataTypeImp::DATETIME: return ValueImp(DateTime(integer()));
        case DataTypeImp::PERCENT: return ValueImp(Percent{anyNumber()});
        case DataTypeImp::STRINGARRAY: return ValueImp(many([this] { return anyText(); }));
        case DataTypeImp::UINT32ARRAY: return ValueImp(many(number));
        case DataTypeImp::INT32ARRAY: return ValueImp(many(integer));
        case DataTypeImp::DISCRETEMEASUREMENT: return anyMeasurement<DiscreteMeasurement>();
        case DataTypeImp::UINT64ARRAY: return ValueImp(many(large));
        case DataTypeImp::DOUBLEARRAY: return ValueImp(many([this] { return anyNumber(); }));
        case DataTypeImp::NONDISCRETEMEASUREMENT: return anyMeasurement<NonDiscreteMeasurement>();
        case DataTypeImp::LOCALIZEDSTRING: return ValueImp(LocalizedString{anyText()});
        case DataTypeImp::LOCALIZEDSTRINGARRAY:
            return ValueImp(LocalizedStringArray{many([this] { return anyText(); })});
        default: return ValueImp(anyText());
    }
}

String RandomMachine::filterXml() {
    String xml = u"<system-information-filter>";
    String selection = selectionXml();
    for (const char16_t* const type : TYPES) {
        if (m_devices == Devices::ToldApartByLocators) {
            selection = selectionXml();
        }
        if (below(4) > 0) {
            xml += concat(u"<device type=\"", type, u"\">", selection, u"</device>");
        }
    }
    return xml + u"</system-information-filter>";
}

String RandomMachine::selectionXml() {
    String xml;
    for (unsigned i = below(10); i-- > 0;) {
        xml += concat(u"<property key=\"K", toText(std::uint32_t{i}), u"\"");
        if (below(4) > 0) {
            xml += concat(u" tolerance=\"", pick(TOLERANCES, below(100)), u"\"");
        }
        xml += u"/>";
    }
    return xml;
}

}  // namespace vrx::test
