#include "cli/input/PartsListFile.h"

#include <utility>

#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/input/MistakesFound.h"
#include "cli/program/Session.h"
#include "libCommon/text/UuCode.h"
#include "libInventory/script/OrInsidePart.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx::cli {

namespace {

constexpr const char* EXPECTED_BASE = "expected the content of an <inventory-check> element, without that element";

[[noreturn]] void refuse(const std::string& line) { throw CommandFailure(ExitStatus::BadInput, line); }

std::string readFile(const std::string& path, const std::string& expected) {
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        refuse(path + ": " + reason.toUtf8() + "; " + expected);
    }
    return bytes;
}

void refuseOrInsidePart(const std::string& path, const XmlElement& element) {
    if (const XmlElement* const undecidable = findOrInsidePart(element)) {
        refuse(problemAt(path, undecidable->Row(), undecidable->Column(), OR_INSIDE_PART_REASON));
    }
}

}  // namespace

Array<Inventory::PartSpec> loadPartsForGeneration(const std::string& path, bool passesMistakesOver) {
    const std::string bytes = readFile(path, expectedText(FileKind::PartsList));
    XmlDocument document;
    if (!document.ParseUtf8(bytes) || !otherKind(bytes, FileKind::PartsList).empty()) {
        refuse(xmlProblem(path, bytes, document, FileKind::PartsList));
    }
    Array<Inventory::PartSpec> parts;
    String error;
    const Inventory::ParsePartsResult result = Inventory::parsePartsList(String::UTF8Decode(bytes), parts, error);
    if (result == Inventory::PartsBlank) {
        refuse(path + ": " + error.toUtf8());
    }
    if (result != Inventory::PartsParsed || parts.isEmpty()) {
        refuse(fileProblem(path, u"it holds no part", FileKind::PartsList));
    }
    if (!passesMistakesOver) {
        refuseMistakes(path, document);
    }
    for (const XmlElement* const child : childElements(std::as_const(*document.RootElement()))) {
        refuseOrInsidePart(path, *child);
    }
    return parts;
}

String loadBaseScript(const std::string& path, bool passesMistakesOver) {
    if (path.empty()) {
        return String();
    }
    constexpr StringView OPENING = u"<inventory-check>";
    const String content = String::UTF8Decode(readFile(path, EXPECTED_BASE));
    XmlDocument document;
    if (!document.Parse(toXmlSafe(concat(OPENING, content, u"</inventory-check>")))) {
        const auto shift = document.ErrorRow() == 0 ? static_cast<std::uint32_t>(OPENING.size()) : 0;
        const std::uint32_t column = document.ErrorColumn() < shift ? 0 : document.ErrorColumn() - shift;
        refuse(problemAt(path, document.ErrorRow(), column, document.ErrorDesc().toUtf8() + "; " + EXPECTED_BASE));
    }
    if (!passesMistakesOver) {
        refuseMistakes(path, document, OPENING.size());
    }
    refuseOrInsidePart(path, *document.RootElement());
    return content;
}

}  // namespace vrx::cli
