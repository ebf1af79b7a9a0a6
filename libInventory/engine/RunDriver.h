#pragma once

#include <cstdint>

#include "libCommon/Forward.h"
#include "libInventory/Inventory.h"

namespace vrx {

class RunStart;
struct InventoryState;

/// One run of the loaded script.
class RunDriver {
public:
    explicit RunDriver(InventoryState& state) noexcept;

    /// See Inventory::run.
    bool run(bool* inventorySatisfied);

private:
    void begin();
    bool tryCombinations(XmlElement* root);
    bool tryAll(XmlElement* root);
    bool tryAllExactly(XmlElement* root, const RunStart& start);
    bool asksToGoOn() const;
    bool tryNext(XmlElement* root, Inventory::ErrorSpec& errors);
    void takeBaseSet();
    void keepBest(const Inventory::ErrorSpec& errors);
    bool keepsBetter(const Inventory::ErrorSpec& errors);
    void keepChoices();
    void keepLinks();
    void tellFailure(XmlElement* root);
    void failUnexpectedly(XmlElement* root, const String& text);

    InventoryState& m_state;
    std::uint32_t m_iteration = 0;  ///< the present one, from 1
    bool m_isRepeated = false;      ///< the script was run before
    bool m_hasBaseSet = false;      ///< the working graph can go back to it
    bool m_anySatisfied = false;
    unsigned m_slot;              ///< where the present iteration files its errors
    Inventory::ErrorSpec m_best;  ///< the measure of the best iteration so far
    bool m_bestIsPresent = false;
};

}  // namespace vrx
