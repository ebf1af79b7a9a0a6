#include "libReport/changes/ValueText.h"

#include "libCommon/text/PrintableText.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

std::string valueTitle(const ValueChange& value) {
    switch (value.what) {
        case ValueChange::What::Name: return "name";
        case ValueChange::What::OsLocator: return "OS locator";
        case ValueChange::What::Capabilities: return "capabilities";
        case ValueChange::What::Property: break;
    }
    return printable(value.key);
}

std::string valueSide(const std::optional<String>& text) { return text ? printableValue(*text) : "(none)"; }

}  // namespace vrx
