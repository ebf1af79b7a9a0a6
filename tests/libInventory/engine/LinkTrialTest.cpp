#include "libInventory/engine/search/links/LinkTrial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace vrx::test {
namespace {

using Devices = std::vector<std::uint32_t>;

class RandomLinks {
public:
    explicit RandomLinks(unsigned seed) : m_random(seed) {}

    std::uint32_t below(std::size_t end) { return static_cast<std::uint32_t>(m_random() % end); }

    std::vector<LinkTrial::Element> elements(std::size_t count, std::size_t devices) {
        Devices all(devices);
        std::iota(all.begin(), all.end(), 0);
        std::vector<LinkTrial::Element> elements(count);
        for (LinkTrial::Element& element : elements) {
            std::ranges::shuffle(all, m_random);
            element.devices.assign(all.begin(), all.begin() + 1 + below(std::min<std::size_t>(devices, 6)));
        }
        return elements;
    }

    BitRow some(std::size_t count) {
        BitRow chosen(count);
        for (std::size_t element = 0; element < count; ++element) {
            if (below(3) != 0) {
                chosen.set(element);
            }
        }
        return chosen;
    }

private:
    std::minstd_rand m_random;
};

Devices numbersIn(const BitRow& row) {
    Devices numbers;
    row.forEach([&](std::size_t number) { numbers.push_back(static_cast<std::uint32_t>(number)); });
    return numbers;
}

struct Outcome {
    Devices missing;
    Devices held;
    bool operator==(const Outcome&) const = default;
};

Outcome outcomeOf(LinkTrial& trial, const BitRow& chosen, bool isExact) {
    BitRow wanted(trial.deviceCount());
    wanted.set(0);
    trial.reduce(chosen);
    if (isExact && trial.couldDoBetter(chosen, wanted)) {
        trial.assignExactly(chosen, wanted);
    }
    BitRow held(trial.deviceCount());
    trial.getHeld(chosen, held);
    return {numbersIn(trial.missing()), numbersIn(held)};
}

/// With few devices sets of them are single words; devices that nobody asks for make them many, and change nothing.
TEST(LinkTrialTest, fewDevicesAreReducedAsManyAre) {
    std::size_t missing = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        RandomLinks random(seed);
        const std::size_t devices = 1 + random.below(64);
        const auto elements = random.elements(1 + random.below(128), devices);
        LinkTrial few(elements, devices);
        LinkTrial many(elements, devices + 64);
        for (int trial = 0; trial < 5; ++trial) {
            const BitRow chosen = random.some(elements.size());
            const Outcome outcome = outcomeOf(few, chosen, trial % 2 != 0);
            ASSERT_EQ(outcome, outcomeOf(many, chosen, trial % 2 != 0)) << "seed " << seed << " trial " << trial;
            missing += outcome.missing.size();
        }
    }
    EXPECT_GT(missing, 1000U);
}

}  // namespace
}  // namespace vrx::test
