/// Parts lists of random machines: generation against its steps written out over single checks, which share nothing.

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>

#include "tests/libInventory/support/DebugLines.h"
#include "tests/libInventory/support/World.h"

namespace vrx::test {
namespace {

using PartSpec = Inventory::PartSpec;
using Parts = std::vector<PartSpec>;
using Table = Inventory::DeviceToPartsTable;

std::string textOf(const PartSpec& part) {
    std::string all = utf8(part.name) + "(";
    for (const String& guid : part.devices) {
        all += utf8(guid);
    }
    return all + ") ";
}

template <typename List>
std::string textOfAll(const List& parts) {
    std::string all;
    for (const PartSpec& part : parts) {
        all += textOf(part);
    }
    return all;
}

/// What generation gives, as one text.
struct Generated {
    bool succeeded = false;
    Table table;
    Array<Inventory::DeviceSpec> extra;
    std::string parts;
    std::string groups;

    std::string toText() const {
        std::string all = std::string(succeeded ? "yes " : "no ") + parts + "\ngroups: " + groups + "\nextra: ";
        for (const auto& spec : extra) {
            all += utf8(spec.hwLocator) + " ";
        }
        for (const auto& entry : table) {
            all += "\n" + utf8(entry.key) + ": " + textOfAll(entry.value);
        }
        return all;
    }
};

class PlainGeneration {
public:
    PlainGeneration(const Array<PartSpec>& parts, const String& base, StateManager& store)
        : m_parts(parts), m_base(base), m_store(store) {}

    Generated run() {
        for (const PartSpec& part : m_parts) {
            String copies = part.xml;
            while (check(copies, m_single, nullptr)) {
                copies.append(part.xml);
                m_full.push_back(part);
            }
        }
        if (!checkAll()) {
            m_result.table.clear();
            m_result.extra.clear();
            findAmbiguous();
            for (const PartSpec& dropped : m_discard) {
                const auto copy = std::find_if(m_full.begin(), m_full.end(),
                                               [&](const PartSpec& part) { return part.name == dropped.name; });
                if (copy != m_full.end()) {
                    m_full.erase(copy);
                }
            }
            m_groups.clear();
            if (!checkAll()) {
                findAmbiguous();
            }
        }
        Parts distinct;
        for (const auto& entry : m_result.table) {
            for (const PartSpec& part : entry.value) {
                if (m_result.succeeded && !contains(distinct, part)) {
                    distinct.push_back(part);
                }
            }
        }
        m_result.parts = textOfAll(distinct);
        for (const Parts& group : m_groups) {
            m_result.groups += "[" + textOfAll(group) + "]";
        }
        return std::move(m_result);
    }

private:
    bool check(const String& content, Table& table, Array<Inventory::DeviceSpec>* extra) {
        return Inventory::matchParts(concat(u"<inventory-check>", content, u"</inventory-check>"), table, extra,
                                     &m_store);
    }

    bool checkAll() {
        String content = m_base;
        for (const PartSpec& part : m_full) {
            content.append(part.xml);
        }
        m_result.succeeded = check(content, m_result.table, &m_result.extra);
        return m_result.succeeded;
    }

    static bool contains(const Parts& parts, const PartSpec& wanted) {
        return std::any_of(parts.begin(), parts.end(),
                           [&](const PartSpec& part) { return textOf(part) == textOf(wanted); });
    }

    template <typename List>
    static bool hasName(const List& parts, const String& name) {
        return std::any_of(parts.begin(), parts.end(), [&](const PartSpec& part) { return part.name == name; });
    }

    static std::vector<std::string> names(const Parts& parts) {
        std::vector<std::string> all;
        for (const PartSpec& part : parts) {
            all.push_back(utf8(part.name));
        }
        std::sort(all.begin(), all.end());
        return all;
    }

    void findAmbiguous() {
        for (const PartSpec& part : m_full) {
            Parts group;
            for (const auto& entry : m_single) {
                if (hasName(entry.value, part.name)) {
                    std::copy_if(entry.value.begin(), entry.value.end(), std::back_inserter(group),
                                 [&](const PartSpec& other) {
                                     return hasName(m_full, other.name) && !hasName(group, other.name);
                                 });
                }
            }
            if (group.size() < 2) {
                continue;
            }
            discardExplained(group);
            if (std::none_of(m_groups.begin(), m_groups.end(),
                             [&](const Parts& known) { return names(known) == names(group); })) {
                m_groups.push_back(group);
            }
        }
    }

    void discardExplained(const Parts& group) {
        std::size_t best = 0;
        for (std::size_t i = 1; i < group.size(); ++i) {
            best = group[i].devices.size() > group[best].devices.size() ? i : best;
        }
        const Array<String>& ofBest = group[best].devices;
        for (std::size_t i = 0; i < group.size(); ++i) {
            if (i != best && group[i].devices.size() == ofBest.size()) {
                return;
            }
        }
        for (std::size_t i = 0; i < group.size(); ++i) {
            const bool isExplained = std::all_of(
                group[i].devices.begin(), group[i].devices.end(),
                [&](const String& guid) { return std::find(ofBest.begin(), ofBest.end(), guid) != ofBest.end(); });
            if (i != best && isExplained && !contains(m_discard, group[i])) {
                m_discard.push_back(group[i]);
            }
        }
    }

    const Array<PartSpec>& m_parts;
    const String& m_base;
    StateManager& m_store;
    Table m_single{32};
    Parts m_full;
    Parts m_discard;
    std::vector<Parts> m_groups;
    Generated m_result;
};

class RandomParts {
public:
    explicit RandomParts(unsigned seed) : m_random(seed + 1) {
        for (unsigned i = 2 + below(5); i > 0; --i) {
            addDevice(store, oneOf({"Fan", "Fan", "Battery"}), oneOf({"red", "green"}), std::to_string(i), "",
                      {{"Rpm", {oneOf({"1", "2"})}}});
        }
        for (const char* const name : {"A", "B", "C", "D"}) {
            if (below(4) != 0) {
                parts.emplace(text(name), u"", u"", u"",
                              text("<part name='" + std::string(name) + "'>" + content() + "</part>"));
            }
        }
        base = text(below(3) == 0 ? "<fail-on-extra type='Fan'/>" : below(6) == 0 ? device() : "");
    }

    StateManager store;
    Array<PartSpec> parts;
    String base;

private:
    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }
    std::string oneOf(std::initializer_list<const char*> texts) {
        return texts.begin()[below(static_cast<unsigned>(texts.size()))];
    }
    std::string device() {
        const std::string inner = below(4) == 0 ? "<property key='Rpm' value='" + oneOf({"1", "2"}) + "'/>" : "";
        return "<device type='" + oneOf({"Fan", "Fan", "Battery"}) + "'" +
               (below(2) == 0 ? " name='" + oneOf({"red", "green"}) + "'" : "") + ">" + inner + "</device>";
    }
    std::string content() {
        std::string all = device();
        for (unsigned i = below(3); i > 0; --i) {
            all += below(6) == 0 ? "<not>" + device() + "</not>" : device();
        }
        return all;
    }

    std::minstd_rand m_random;
};

TEST(RandomPartsListsTest, giveWhatItsStepsGiveOneByOne) {
    int succeeded = 0;
    int withGroups = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        RandomParts world(seed);
        Generated generated;
        Array<PartSpec> parts;
        Array<Array<PartSpec>> groups;
        std::optional<DebugLines> lines;
        if (seed % 2 != 0) {
            lines.emplace();
        }
        generated.succeeded = Inventory::generatePartsList(world.parts, world.base, parts, generated.table, groups,
                                                           generated.extra, &world.store);
        lines.reset();
        generated.parts = textOfAll(parts);
        for (const Array<PartSpec>& group : groups) {
            generated.groups += "[" + textOfAll(group) + "]";
        }
        ASSERT_EQ(generated.toText(), PlainGeneration(world.parts, world.base, world.store).run().toText())
            << "seed " << seed;
        succeeded += generated.succeeded ? 1 : 0;
        withGroups += generated.groups.empty() ? 0 : 1;
    }
    EXPECT_GT(succeeded, 100);
    EXPECT_GT(withGroups, 100);
}

}  // namespace
}  // namespace vrx::test
