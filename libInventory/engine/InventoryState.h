#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>

#include "libCommon/containers/Array.h"
#include "libCommon/containers/HashTable.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libInventory/InventoryDeviceAssociations.h"
#include "libInventory/engine/ElementContext.h"
#include "libInventory/engine/ExtraDeviceRules.h"
#include "libInventory/engine/findings/ErrorElementList.h"
#include "libInventory/engine/findings/FiledFindings.h"
#include "libInventory/engine/findings/RunRecord.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/properties/ValueMoment.h"

namespace vrx {

class CandidateList;
class KeptLinks;

/// The error slots and what each is for.
namespace slot {
inline constexpr unsigned SCRIPT = 0;    ///< always shown: script-level tips, an invalid device type
inline constexpr unsigned MATCHING = 1;  ///< what matching records in the first pass
inline constexpr unsigned BEST = 2;      ///< the best iteration so far
inline constexpr unsigned CURRENT = 3;   ///< the iteration under evaluation
inline constexpr unsigned COUNT = 4;
}  // namespace slot

/// Everything that an `Inventory` object holds. The components of the engine (passes, matcher, filing, gathering) are
/// made for a call and work on it.
struct InventoryState {
    using FindingTable = HashTable<XmlElement*, FiledFindings>;
    using ExtraTable = HashTable<XmlElement*, Array<ExtraDevice>>;
    using DeviceSpec = Inventory::DeviceSpec;

    /// Borrowed; when set, satisfied parts are entered under the guids of their devices.
    Inventory::DeviceToPartsTable* m_deviceToPartsTable = nullptr;

    /// [0] is the base set, of elements that lie in no alternative; the first pass appends one for each alternative.
    Array<Inventory::InventoryDeviceAssociations> m_associationSets;

    /// The graph of the combination under evaluation.
    Inventory::InventoryDeviceAssociations m_associations;

    /// Whether the working graph is the base set, taken out of its place for the run.
    bool m_hasBaseSetInUse = false;

    /// The path last given to `loadInventoryScriptFile`.
    String m_scriptFileName;

    /// Borrowed, in the order of registration.
    Array<InventoryTestObserver*> m_observers{std::size_t{8}};

    /// Borrowed: the store that is checked.
    StateManager* m_stateManager = nullptr;

    /// A store that goes with the object; empty unless somebody gives it one.
    std::unique_ptr<StateManager> m_ownedStateManager;

    /// The loaded script; findings are written into it.
    XmlDocument m_script;

    /// The valid `fail-on-extra` elements, in document order.
    Array<XmlElement*> m_failOnExtraElements{std::size_t{8}};

    Array<DeviceSpec> m_unsatisfiedDevices;
    Array<DeviceSpec> m_extraDevices;

    /// Per error slot: element -> its findings, which become tips in the script.
    Array<FindingTable> m_tipTables;

    /// Per error slot: element -> extra devices found against it.
    Array<ExtraTable> m_extraTables;

    /// Per error slot: the elements that are to receive an error of their own.
    Array<ErrorElementList> m_errorElementLists;

    bool m_checkNames = true;
    bool m_checkHwLocators = true;
    bool m_checkOsLocators = true;
    bool m_enableUnsatisfiedDeviceTips = true;

    /// Only the single-device check turns it on: matched properties get tips too.
    bool m_tipMatchedProperties = false;

    Inventory::Assignment m_assignment = Inventory::Assignment::Greedy;

    /// Whether the combinations of the present run are assigned exactly now, and whether they may be later.
    bool m_assignsExactly = false;
    bool m_mayAssignExactly = false;

    /// Product of the satisfiable alternatives of all `or` elements.
    std::uint32_t m_totalCombinations = 1;

    /// Borrowed: answers that runs on scripts of the same elements share; null for none.
    MatchCache* m_matchCache = nullptr;

    /// Memory of the contexts that hang on the script's elements.
    std::deque<ElementContext> m_contexts;

    /// What the `fail-on-extra` rules say of devices, for a run: it does not depend on the combination.
    std::unique_ptr<ExtraDeviceRules> m_extraDeviceRules;

    /// The devices that are being tried; null while none are.
    CandidateList* m_candidates = nullptr;

    /// How often observers were told something, after which the store may be another.
    std::size_t m_tellings = 0;

    Inventory::Search m_search = Inventory::Search::OneByOne;

    /// How many may work on a run at once.
    unsigned m_threads = 1;

    /// Asked before each combination; empty for nobody.
    std::function<bool(const RunProgress&)> m_progress;

    RunRecord m_record;

    /// The links of the record, made when somebody asks for them.
    std::unique_ptr<KeptLinks> m_keptLinks;

    /// The end of the last run, when findings of it quote values that have not been copied; null otherwise.
    std::unique_ptr<const ValueMoment> m_valuesOfRun;

    InventoryState();
    ~InventoryState();

    /// Puts the base set back in its place, as it was before the run took it, when a run has.
    void returnBaseSet();

    /// The links of the nearest alternative around the element, or the base set.
    const Inventory::InventoryDeviceAssociations& setOf(const XmlElement& element) const;

    /// Forgets the script and all that was found out about it.
    void reset();

    /// A new context for the element, replacing the pointer to the one that it has.
    ElementContext& makeContext(XmlElement* element);

    /// The element's context, made when it has none. Requires: element is not null.
    ElementContext& contextOf(XmlElement* element);

    /// Whether somebody may ask after the run what it found. Runs with a cache are asked for their verdict and for
    /// their extra devices only; with as many parts as devices may satisfy, most of which fail, the rest is much.
    bool keepsFindings() const noexcept { return m_matchCache == nullptr; }

    /// The element's context; null when it has none.
    static ElementContext* existingContext(const XmlElement* element) {
        return static_cast<ElementContext*>(element->GetUserData());
    }

    /// Takes the context off the element. Its memory goes when the script does.
    static void dropContext(XmlElement* element) { element->SetUserData(nullptr); }

    /// The root of a script that parsed; null otherwise.
    XmlElement* root() { return m_script.Error() ? nullptr : m_script.RootElement(); }
};

}  // namespace vrx
