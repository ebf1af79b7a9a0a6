#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "libCommon/Export.h"
#include "libCommon/Forward.h"
#include "libCommon/containers/Array.h"
#include "libCommon/containers/HashTable.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlDocument.h"
#include "libSystemState/Forward.h"
#include "libSystemState/results/TestResultImp.h"

namespace vrx {

class InventoryTestObserver;
class MatchCache;
struct ChosenAlternative;
struct Competition;
struct DeviceOutcome;
struct ExtraDevice;
struct Finding;
struct ImportReport;
struct InventoryState;
struct RunProgress;
struct RunSummary;

/// Decides whether a machine holds exactly the hardware that an inventory script describes.
///
/// A host makes an `Inventory`, points it at a `StateManager` (else the process-wide one is used), registers observers,
/// loads a script and calls `run`. What the run found is written into the script as `error` elements, and handed out as
/// data (Finding.h); `unsatisfiedDevices` and `extraDevices` name what is missing and what is beyond the script. The
/// static operations need no object.
///
///     StateManager machine;
///     Inventory::importStateFromXmlFile(u"machine.xml", machine);
///     Inventory inventory;
///     inventory.setStateManager(machine);
///     if (inventory.loadInventoryScriptFile(u"script.xml") && !inventory.run()) {
///         for (const Finding& finding : inventory.findings()) {
///             report(finding.element->Row() + 1, finding.texts);
///         }
///     }
///
/// An object is used from one thread at a time. A failing inventory is a result, never an exception; a broken contract
/// is an assertion (StructuredException, code 7).
class VRX_EXPORT Inventory {
public:
    /// One device by its texts. Two are equal when their locators are, whatever their names and types.
    struct VRX_EXPORT DeviceSpec {
        String name;
        String type;
        String hwLocator;
        String osLocator;

        DeviceSpec() = default;
        DeviceSpec(String deviceName, String deviceType, String deviceHwLocator, String deviceOsLocator);

        /// The identifier that `StateManager::deviceByGuid` resolves.
        String guid() const;
        bool operator==(const DeviceSpec& other) const { return guid() == other.guid(); }
    };

    /// One part of a parts list: a name standing for a group of devices.
    struct VRX_EXPORT PartSpec {
        String name;  ///< the identity of the part
        String id;
        String description;
        String xml;             ///< the whole `part` element as XML text
        String text;            ///< free text of the host; the engine puts the part element's location here
        Array<String> devices;  ///< guids of the devices that the part was associated with in a run

        PartSpec() = default;

        /// Contract: the fourth argument becomes `text` and the fifth `xml`, crossing the order of the members.
        PartSpec(String partName, String partId, String partDescription, String partText, String partXml);

        /// Parts are the same when their names are equal (with letter case).
        bool operator==(const PartSpec& other) const { return name == other.name; }
    };

    /// The error measure of a subtree, by which alternatives are compared.
    struct ErrorSpec {
        std::uint32_t numErrors = 0;
        std::uint32_t indexSum = 0;

        /// Fewer errors are better; among equals the larger index sum, because errors further along a sequence mean
        /// that more of it was met.
        bool isBetterThan(const ErrorSpec& other) const noexcept {
            return numErrors != other.numErrors ? numErrors < other.numErrors : indexSum > other.indexSum;
        }
    };

    /// Outcome of reading a parts list.
    enum ParsePartsResult {
        PartsParsed = 0,      ///< every part has a device description
        PartsBlank = 1,       ///< one or more parts have none; the others were read
        PartsEmptyInput = 2,  ///< the text was empty after trimming
        PartsXmlError = 3,    ///< the XML does not parse, or the file does not load
        PartsNoRoot = 4       ///< the document has no root element
    };

    /// How devices that several elements would take are dealt out.
    enum class Assignment : std::uint8_t {
        /// Each device that several elements want goes to the one with the fewest candidates. Fast, and as a rule all
        /// elements have one then; but an element may be left without although another choice had served all.
        Greedy,

        /// For each combination of alternatives greedily, and where that leaves an element without a device, or a
        /// device extra, by a choice that leaves as few elements without as any can; of these one that leaves as few
        /// devices extra as any can. A combination passes when there is any choice by which it does.
        Exact,

        /// All combinations greedily; when none has passed, all of them once more exactly. What passes greedily passes
        /// as it would have.
        Auto
    };

    using DeviceToPartsTable = HashTable<String, Array<PartSpec>, EqualFunc<String>, HashFunc<String>>;

    class InventoryDeviceAssociations;

    /// How a run goes through the combinations of alternatives.
    enum class Search {
        OneByOne,  ///< each is tried; their number is of 32 bits and may overflow
        Deduced    ///< those are tried that make a difference
    };

    /// A flag that hosts put in front of console error lines; the engine itself never uses it.
    static const char* const KSC_ERROR_FLAG;

    Inventory();
    ~Inventory();
    Inventory(const Inventory&) = delete;
    Inventory& operator=(const Inventory&) = delete;

    // ---- Loading (engine/InventoryScriptLoading.cpp) ----

    /// Parses a script held in memory, forgetting the last one. False, after telling every observer's `handleFileError`
    /// why, when the text does not parse or its root is not `inventory-check`.
    bool loadInventoryScript(const String& text);

    /// Reads a script file (UTF-8; invalid sequences become U+FFFD and are reported in one log line) and loads it.
    /// False, after telling the observers, when it cannot be read; the script loaded before then stays.
    bool loadInventoryScriptFile(const String& path);

    /// The same for what a host has read itself; `name` stands for the path.
    bool loadInventoryScriptBytes(std::string_view bytes, const String& name);

    /// The same for a script that needs neither decoding nor a word about it, as nearly all: it is parsed as it is
    /// read, which takes less time and memory. False, with nobody told and the last script still there, for any other,
    /// which one of the others loads then. So many threads may parse at once.
    bool loadPlainScriptFile(const String& path, unsigned threads = 1);

    /// Loads what another object has loaded, forgetting the last one: the same as loading the text again, for a
    /// fraction of its cost. Of one that others copy each thread may be given the script at the same time, while nobody
    /// loads or runs there. Requires: the other holds a script, and has not run it.
    void loadInventoryScript(const Inventory& other);

    /// "inventory-check".
    static String inventoryCheckElementName();

    // ---- Set-up (engine/InventoryLifecycle.cpp) ----

    /// The store to check; borrowed.
    void setStateManager(StateManager& manager);

    /// Whether an unsatisfied `device` element gets the "Unsatisfied device of type: " error (initially it does).
    void setEnableUnsatisfiedDeviceTips(bool enable);

    /// Observers are borrowed, must outlive the object, and are called in the order of registration, once for each time
    /// that they were registered.
    void registerInventoryObserver(InventoryTestObserver& observer);

    /// A table (borrowed, null for none) into which runs enter, under each device's guid, the satisfied parts that the
    /// device belongs to.
    void setDeviceToPartsTable(DeviceToPartsTable* table);

    /// Initially Greedy. RunSummary says whether the choice was another than the greedy one. Applies to the first run
    /// of a script that was loaded; a script that is run again without being loaded is assigned greedily.
    void setAssignment(Assignment assignment);

    /// How runs go through the combinations of alternatives; initially one by one. A run that deduces finds what trying
    /// all combinations in their order would find, however many there are: the same answer, findings, lists and events.
    /// Alternatives that have nothing to do with one another are decided apart, and what was found out once of some is
    /// not tried again for every choice of the others.
    ///
    /// It tries all of them where that is not known to be so: while the log is told of runs (priority Info), with a
    /// device-to-parts table, when the script is run again without being loaded, where an `or` that cannot be met lies
    /// in an alternative that is tried, and where devices are matched in numbers that a search has no memory for. Then,
    /// too, combinations are counted in 64 bits. However devices are assigned makes no difference to it.
    void setSearch(Search search);

    /// How many threads may read devices and compare them at once. One unless this says otherwise. The outcome is the
    /// same with any number; patterns that take too much work may take it twice.
    void setThreads(unsigned threads);

    // ---- Running (engine/RunDriver.cpp) ----

    /// Checks the loaded script. True when some combination of its alternatives is met and no `fail-on-extra` rule is
    /// broken. `inventorySatisfied`, when given, receives whether the script was met leaving extra devices aside; it is
    /// not written when no script is loaded or the run ended in an unexpected exception. On failure the script carries
    /// the findings of the best combination and observers receive "InventoryTestFailed". A script is loaded again
    /// before it is run again.
    bool run(bool* inventorySatisfied = nullptr);

    /// Asks before each combination of alternatives whether to go on, and tells how far the run is; an empty function
    /// for none. On false the run stops before that combination and fails with what it has found so far; one
    /// combination is always tried.
    void setProgress(std::function<bool(const RunProgress&)> progress);

    /// Devices that the script asked for in the last combination tried and the machine lacks.
    const Array<DeviceSpec>& unsatisfiedDevices() const;

    /// Devices beyond the script, of the best combination; left as it was by a run that passed.
    const Array<DeviceSpec>& extraDevices() const;

    /// The script with the findings of the last run.
    const XmlDocument& script() const;

    // ---- What the last run found, as data: Finding.h (engine/InventoryFindings.cpp) ----
    //
    // All of it speaks of the combination that passed or, when none did, of the best that failed, and stays until the
    // next run or load. Before a run there is nothing.

    /// What the run wrote into the script, in document order; the texts of an element's findings, one after the other,
    /// are those of its new `error` elements. A run that passed wrote nothing.
    Array<Finding> findings() const;

    /// The mistakes in the script that observers were told of by events, in that order.
    Array<Finding> notices() const;

    /// The `device` elements outside of every `not` that got no device, in document order.
    Array<const XmlElement*> missingElements() const;

    /// How a `device` element of the script fared. Requires: element is one, and is in no `device` element.
    DeviceOutcome outcomeOf(const XmlElement& element) const;

    /// The device that a `device` element has in the combination that the findings speak of; null when it has none.
    /// Costs no more than a look into a table, whatever was tried.
    const IDeviceImp* deviceOf(const XmlElement& element) const;

    /// For a `device` element that has no device although some would do: which elements compete for too few devices,
    /// itself among them. Empty for others, and where another assignment would serve it (Assignment::Greedy may leave
    /// such).
    Competition competitionFor(const XmlElement& element) const;

    /// The `device` element that holds the device in the combination that the findings speak of; null when none does.
    const XmlElement* holderOf(const IDeviceImp& device) const;

    /// For each `or` element that took part the alternative that was kept, in document order. The `or` elements inside
    /// of `device` elements are none of these: they are met by each device in its own way.
    Array<ChosenAlternative> chosenAlternatives() const;

    /// The devices of `extraDevices`, with the rule that made each extra; empty when the run passed.
    Array<ExtraDevice> extraDevicesWithRules() const;

    /// How much was tried, and whether the result is certain.
    const RunSummary& summary() const;

    // ---- One device, one text (engine/InventoryDeviceCheck.cpp, engine/InventoryStringMatching.cpp) ----

    /// Whether one device satisfies `content`, the inner XML of a `device` element. The device is copied, nothing else
    /// is touched. `observer` (may be null) hears the private run; with `report` it also receives an event named
    /// "InventoryTestFailed" with the annotated script, whatever the result. False when the content does not load.
    static bool checkDevice(const IDeviceImp& device, const String& content, InventoryTestObserver* observer,
                            bool report);

    /// The same check made by `engine`, a new object, which keeps the script and what was found.
    static bool checkDevice(const IDeviceImp& device, const String& content, InventoryTestObserver* observer,
                            bool report, Inventory& engine);

    /// Whether `checkDevice` can tell anything about a device of that type. The type's text stands in the script as it
    /// is, so that one with a quotation mark, an ampersand or an angle bracket makes a script that does not load or
    /// that asks for another type; the result is then false, whatever the device holds.
    static bool canCheckDevice(const IDeviceImp& device);

    /// The engine's string comparison: the pattern matches (regular expression with ranges, with letter case), or,
    /// after one leading "^" and one trailing "$" are dropped from it, equals the value without letter case.
    static bool matchString(StringView pattern, StringView value);

    // ---- Scripts from machines (generation/) ----

    /// Writes an inventory script of the machine into `script`. Without `includeAllCategories` properties of the
    /// categories Volatile, Internal and Group are left out. `checkLocators` and `checkNames` become the root's flags.
    /// `filter` is borrowed; null loads "SystemInformationFilter.xml" from the working directory when it is there, and
    /// writes an explanatory header comment.
    void generateInventoryScript(String& script, bool includeAllCategories, bool checkLocators, bool checkNames,
                                 SysinfoFilter* filter);

    // ---- Parts lists (parts/) ----

    /// Reads a parts list. Appends to `parts`; writes `error` only on PartsBlank and PartsXmlError.
    static ParsePartsResult parsePartsList(const String& xml, Array<PartSpec>& parts, String& error);
    static ParsePartsResult parsePartsListFile(const String& path, Array<PartSpec>& parts, String& error);

    /// As parsePartsListFile, of what a host has read itself; `name` is what errors call it. The names of blank parts
    /// are appended to `blankParts`, when that is given.
    static ParsePartsResult parsePartsListBytes(std::string_view bytes, const String& name, Array<PartSpec>& parts,
                                                String& error, Array<String>* blankParts = nullptr);

    /// Whether the machine holds all devices that the script describes, whatever other devices it has. `extraDevices`,
    /// when given, receives the devices beyond the script (untouched when the script does not load). A null `state`
    /// means the process-wide store.
    static bool matchParts(const String& script, DeviceToPartsTable& deviceToParts, Array<DeviceSpec>* extraDevices,
                           StateManager* state);

    /// Finds which parts, and how many of each, the machine holds; true when a list of them satisfies it.
    static bool generatePartsList(const Array<PartSpec>& partsList, const String& baseScript,
                                  Array<PartSpec>& generatedParts, DeviceToPartsTable& deviceToParts,
                                  Array<Array<PartSpec>>& ambiguousGroups, Array<DeviceSpec>& extraDevices,
                                  StateManager* state);

    /// The same, and a `part-generation-report` element added under `document`.
    static TestResultImp generatePartsListDataAndXml(const Array<PartSpec>& partsList, const String& baseScript,
                                                     Array<PartSpec>& generatedParts, DeviceToPartsTable& deviceToParts,
                                                     Array<Array<PartSpec>>& ambiguousGroups,
                                                     Array<DeviceSpec>& extraDevices, XmlDocument& document,
                                                     StateManager* state);

    /// A new document that holds only the report.
    static XmlDocument generatePartsListXml(const Array<PartSpec>& partsList, const String& baseScript,
                                            StateManager* state);

    // ---- Recorded machines (recording/) ----

    /// Adds the devices of a SysInfo XML recording to `store`. False, after a log line that says why, when it does not
    /// parse or holds no device list; devices added before a failure stay.
    static bool importStateFromXmlString(const String& xml, StateManager& store);
    static bool importStateFromXmlFile(const String& path, StateManager& store);

    /// The same; `report`, which is replaced, says what was done, what was left out and why it failed. So many threads
    /// may read the file at once, to the same effect.
    static bool importStateFromXmlString(const String& xml, StateManager& store, ImportReport& report);
    static bool importStateFromXmlFile(const String& path, StateManager& store, ImportReport& report,
                                       unsigned threads = 1);

private:
    class PartsChecks;

    /// What runs of this object share with others about candidates; borrowed, null for none.
    void setMatchCache(MatchCache* cache);

    /// The same with that.
    static bool matchParts(const String& script, DeviceToPartsTable& deviceToParts, Array<DeviceSpec>* extraDevices,
                           StateManager* state, MatchCache* matchCache);

    /// The store that generation reads.
    StateManager& stateManager() const;

    std::unique_ptr<InventoryState> m_state;
};

}  // namespace vrx
