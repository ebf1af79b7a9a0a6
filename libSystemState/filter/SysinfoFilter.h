#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <string_view>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// The system-information filter: which devices and properties belong in a generated script, and with what tolerances.
///
/// A device is included when a rule's type is satisfied by the device's type; the first such rule in document order
/// decides, for the tolerances too. A rule with `property` children selects those keys, in the device's order; a rule
/// without any selects all of the device's properties. Used from one thread at a time.
///
///     SysinfoFilter filter;
///     if (filter.loadFile(u"filter.xml") != SysinfoFilter::PARSE_SUCCESS) {
///         std::cerr << filter.errorText().toUtf8() << '\n';
///     }
///     String script;
///     inventory.generateInventoryScript(script, false, true, true, &filter);
class VRX_EXPORT SysinfoFilter {
public:
    enum PARSE_RET {
        PARSE_SUCCESS = 0,
        PARSE_UNREADABLE = 1,     ///< the file cannot be read
        PARSE_XML_ERROR = 2,      ///< it does not parse
        PARSE_WRONG_ROOT = 3,     ///< its root is no system-information-filter
        PARSE_UNKNOWN_TYPE = 4,   ///< a rule's type is not known
        PARSE_BAD_TOLERANCE = 5,  ///< a tolerance is not a number
        PARSE_BAD_SWITCH = 6      ///< a switch is neither true nor false; in the extended language only
    };

    enum class Language : std::uint8_t {
        Plain,
        Extended,  ///< with `all-but`, `check-names`, `check-hwLocators` and `check-osLocators`
    };

    explicit SysinfoFilter(Language language = Language::Plain);
    ~SysinfoFilter();
    SysinfoFilter(const SysinfoFilter&) = delete;
    SysinfoFilter& operator=(const SysinfoFilter&) = delete;

    /// Loads the rules, replacing those it had; on failure it has none.
    PARSE_RET loadFile(const String& path);

    /// The same for the bytes of such a file.
    PARSE_RET load(std::string_view bytes);

    /// Why the last load failed, with "(row:column)" where there is a place; empty after a success.
    const String& errorText() const noexcept;

    /// The reason without its place, and the place, 1-based; 0 where there is none.
    const String& errorReason() const noexcept;
    std::uint32_t errorRow() const noexcept;
    std::uint32_t errorColumn() const noexcept;

    /// Whether the device belongs in the script; `properties` is then replaced by the properties that are selected for
    /// it.
    bool includeDevice(const IDeviceImp& device, Array<boost::shared_ptr<IPropertyImp>>& properties) const;

    /// Whether the rule for that device type defines a tolerance (percent) for that property.
    bool inventoryTolerance(const CapabilityImp& type, const String& key, double& tolerancePercent) const;

    /// What a script checks of devices besides their properties.
    struct Checks {
        bool names = true;
        bool hwLocators = true;
        bool osLocators = true;
    };

    /// Of devices of that type; everything where no rule says otherwise.
    Checks checks(const CapabilityImp& type) const;

    /// A rule that selects nothing of a machine, or a key of a rule that does.
    struct Idle {
        CapabilityImp type;
        String key;             ///< empty when no device is selected by the rule
        std::uint32_t row = 0;  ///< 1-based
        std::uint32_t column = 0;
    };

    /// What in the filter selects nothing of these devices, in document order. Properties count when they are of one of
    /// the categories. A rule whose devices an earlier one decides selects none.
    Array<Idle> idle(const Array<boost::shared_ptr<IDeviceImp>>& devices, const PropertyCategoryImp& categories) const;

private:
    struct Rules;
    Language m_language;
    std::unique_ptr<Rules> m_rules;
};

}  // namespace vrx
