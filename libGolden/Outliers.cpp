/// A machine deviates where more than half of all agree and it does not go along. Sisters that were ordered with other
/// disks all deviate somewhere, so what counts is how much more one deviates than the one in the middle.

#include "libGolden/Outliers.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <unordered_set>

#include "libCommon/text/PrintableText.h"
#include "libGolden/DecisionText.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using Reason = GoldenDecision::Reason;

constexpr std::size_t MOST_VALUES = 2;  // that are told of one device

/// Whether it may tell a good machine from a bad one.
bool isTelling(const GoldenDecision& decision) {
    switch (decision.reason) {
        case Reason::Identity:
        case Reason::Unique:
        case Reason::Unread:
        case Reason::ChangesByItself:
        case Reason::NotNeeded:
        case Reason::NotWanted: return false;
        default: return decision.variants.size() > 1 || decision.reason == Reason::NotEverywhere;
    }
}

const ValueVariant* majorityOf(const GoldenDecision& decision, std::size_t machines) {
    const auto at = std::ranges::find_if(
        decision.variants, [machines](const ValueVariant& variant) { return variant.machines.size() * 2 > machines; });
    return at == decision.variants.end() ? nullptr : &*at;
}

class Deviations {
public:
    explicit Deviations(const GoldenDraft& draft) : m_draft(draft), m_outliers(draft.machines.size()) {
        for (std::size_t machine = 0; machine < m_outliers.size(); ++machine) {
            m_outliers[machine].machine = machine;
        }
        for (std::size_t device = 0; device < draft.devices.size(); ++device) {
            lookAt(device);
        }
    }

    std::vector<Outlier> take() { return std::move(m_outliers); }

private:
    void lookAt(std::size_t number) {
        const GoldenDevice& device = m_draft.devices[number];
        const std::vector<std::size_t> holders = device.holders();
        if (device.presence == GoldenDevice::Presence::NotEverywhere) {
            const std::vector<std::size_t> others = device.others();
            if (holders.size() != others.size()) {
                add(holders.size() > others.size() ? others : holders, {number, nullptr});
            }
        }
        for (const GoldenDecision& decision : device.decisions) {
            const ValueVariant* const most =
                isTelling(decision) ? majorityOf(decision, m_draft.machines.size()) : nullptr;
            if (most != nullptr) {
                std::vector<std::size_t> few;
                std::ranges::set_difference(holders, most->machines, std::back_inserter(few));
                add(few, {number, &decision});
            }
        }
    }

    void add(const std::vector<std::size_t>& machines, const Deviation& deviation) {
        for (const std::size_t machine : machines) {
            m_outliers[machine].deviations.push_back(deviation);
        }
    }

    const GoldenDraft& m_draft;
    std::vector<Outlier> m_outliers;
};

std::size_t deviceCount(const Outlier& outlier) {
    std::unordered_set<std::size_t> devices;
    for (const Deviation& deviation : outlier.deviations) {
        devices.insert(deviation.device);
    }
    return devices.size();
}

std::string textOf(const ValueVariant& variant) {
    String text;
    for (const String& entry : variant.texts) {
        text.append(text.isEmpty() ? u"" : u", ").append(entry);
    }
    return printable(text);
}

std::string valueLine(const GoldenDraft& draft, std::size_t machine, const GoldenDecision& decision) {
    const auto own = std::ranges::find_if(decision.variants, [machine](const ValueVariant& variant) {
        return std::ranges::count(variant.machines, machine) > 0;
    });
    const ValueVariant* const most = majorityOf(decision, draft.machines.size());
    return fmt::format("{} is {}, most have {}", subjectText(decision),
                       own == decision.variants.end() ? "not there" : textOf(*own),
                       most == nullptr ? "another" : textOf(*most));
}

/// Requires: all are of one device.
std::string deviceLine(const GoldenDraft& draft, std::size_t machine, std::span<const Deviation> deviations) {
    const GoldenDevice& device = draft.devices[deviations.front().device];
    if (deviations.front().decision == nullptr) {
        return deviceText(device) + (device.devices[machine] != nullptr ? " is more than most have" : " is missing");
    }
    std::string line = deviceText(device);
    for (std::size_t i = 0; i < std::min(deviations.size(), MOST_VALUES); ++i) {
        line += (i == 0 ? ": " : "; ") + valueLine(draft, machine, *deviations[i].decision);
    }
    return deviations.size() > MOST_VALUES ? fmt::format("{}; and {} more", line, deviations.size() - MOST_VALUES)
                                           : line;
}

}  // namespace

std::vector<Outlier> outliersOf(const GoldenDraft& draft) {
    if (draft.machines.size() < FEWEST_FOR_OUTLIERS) {
        return {};
    }
    std::vector<Outlier> outliers = Deviations(draft).take();
    std::vector<std::size_t> counts;
    std::ranges::transform(outliers, std::back_inserter(counts), deviceCount);
    const auto middle = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() / 2);
    std::ranges::nth_element(counts, middle);
    std::erase_if(outliers, [most = *middle * 2](const Outlier& outlier) { return deviceCount(outlier) <= most; });
    return outliers;
}

std::vector<std::string> deviationTexts(const GoldenDraft& draft, const Outlier& outlier) {
    std::vector<std::string> lines;
    for (auto at = outlier.deviations.begin(); at != outlier.deviations.end();) {
        const auto next = std::find_if(at, outlier.deviations.end(),
                                       [at](const Deviation& other) { return other.device != at->device; });
        lines.push_back(deviceLine(draft, outlier.machine, {at, next}));
        at = next;
    }
    return lines;
}

}  // namespace vrx
