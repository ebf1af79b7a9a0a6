/// Random scripts on random machines of which a part could not be read: whatever the machine really holds, a check that
/// passes must pass there, and one that fails must fail there.

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

#include "libLint/Lint.h"
#include "libReport/CheckRun.h"
#include "tests/libInventory/support/RandomWorld.h"

namespace vrx::test::plain {
namespace {

/// What a reader did not see: devices of a type, or properties of a key.
struct Blindness {
    std::string type;
    std::string key = {};

    bool covers(const Device& device) const {
        return CapabilityImp(text(type)).intersect(CapabilityImp(text(device.type)));
    }

    UnreadSource source() const {
        return {u"/dev/blind", CapabilityImp(text(type)), u"needs root",
                key.empty() ? Array<String>() : Array<String>{text(key)}};
    }
};

bool isDisk(const Device& device) { return device.type != "Fan"; }

std::string inWords(const Machine& machine) {
    std::string words;
    for (const Device& device : machine) {
        words += device.type + " " + device.name + " at " + guidOf(device);
        for (const auto& [key, values] : device.properties) {
            words += " " + key + "=" + joined(values);
        }
        words += "\n";
    }
    return words;
}

/// A place holds one disk and one fan.
bool isFree(const Machine& machine, const Device& wanted) {
    return std::none_of(machine.begin(), machine.end(), [&](const Device& other) {
        return other.hwLocator == wanted.hwLocator && isDisk(other) == isDisk(wanted);
    });
}

Verdict check(const Element& script, const Machine& machine, const std::optional<UnreadSource>& unread = {}) {
    StateManager store;
    for (const Device& device : machine) {
        addDevice(store, device.type, device.name, device.hwLocator, device.osLocator, device.properties);
    }
    if (unread) {
        store.addUnread(*unread);
    }
    CheckRun run(store);
    run.inventory().setAssignment(Inventory::Assignment::Exact);
    run.inventory().loadInventoryScript(text(script.toXml()));
    const CheckReport report = run.run();
    if (report.verdict == Verdict::Failed) {
        EXPECT_TRUE(std::any_of(report.faults.begin(), report.faults.end(),
                                [](const Fault& fault) { return fault.kind != FaultKind::Undetermined; }))
            << "fails, and each fault says that nobody can tell\n"
            << inWords(machine) << script.toXml();
    }
    return report.verdict;
}

bool isRefused(const Element& script) {
    Lint lint(Lint::Extent::Mistakes);
    lint.runText(text(script.toXml()));
    return !lint.findings().list().empty();
}

class BlindCheck {
public:
    BlindCheck(unsigned seed, Blindness blindness) : m_random(seed + 1), m_blindness(std::move(blindness)) {}

    /// The machine as a reader sees it, and one that it may be.
    void record(const Machine& whole) {
        for (Device device : whole) {
            if (!isFree(m_real, device)) {
                continue;
            }
            m_real.push_back(device);
            const bool isHidden = m_blindness.covers(device) && m_random() % 3 != 0;
            if (isHidden && m_blindness.key.empty()) {
                continue;
            }
            if (isHidden) {
                std::erase_if(device.properties, [&](const auto& one) { return one.first == m_blindness.key; });
            }
            m_seen.push_back(std::move(device));
        }
    }

    Verdict verdict(const Element& script) const { return check(script, m_seen, m_blindness.source()); }

    const Machine& seen() const { return m_seen; }
    const Machine& real() const { return m_real; }

    /// Other machines that look the same.
    Machine another(unsigned seed) const {
        return m_blindness.key.empty() ? withOthers(RandomWorld(seed)) : withValues(std::minstd_rand(seed + 1));
    }

private:
    Machine withOthers(RandomWorld other) const {
        other.addDevices(2);
        Machine machine = m_seen;
        for (const Device& device : other.machine()) {
            if (m_blindness.covers(device) && isFree(machine, device)) {
                machine.push_back(device);
            }
        }
        return machine;
    }

    Machine withValues(std::minstd_rand random) const {
        const char* const values[] = {"1", "2", "3", "xy", "xz"};
        Machine machine = m_seen;
        for (Device& device : machine) {
            const bool isKnown = std::any_of(device.properties.begin(), device.properties.end(),
                                             [&](const auto& one) { return one.first == m_blindness.key; });
            if (!isKnown && m_blindness.covers(device)) {
                device.properties.push_back({m_blindness.key, {values[random() % 5]}});
            }
        }
        return machine;
    }

    std::minstd_rand m_random;
    Blindness m_blindness;
    Machine m_seen;
    Machine m_real;
};

unsigned worlds() {
    const char* const asked = std::getenv("VRX_RANDOM_WORLDS");
    return asked != nullptr ? static_cast<unsigned>(std::atoi(asked)) : 1000;
}

TEST(CertaintyRandomTest, whatIsSureHoldsOnEveryMachineThatLooksTheSame) {
    const Blindness kinds[] = {{"Storage"}, {"SolidStateDrive"}, {"Fan"}, {"Storage", "Size"}, {"Storage", "Ports"}};
    std::map<Verdict, unsigned> verdicts;
    for (unsigned seed = 0; seed < worlds(); ++seed) {
        RandomWorld world(seed);
        world.addDevices(2);
        const Element script = seed % 2 == 0 ? world.script() : world.scriptOfAlternatives();
        if (isRefused(script)) {
            continue;
        }
        SCOPED_TRACE("seed " + std::to_string(seed));
        BlindCheck blind(seed, kinds[seed % 5]);
        blind.record(world.machine());
        const Verdict verdict = blind.verdict(script);
        ++verdicts[verdict];
        if (verdict != Verdict::Passed && verdict != Verdict::Failed) {
            continue;
        }
        for (unsigned i = 0; i < 6; ++i) {
            const Machine machine = i == 0 ? blind.real() : blind.another(seed * 6 + i);
            ASSERT_EQ(nameOf(check(script, machine)), nameOf(verdict))
                << "seed " << seed << ", machine " << i << ", seen:\n"
                << inWords(blind.seen()) << "there:\n"
                << inWords(machine) << script.toXml();
        }
    }
    EXPECT_GT(verdicts[Verdict::Passed], worlds() / 40);
    EXPECT_GT(verdicts[Verdict::Failed], worlds() / 10);
    EXPECT_GT(verdicts[Verdict::Undecided], worlds() / 40);
}

}  // namespace
}  // namespace vrx::test::plain
