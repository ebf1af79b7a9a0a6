#include "libInventory/script/OrInsidePart.h"

#include "libInventory/script/ScriptWalk.h"

namespace vrx {

using vocabulary::ElementKind;

bool isUndecidableOr(const ScriptPlace& place) noexcept {
    return place.kind == ElementKind::Or && place.part != nullptr && place.holder == nullptr &&
           place.element->FirstChildElement() != nullptr;
}

const XmlElement* findOrInsidePart(const XmlElement& root) {
    ScriptWalk walk(root, ScriptWalk::Extent::WhereACheckLooks);
    while (walk && !isUndecidableOr(*walk)) {
        if (walk->kind == ElementKind::Device || walk->kind == ElementKind::FailOnExtra) {
            walk.skipContent();  // what is in there lies in a holder
        }
        ++walk;
    }
    return walk ? walk->element : nullptr;
}

}  // namespace vrx
