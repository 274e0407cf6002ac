// Texts of cameras on terminals and in tables.

#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/texttable.h"

using namespace ZelTool;
namespace {

TEST(Printable, LeavesNothingThatATerminalObeys) {
    const struct {
        const char* text;
        const char* shown;
    } cases[] = {
        {"plain \\x41 Größe 視覚 \xf0\x9f\x93\xb7", "plain \\x41 Größe 視覚 \xf0\x9f\x93\xb7"},
        {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
        {"\x1b[31mred\x07\x7f", "\\x1b[31mred\\x07\\x7f"},
        {"\xc2\x9b"
         "2J",
         "\\u{009b}2J"},                      // CSI as UTF-8
        {"\x9b\x80\xff", "\\x9b\\x80\\xff"},  // and as a byte
        {"\xc0\x9b", "\\xc0\\x9b"},           // written too long
        {"\xe0\x80\x9b|\xf0\x80\x80\x8a", "\\xe0\\x80\\x9b|\\xf0\\x80\\x80\\x8a"},
        {"\xed\xa0\x80", "\\xed\\xa0\\x80"},  // half of a pair of UTF-16
        {"\xf4\x90\x80\x80|\xf8\x88\x80\x80\x80", "\\xf4\\x90\\x80\\x80|\\xf8\\x88\\x80\\x80\\x80"},
        {"\xe2\x82", "\\xe2\\x82"},  // cut off
        {"a\xe2\x80\xae"
         "b\xe2\x81\xa6"
         "c\xe2\x80\xa8"
         "d",
         "a\\u{202e}b\\u{2066}c\\u{2028}d"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(Printable(each.text), each.shown);
        EXPECT_EQ(Printable(each.shown), each.shown) << "a second pass changes nothing";
    }
    EXPECT_EQ(Printable(std::string_view("\0", 1)), "\\x00");
    EXPECT_EQ(PrintableLines("a\n\x1b\n"), "a\n\\x1b\n");
}

TEST(Printable, CellsStayOnTheirLine) {
    TextTable table({"NAME", "X"});
    table.AddRow({"a\nb", "\x1b[2J"});
    table.AddHeading("c\rd");
    std::ostringstream out;
    table.Print(out);
    EXPECT_EQ(out.str(), "  NAME  X\n  a\\nb  \\x1b[2J\nc\\rd\n");
}

// The descriptor decides whether the stream is guarded; the output goes to a text.
TEST(TerminalGuard, GuardsTerminalsAndLeavesPipesAlone) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(terminal, 0);
    int pipes[2];
    ASSERT_EQ(pipe(pipes), 0);
    for (const int descriptor : {terminal, pipes[1]}) {
        std::ostringstream out;
        {
            const TerminalGuard guard(out, descriptor);
            out << "\x1b[2J\n\xc3" << '\xb6' << "end\x9b";
        }
        out << "\x1b";
        const char* expected =
            descriptor == terminal ? "\\x1b[2J\nöend\\x9b\x1b" : "\x1b[2J\nöend\x9b\x1b";
        EXPECT_EQ(out.str(), expected);
    }
    for (const int descriptor : {terminal, pipes[0], pipes[1]})
        close(descriptor);
}

}  // namespace
