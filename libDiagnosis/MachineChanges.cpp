/// Values are compared as the texts that people see, so that a number which a recording keeps as its text equals the
/// number that was read from the machine. Of several properties with one key the first is compared with the first, and
/// so on. Properties nearly always stand in the same order, and then one walk over both lists compares them.

#include "libDiagnosis/MachineChanges.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <unordered_set>

#include "libCommon/text/TextHash.h"
#include "libDiagnosis/DevicePairs.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/devices/KernelNames.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

using Properties = std::vector<const IPropertyImp*>;
using What = ValueChange::What;

class Comparison {
public:
    explicit Comparison(bool allCategories) : m_allCategories(allCategories) {}

    std::vector<ValueChange> compare(const IDeviceImp& before, const IDeviceImp& after) {
        m_changes.clear();
        compareTexts(What::Name, before.name(), after.name());
        compareTexts(What::OsLocator, before.osLocator(), after.osLocator());
        if (!(before.capabilities() == after.capabilities())) {
            compareTexts(What::Capabilities, before.capabilities().toString(), after.capabilities().toString());
        }
        Properties old = propertiesOf(before);
        Properties now = propertiesOf(after);
        leaveOutWhatChangesByItself(old, now);
        compareProperties(old, now);
        return std::move(m_changes);
    }

private:
    static Properties propertiesOf(const IDeviceImp& device) {
        Properties properties;
        for (const auto& property : device.properties(PropertyCategoryImp::ALL())) {
            properties.push_back(property.get());
        }
        return properties;
    }

    /// A recording keeps no categories, so a key that is left out on one side is left out on the other.
    void leaveOutWhatChangesByItself(Properties& before, Properties& after) const {
        std::unordered_set<StringView, TextHash> keys;
        for (const Properties* const properties : {&before, &after}) {
            for (const IPropertyImp* const property : *properties) {
                if (!m_allCategories && !property->category().intersect(PropertyCategoryImp::SysInfo())) {
                    keys.insert(property->key());
                }
            }
        }
        if (!keys.empty()) {
            const auto isLeftOut = [&keys](const IPropertyImp* property) {
                return keys.contains(property->key());
            };
            std::erase_if(before, isLeftOut);
            std::erase_if(after, isLeftOut);
        }
    }

    void compareTexts(What what, const String& before, const String& after) {
        if (before != after) {
            m_changes.push_back({what, String(), before, after});
        }
    }

    void compareProperties(Properties& before, Properties& after) {
        const auto haveOneKey = [](const IPropertyImp* a, const IPropertyImp* b) {
            return a->key() == b->key();
        };
        if (std::ranges::equal(before, after, haveOneKey)) {
            for (std::size_t i = 0; i < before.size(); ++i) {
                compareProperty(before[i], after[i]);
            }
            return;
        }
        const auto byKey = [](const IPropertyImp* a, const IPropertyImp* b) {
            return a->key() < b->key();
        };
        std::ranges::stable_sort(before, byKey);
        std::ranges::stable_sort(after, byKey);
        merge(before, after);
    }

    /// Both are sorted by key.
    void merge(std::span<const IPropertyImp* const> before, std::span<const IPropertyImp* const> after) {
        while (!before.empty() || !after.empty()) {
            const bool hasOld = !before.empty() && (after.empty() || before.front()->key() <= after.front()->key());
            const bool hasNew = !after.empty() && (before.empty() || after.front()->key() <= before.front()->key());
            compareProperty(hasOld ? before.front() : nullptr, hasNew ? after.front() : nullptr);
            before = before.subspan(hasOld ? 1 : 0);
            after = after.subspan(hasNew ? 1 : 0);
        }
    }

    void compareProperty(const IPropertyImp* before, const IPropertyImp* after) {
        if (before != nullptr && after != nullptr && haveEqualValues(before->value(), after->value())) {
            return;
        }
        ValueChange change{What::Property, (before ? before : after)->key(), std::nullopt, std::nullopt};
        if (before != nullptr) {
            change.before = before->value().toString(true);
        }
        if (after != nullptr) {
            change.after = after->value().toString(true);
        }
        m_changes.push_back(std::move(change));
    }

    static bool haveEqualValues(const ValueImp& a, const ValueImp& b) {
        if (a.text() != nullptr && b.text() != nullptr) {
            return *a.text() == *b.text();
        }
        return a.toString(true) == b.toString(true);
    }

    bool m_allCategories;
    std::vector<ValueChange> m_changes;
};

}  // namespace

bool DeviceChange::isMoved() const {
    return before != nullptr && after != nullptr && before->hwLocator() != after->hwLocator();
}

bool DeviceChange::isOnlyRenamed() const {
    return before != nullptr && after != nullptr && !isMoved() && values.size() == 1 &&
           values.front().what == What::OsLocator && isKernelName(before->osLocator()) &&
           isKernelName(after->osLocator());
}

std::vector<DeviceChange> machineChanges(const StateManager& before, const StateManager& after, bool allCategories) {
    Comparison comparison(allCategories);
    std::vector<DeviceChange> changes;
    for (const DevicePair& pair : pairDevices(before, after)) {
        DeviceChange change{pair.before, pair.after, {}};
        const bool isInBoth = pair.before != nullptr && pair.after != nullptr;
        if (isInBoth) {
            change.values = comparison.compare(*pair.before, *pair.after);
        }
        if (!isInBoth || change.isMoved() || !change.values.empty()) {
            changes.push_back(std::move(change));
        }
    }
    return changes;
}

}  // namespace vrx
