#include "libInventory/script/ScriptContent.h"

#include "libInventory/script/ScriptWalk.h"

namespace vrx {

using vocabulary::ElementKind;

ScriptContent contentOf(const XmlElement& root) {
    ScriptContent content;
    for (ScriptWalk walk(root, ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
        if (walk->kind == ElementKind::Device || walk->kind == ElementKind::FailOnExtra) {
            ++(walk->kind == ElementKind::Device ? content.devices : content.extraDeviceRules);
            walk.skipContent();
        }
    }
    return content;
}

bool hasElement(const XmlElement& element, ElementKind kind) {
    ScriptWalk walk(element);
    while (walk && walk->kind != kind) {
        ++walk;
    }
    return static_cast<bool>(walk);
}

bool needsDevice(const XmlElement& element) {
    for (ScriptWalk walk(element, ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
        switch (walk->kind) {
            case ElementKind::Device: return true;
            case ElementKind::Not:
            case ElementKind::FailOnExtra: walk.skipContent(); break;
            default: break;
        }
    }
    return false;
}

}  // namespace vrx
