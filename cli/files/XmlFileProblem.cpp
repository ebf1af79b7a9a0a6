#include "cli/files/XmlFileProblem.h"

#include <fmt/format.h>

#include "libReport/text/TextPieces.h"

namespace vrx::cli {

std::string fileProblem(const std::string& name, const String& reason, FileKind wanted) {
    return fmt::format("{}: {}; {}", inputName(name), reason.toUtf8(), expectedText(wanted));
}

std::string parseProblem(const std::string& name, std::string_view bytes, const TextPlace& place, const String& reason,
                         FileKind wanted) {
    Utf8Damage damage;
    const String text = String::UTF8Decode(bytes, &damage);
    if (const auto quote = findMissingQuote(text)) {
        return problemAt(name, quote->row, quote->column, quote->text);
    }
    if (damage.count > 0 && damage.row == place.row && damage.column == place.column) {
        return problemAt(name, place.row, place.column, "this character is not in UTF-8; save the file as UTF-8");
    }
    const std::string expected = kindOf(bytes) == FileKind::Unknown ? "; " + expectedText(wanted) : "";
    return problemAt(name, place.row, place.column, reason.toUtf8() + expected);
}

std::string xmlProblem(const std::string& name, std::string_view bytes, const XmlDocument& failed, FileKind wanted) {
    if (const std::string other = otherKind(bytes, wanted); !other.empty()) {
        return fmt::format("{}: {}", inputName(name), other);
    }
    if (failed.Error()) {
        return parseProblem(name, bytes, {failed.ErrorRow(), failed.ErrorColumn()}, failed.ErrorDesc(), wanted);
    }
    const XmlElement* const root = failed.RootElement();
    return root == nullptr ? fileProblem(name, u"it has no root", wanted)
                           : problemAt(name, root->Row(), root->Column(),
                                       fmt::format("the root is <{}>; {}", toUtf8(root->Name()), expectedText(wanted)));
}

std::string problemAt(const std::string& name, std::uint32_t row, std::uint32_t column, const std::string& text) {
    return fmt::format("{}:{}:{}: {}", inputName(name), std::uint64_t{row} + 1, std::uint64_t{column} + 1, text);
}

}  // namespace vrx::cli
