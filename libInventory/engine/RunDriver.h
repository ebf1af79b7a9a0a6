#pragma once

#include <cstdint>
#include <optional>

#include "libCommon/Forward.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/search/CombinationSearch.h"
#include "libInventory/engine/search/model/SearchModel.h"

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
    std::uint64_t combinations() const noexcept;
    bool goThrough(XmlElement* root, bool mayGoOn);
    bool mayDeduce() const;
    using Wanted = CombinationSearch::Wanted;

    /// What a search has found.
    struct Deduction {
        SearchModel model;
        CombinationSearch::Answer answer;
        std::uint64_t tried;
    };

    std::optional<bool> deduce(XmlElement* root);
    std::optional<bool> deduceGreedily(XmlElement* root);
    std::optional<Deduction> findOut(bool isExact, Wanted wanted);
    bool tryDeduced(XmlElement* root, const Deduction& deduction);
    bool tryBest(XmlElement* root, const SearchModel& model, const CombinationSearch::Answer& answer);
    bool tryShown(XmlElement* root, const SearchModel& model, const Rank& rank);
    bool asksToGoOn() const;
    bool asksToGoOn(std::uint64_t combination) const;
    bool tryNext(XmlElement* root, bool step);
    void takeBaseSet();
    void keepBest();
    bool keepsBetter();
    void keepChoices();
    void keepLinks();
    void tellFailure(XmlElement* root);
    void failUnexpectedly(XmlElement* root, const String& text);

    InventoryState& m_state;
    std::uint64_t m_iteration = 0;              ///< the present one, from 1
    bool m_isRepeated = false;                  ///< the script was run before
    bool m_hasBaseSet = false;                  ///< the working graph can go back to it
    std::optional<Deduction> m_deducedExactly;  ///< before it is tried
    bool m_isDeducing = false;                  ///< a search takes the place of the loop
    bool m_anySatisfied = false;
    unsigned m_slot;                ///< where the present iteration files its errors
    Inventory::ErrorSpec m_errors;  ///< the measure of the present iteration
    Inventory::ErrorSpec m_best;    ///< that of the best so far
    bool m_bestIsPresent = false;
};

}  // namespace vrx
