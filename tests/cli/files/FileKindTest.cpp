#include "cli/files/FileKind.h"

#include <gmock/gmock.h>

namespace vrx::cli {
namespace {

using testing::IsEmpty;
using testing::StartsWith;

constexpr std::string_view SCRIPT = "\xEF\xBB\xBF<?xml version='1.0'?><!-- <part> --><Inventory-Check/>";
constexpr std::string_view PARTS = "<list><part name='a'/></list>";
constexpr std::string_view LSHW = "<?xml version='1.0'?>\n<list><node id='a' class='system'></node></list>";

TEST(FileKindTest, SaysWhatAFileIsInstead) {
    const std::tuple<std::string_view, FileKind, const char*> files[] = {
        {std::string_view("\x1F\x8B\x08\x00", 4), FileKind::Script, "this is compressed (gzip); unpack it first"},
        {std::string_view("\xFF\xFE<\0i\0", 6), FileKind::Script, "this is UTF-16 text; save it as UTF-8"},
        {std::string_view("\0<\0i", 4), FileKind::Filter, "this is UTF-16 text; save it as UTF-8"},
        {" \n", FileKind::Script, "it is empty; expected an inventory script"},
        {"{}", FileKind::Filter, "this is JSON; expected a filter"},
        {"type=Fan", FileKind::Script, "this is no XML; expected an inventory script"},
        {std::string_view("a\0b", 3), FileKind::Script, "this is a binary file; expected"},
        {SCRIPT, FileKind::Recording, "this is an inventory script; check and lint read it; expected a recording"},
        {SCRIPT, FileKind::PartsList, "this is an inventory script; check and lint read it; expected a parts list"},
        {PARTS, FileKind::Script, "this is a parts list; "},
        {LSHW, FileKind::Script, "this is a recording of a machine (lshw XML); "},
        {"<SysInfo><Device/></SysInfo>", FileKind::ScriptOrPartsList, "this is a recording of a machine (SysInfo XML)"},
        {"<system-information-filter>", FileKind::Recording, "this is a filter; generate --filter reads it"}};
    for (const auto& [bytes, wanted, text] : files) {
        EXPECT_THAT(otherKind(bytes, wanted), StartsWith(text)) << bytes;
    }
    for (const auto& [bytes, wanted] : {std::pair(SCRIPT, FileKind::ScriptOrPartsList),
                                        {PARTS, FileKind::PartsList},
                                        {LSHW, FileKind::Recording},
                                        {"<Machine><device/></Machine>", FileKind::Recording}}) {
        EXPECT_THAT(otherKind(bytes, wanted), IsEmpty()) << bytes;
    }
}

TEST(FileKindTest, FindsTheQuotationMarkThatIsMissing) {
    const auto placeIn = [](StringView text) {
        const auto found = findMissingQuote(text);
        return found ? std::to_string(found->row) + ":" + std::to_string(found->column) + " " + found->text : "none";
    };
    EXPECT_EQ(placeIn(u"<a>\n <b c=\"d/>\n <e f=\"g\"/></a>"),
              "1:6 the value that begins here has no closing quotation mark");
    EXPECT_EQ(placeIn(u"<a c=d\"/>"), "0:5 the value that begins here has no opening quotation mark");
    EXPECT_EQ(placeIn(u"<a c=\"d e=\"f\"/>"), "0:11 a quotation mark is missing before this place");
    EXPECT_EQ(placeIn(u"<a c d\"/>"), "0:6 a quotation mark is missing before this one");
    EXPECT_EQ(placeIn(u"<?xml version='1.0'?>\n<!-- it's <a b=c -->\n<a b = '>' c='\"'>\"=</a>"), "none");
}

}  // namespace
}  // namespace vrx::cli
