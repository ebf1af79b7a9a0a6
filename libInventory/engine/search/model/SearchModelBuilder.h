#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "libCommon/Forward.h"
#include "libInventory/InventoryDeviceAssociations.h"
#include "libInventory/engine/findings/RunRecord.h"
#include "libInventory/engine/search/DisjointSets.h"
#include "libInventory/engine/search/model/SearchModel.h"
#include "libSystemState/Forward.h"

namespace vrx {

struct InventoryState;

/// Makes the model of a run whose first combination has been tried and failed.
class SearchModelBuilder {
public:
    /// `links` are those of the first combination. Requires: the working graph is the base set.
    SearchModelBuilder(InventoryState& state, const RunRecord::Links& links, bool isExact);

    /// None where the search does not know that it would find what the loop finds.
    std::optional<SearchModel> build();

private:
    static constexpr std::uint32_t NOBODY = 0xFFFFFFFF;

    /// Where an element of the script stands.
    struct Place {
        bool isUnderNot = false;
        bool isInPart = false;
        bool isStepped = true;            ///< a carry reaches what is in it
        std::uint64_t parentDepth = 0;    ///< at how many elements an error of the parent counts; 0 in a `not`
        std::uint64_t parentIndex = 0;    ///< its position for the error measure
        std::uint32_t digit = NOBODY;     ///< the alternative that it lies in: of that digit
        std::uint32_t value = 0;          ///< and that value
        std::uint32_t outerNot = NOBODY;  ///< the outermost `not` outside of alternatives that it lies in
    };
    struct Element {
        const XmlElement* element;
        std::uint32_t list;  ///< of its devices
        std::uint32_t share;
        std::uint32_t digit;
        std::uint32_t value;
        std::uint32_t number;  ///< within its component
    };
    using Members = std::map<std::size_t, std::size_t>;

    Rank combinations() const;
    bool isCountable() const;
    void addElements(const Inventory::InventoryDeviceAssociations& set, std::uint32_t digit, std::uint32_t value);
    std::uint32_t shareOf(const void* shared, std::uint32_t list, bool isInAlternative);
    bool findExtras();

    // ---- SearchModelBuilderScript.cpp ----

    std::uint32_t compile(XmlElement* element, const Place& place);
    std::uint32_t compileGroup(XmlElement* element, SearchNode node, const Place& inner);
    std::uint32_t compileDevice(XmlElement* element, SearchNode node, const Place& place);
    std::uint32_t compileOr(XmlElement* element, SearchNode node, const Place& place, const Place& inner);
    std::uint32_t compileHopeless(XmlElement* element, SearchNode node, const Place& place);
    std::uint32_t compileAlternative(XmlElement* child, const Place& inner, std::uint32_t digit, std::uint32_t value);
    std::uint32_t addDigit(XmlElement* element, const Place& place, std::vector<std::uint32_t> positions,
                           std::uint32_t start);
    std::uint32_t addNode(SearchNode node);

    // ---- SearchModelBuilderJoins.cpp ----

    std::size_t setOfDigit(std::uint32_t digit) const { return m_devices.size() + digit; }
    void joinComponents();
    bool foldConstants(std::uint32_t at);
    Members membersOf(std::uint32_t at) const;
    void addMembers(std::uint32_t at, Members& members) const;
    void joinFrames();
    bool joinWithin(std::uint32_t at, const Members& all);
    void placeAll();
    void place(std::uint32_t at, std::size_t frame);

    // ---- SearchModelBuilderComponents.cpp ----

    /// What goes into one component.
    struct Share {
        std::vector<std::uint32_t> devices;
        std::vector<std::uint32_t> elements;
        std::vector<std::uint32_t> digits;
    };
    class ComponentMaker;
    bool makeComponents();
    std::vector<Share> shareOut();

    InventoryState& m_state;
    SearchModel m_model;
    bool m_isUnknown = false;  ///< there is something that the search does not know

    std::vector<Element> m_elements;
    boost::unordered_flat_map<const XmlElement*, std::uint32_t> m_elementOf;
    std::vector<std::vector<std::uint32_t>> m_lists;
    std::vector<const IDeviceImp*> m_devices;
    boost::unordered_flat_map<const IDeviceImp*, std::uint32_t> m_deviceOf;
    boost::unordered_flat_map<const void*, std::uint32_t> m_shares;  ///< of elements in alternatives
    std::vector<std::uint32_t> m_latestLists;                        ///< by device: the last list that it was seen in
    std::vector<bool> m_isExtra;                               ///< by device: it is extra unless an element holds it
    boost::unordered_flat_set<const XmlElement*> m_satisfied;  ///< in the first combination
    boost::unordered_flat_set<const IDeviceImp*> m_held;       ///< the same
    std::vector<std::uint32_t> m_outerNots;                    ///< by digit
    std::uint32_t m_root = 0;
    std::uint32_t m_nots = 0;

    DisjointSets m_sets;                               ///< of devices, and behind them of digits
    boost::unordered_flat_set<std::size_t> m_varying;  ///< those with digits, before frames joined some
    std::vector<bool> m_fails;                         ///< by node outside of alternatives: it fails in all of them
    boost::unordered_flat_map<std::size_t, std::size_t> m_componentOf;  ///< by set
    std::vector<std::vector<std::uint32_t>> m_tops;                     ///< by component
    std::vector<std::size_t> m_frameOf;                                 ///< by component
};

}  // namespace vrx
