#include "libDiagnosis/certainty/Verdict.h"

#include "libInventory/Finding.h"
#include "libInventory/script/ScriptContent.h"

namespace vrx {

namespace {

/// A pattern that is given up counts as "no match". A check that failed might have passed with the true answer. One
/// that passed is right all the same, unless the script forbids what that pattern describes.
bool couldBeOtherwise(const XmlElement& root, bool passed) {
    return !passed || hasElement(root, vocabulary::ElementKind::Not) ||
           hasElement(root, vocabulary::ElementKind::FailOnExtra);
}

}  // namespace

std::string_view nameOf(Verdict verdict) noexcept {
    switch (verdict) {
        case Verdict::Passed: return "passed";
        case Verdict::Failed: return "failed";
        case Verdict::NothingToCheck:
        case Verdict::Undecided: return "undetermined";
        case Verdict::NotRun:
        case Verdict::Refused: break;
    }
    return "refused";
}

Verdict verdictOf(const Inventory& inventory, bool passed, const Certainty& certainty) {
    const XmlElement& root = *inventory.script().RootElement();
    if (inventory.summary().patternsGivenUp > 0 && couldBeOtherwise(root, passed)) {
        return Verdict::Undecided;
    }
    if (!passed) {
        return certainty.couldHavePassed ? Verdict::Undecided : Verdict::Failed;
    }
    if (!contentOf(root).asksForAnything()) {
        return Verdict::NothingToCheck;
    }
    const bool isCertain = !certainty.couldHaveFailed && inventory.summary().undecidedExtras.isEmpty();
    return isCertain ? Verdict::Passed : Verdict::Undecided;
}

}  // namespace vrx
