#include "libReport/faults/FoldedText.h"

#include <fmt/format.h>

#include <map>
#include <utility>

#include "libCommon/text/PrintableText.h"
#include "libDiagnosis/TypeOrder.h"
#include "libReport/faults/FaultText.h"
#include "libReport/text/DeviceSummary.h"

namespace vrx {

namespace {

bool endsInConsonantAndY(const std::string& word) {
    return word.size() > 1 && word.back() == 'y' &&
           std::string_view("aeiou").find(word[word.size() - 2]) == std::string_view::npos;
}

}  // namespace

std::string foldedTypes(const Fault& fault) {
    std::map<String, std::size_t> counts;
    for (const FoldedFault& folded : fault.withIt) {
        ++counts[folded.spec.type];
    }
    std::map<std::pair<unsigned, String>, std::size_t> ordered;
    for (const auto& [type, count] : counts) {
        ordered.emplace(std::pair(typeRank(CapabilityImp(type)), type), count);
    }
    std::string text;
    for (const auto& [type, count] : ordered) {
        const std::string name = printable(type.second);
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, count == 1 ? name : pluralOf(name));
    }
    return text;
}

std::string foldedText(const Fault& fault, const FoldedFault& folded) {
    const std::string title = fault.kind == FaultKind::Extra ? deviceTitle(folded.spec) : faultTitleOf(folded.spec);
    return title + (fault.kind == FaultKind::Extra ? ": too many with " : ": missing with ") + faultTitle(fault);
}

std::string pluralOf(const std::string& type) {
    if (type.ends_with("Chassis")) {
        return type;
    }
    if (endsInConsonantAndY(type)) {
        return type.substr(0, type.size() - 1) + "ies";
    }
    const bool hisses = type.ends_with('s') || type.ends_with('S') || type.ends_with('x') || type.ends_with("ch");
    return type + (hisses ? "es" : "s");
}

}  // namespace vrx
