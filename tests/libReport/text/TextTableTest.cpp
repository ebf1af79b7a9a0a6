#include "libReport/text/TextTable.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

std::string textOf(const TextTable& table, const TextFormat& format) {
    std::string out;
    table.write(out, format);
    return out;
}

TEST(TextTableTest, WrapsTheWidestColumnsAndLeavesNoBlanksAtLineEnds) {
    TextTable table(2, {Style::Plain, Style::Dim, Style::Plain});
    table.setHeader({"type", "name", "place"});
    table.addRow({"Fan", "a name that does not fit", "x"});
    table.addRow({"Battery", "short", ""});
    EXPECT_EQ(textOf(table, {false, 32}),
              "  type     name            place\n"
              "  Fan      a name that     x\n"
              "           does not fit\n"
              "  Battery  short\n");
}

TEST(TextTableTest, ColoursAroundTheTextAndNotAroundTheBlanks) {
    TextTable table(0, {Style::Good, Style::Plain});
    table.addRow({"a", "b"});
    table.addRow({"long", "c"});
    EXPECT_EQ(textOf(table, {true, 80}), "\033[1;32ma\033[0m     b\n\033[1;32mlong\033[0m  c\n");
}

}  // namespace
}  // namespace vrx
