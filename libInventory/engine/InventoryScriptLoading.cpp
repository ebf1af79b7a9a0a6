/// Loading a script: reset, decode, parse, check the root, read its flags. A load that fails has told every observer
/// why, and leaves the document in whatever state the parser left it.

#include <string>
#include <string_view>
#include <utility>

#include "libCommon/Assertion.h"
#include "libCommon/io/FileLoader.h"
#include "libCommon/text/NumberText.h"
#include "libCommon/text/UuCode.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/ScriptNotices.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

namespace {

constexpr std::string_view ENCODED = "%u";  // what stands for a character that XML cannot hold begins so

/// The root, when it is the one that a script must have.
const XmlElement* scriptRoot(const XmlDocument& script) {
    const XmlElement* const root = script.Error() ? nullptr : script.RootElement();
    const bool isScript = root != nullptr && vocabulary::kindOf(*root) == vocabulary::ElementKind::InventoryCheck;
    return isScript ? root : nullptr;
}

void readFlag(const XmlElement& root, StringView name, bool& flag) {
    if (root.FindAttribute(name) != nullptr) {
        flag = String(root.NormalizedAttributeValue(name)).strToBoolean();
    }
}

void readFlags(const XmlElement& root, bool& checkNames, bool& checkHwLocators, bool& checkOsLocators) {
    readFlag(root, vocabulary::CHECK_NAMES, checkNames);
    readFlag(root, vocabulary::CHECK_HW_LOCATORS, checkHwLocators);
    readFlag(root, vocabulary::CHECK_OS_LOCATORS, checkOsLocators);
}

}  // namespace

String Inventory::inventoryCheckElementName() { return vocabulary::INVENTORY_CHECK; }

bool Inventory::loadInventoryScript(const String& text) {
    InventoryState& state = *m_state;
    state.reset();
    const bool parsed = needsUuEncode(text) ? state.m_script.Parse(toXmlSafe(text)) : state.m_script.Parse(text);
    if (!parsed) {
        const String message = concat(u"Invalid inventory script.  Xml error on line ",
                                      toText(std::uint64_t{state.m_script.ErrorRow()} + 1), u": ");
        VRX_LOG(inventoryLog(), LogPriority::Error, message);
        ScriptNotices(state).fileError(message + state.m_script.ErrorDesc());
        return false;
    }
    const XmlElement* const root = scriptRoot(state.m_script);
    if (root == nullptr) {
        const String message =
            concat(u"Invalid inventory script.  Script must contain <", inventoryCheckElementName(), u"> element.");
        VRX_LOG(inventoryLog(), LogPriority::Error, message);
        ScriptNotices(state).fileError(message);
        return false;
    }
    readFlags(*root, state.m_checkNames, state.m_checkHwLocators, state.m_checkOsLocators);
    return true;
}

bool Inventory::loadInventoryScriptFile(const String& path) {
    if (loadPlainScriptFile(path)) {
        return true;
    }
    m_state->m_scriptFileName = path;
    std::string bytes;
    String reason;
    if (!loadFile(path, bytes, reason)) {
        ScriptNotices(*m_state).fileError(u"Could not open Inventory Script file: " + path);
        return false;
    }
    return loadInventoryScriptBytes(bytes, path);
}

void Inventory::loadInventoryScript(const Inventory& other) {
    InventoryState& state = *m_state;
    const InventoryState& loaded = *other.m_state;
    VRX_ASSERT(this != &other && scriptRoot(loaded.m_script) != nullptr);
    state.m_scriptFileName = loaded.m_scriptFileName;
    state.reset();
    state.m_script.CopyAll(loaded.m_script);
    state.m_checkNames = loaded.m_checkNames;
    state.m_checkHwLocators = loaded.m_checkHwLocators;
    state.m_checkOsLocators = loaded.m_checkOsLocators;
}

// Nearly all scripts need no encoding and parse as they stand. What does not goes the long way, which also says why.
bool Inventory::loadPlainScriptFile(const String& path, unsigned threads) {
    XmlDocument script;
    const XmlElement* const root = script.LoadFileWithout(path, ENCODED, threads) ? scriptRoot(script) : nullptr;
    if (root != nullptr) {
        InventoryState& state = *m_state;
        state.m_scriptFileName = path;
        state.reset();
        readFlags(*root, state.m_checkNames, state.m_checkHwLocators, state.m_checkOsLocators);
        state.m_script = std::move(script);
    }
    return root != nullptr;
}

bool Inventory::loadInventoryScriptBytes(std::string_view bytes, const String& name) {
    m_state->m_scriptFileName = name;
    InventoryState& state = *m_state;
    if (bytes.find(ENCODED) == std::string_view::npos) {
        state.reset();
        const XmlElement* const root = state.m_script.ParseUtf8(bytes) ? scriptRoot(state.m_script) : nullptr;
        if (root != nullptr) {
            readFlags(*root, state.m_checkNames, state.m_checkHwLocators, state.m_checkOsLocators);
            return true;
        }
    }
    Utf8Damage damage;
    const String text = String::UTF8Decode(bytes, &damage);
    if (damage.count > 0) {
        VRX_LOG(inventoryLog(), LogPriority::Warning,
                u"loadInventoryScriptFile() " << name << u"(" << damage.row + 1 << u":" << damage.column + 1 << u"): "
                                              << damage.count
                                              << u" invalid UTF-8 sequence(s), the first at this place, each read as "
                                                 u"U+FFFD");
    }
    return loadInventoryScript(text);
}

}  // namespace vrx
