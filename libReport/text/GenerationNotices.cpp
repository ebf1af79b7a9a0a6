/// Looks for the few things that a generated script cannot carry. A script asks for a device by its type, so a type
/// that nobody knows is never found; keys of properties pass the XML layer without encoding; a device gives only the
/// first of two properties with one key; and a file in UTF-8 has no half of a surrogate pair.

#include "libReport/text/GenerationNotices.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>

#include "libCommon/text/TextHash.h"
#include "libCommon/text/UuCode.h"
#include "libInventory/ScriptGeneration.h"
#include "libReport/text/TextPieces.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

struct Counts {
    std::size_t unknownTypes = 0;
    std::size_t encodedKeys = 0;
    std::size_t hiddenProperties = 0;
    std::size_t unwrittenLocators = 0;
};

void countProperties(const Array<boost::shared_ptr<IPropertyImp>>& properties, Counts& counts) {
    boost::unordered_flat_map<StringView, const IPropertyImp*, TextHash> firstOfKey;
    for (const auto& property : properties) {
        counts.encodedKeys += needsUuEncode(property->key()) ? 1 : 0;
        const auto [first, isNew] = firstOfKey.try_emplace(property->key(), property.get());
        if (!isNew && first->second->value().toStringArray(false) != property->value().toStringArray(false)) {
            ++counts.hiddenProperties;
        }
    }
}

std::size_t unpairedSurrogates(StringView text) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        count += (text[i] & 0xF800) == 0xD800 && !isXmlRepresentable(text, i) ? 1 : 0;
    }
    return count;
}

void addNotice(std::vector<std::string>& notices, std::size_t count, const char* noun, const char* text) {
    if (count > 0) {
        notices.push_back(counted(count, noun) + text);
    }
}

}  // namespace

std::vector<std::string> generationNotices(const StateManager& store, const SysinfoFilter* filter, const String& script,
                                           bool isWellFormed) {
    Counts counts;
    for (const auto& device : store.devicesCapableOf(CapabilityImp::ALL())) {
        Array<boost::shared_ptr<IPropertyImp>> properties;
        if (filter == nullptr) {
            properties = device->properties(PropertyCategoryImp::ALL());
        } else if (!filter->includeDevice(*device, properties)) {
            continue;
        }
        counts.unknownTypes += device->type() == CapabilityImp::INVALID() ? 1 : 0;
        countProperties(properties, counts);
        for (const String* const locator : {&device->hwLocator(), &device->osLocator()}) {
            counts.unwrittenLocators += isWellFormed && !canBeWritten(*locator) ? 1 : 0;
        }
    }
    std::vector<std::string> notices;
    addNotice(notices, counts.unknownTypes, "device",
              " of unknown type: a check of the script finds none of that type; delete the elements from the script");
    addNotice(notices, counts.encodedKeys, "property key",
              " with control characters or with %u and four digits: a check of the script does not find that key");
    addNotice(notices, counts.hiddenProperties, "property value",
              " behind another value of the same key: a check of the script sees only the first of them");
    addNotice(notices, counts.unwrittenLocators, "locator",
              " with characters that XML cannot hold: left out, so a check of the script does not look at it");
    addNotice(notices, unpairedSurrogates(script), "unpaired surrogate",
              " in the script, which no file can hold: written as U+FFFD, so a check of the script does not find that "
              "text");
    if (store.deviceCount() > 0 && script.view().find(u"<device ") == StringView::npos) {
        notices.emplace_back("the filter selects no device of the machine, so the script asks for nothing");
    }
    return notices;
}

std::vector<std::string> idleFilterNotices(const StateManager& store, const SysinfoFilter& filter,
                                           const std::string& path, bool hasAllCategories) {
    const auto& devices = store.devicesCapableOf(CapabilityImp::ALL());
    const auto idleIn = [&](const PropertyCategoryImp& categories) {
        return filter.idle(devices, categories);
    };
    const Array<SysinfoFilter::Idle> everywhere = idleIn(PropertyCategoryImp::ALL());
    std::vector<std::string> notices;
    for (const SysinfoFilter::Idle& idle : hasAllCategories ? everywhere : idleIn(PropertyCategoryImp::SysInfo())) {
        const bool isElsewhere = std::none_of(
            everywhere.begin(), everywhere.end(),
            [&](const SysinfoFilter::Idle& other) { return other.row == idle.row && other.column == idle.column; });
        const std::string type = idle.type.toString(0, false).toUtf8();
        const std::string text = idle.key.isEmpty() ? fmt::format("no device of the machine is a {} by this rule", type)
                                 : isElsewhere      ? fmt::format(
                                                          "{} of a {} changes by itself or belongs to the software; only "
                                                               "--all-categories names it",
                                                          idle.key.toUtf8(), type)
                                               : fmt::format("no {} of the machine has {}", type, idle.key.toUtf8());
        notices.push_back(fmt::format("{}:{}:{}: {}", path, idle.row, idle.column, text));
    }
    return notices;
}

}  // namespace vrx
