// SPDX-License-Identifier: MIT
#include "apps/mezalith/manual.hpp"

#include <memory>

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

/// A program with one command.
struct Program {
    Program() {
        app.set_help_flag("--help", "Print this help");
        app.add_flag("--secret", secret, "Never seen")->group("");
        CLI::App* draw = app.add_subcommand("draw", "Draw a well-made map");
        draw->add_option("SOURCE", sources, "What to draw")->required()->type_name("");
        draw->add_option("-o,--output", output, "Where to draw")->type_name("OUT");
        draw->footer(".dots at the beginning");
        CLI::App* paint = app.add_subcommand("paint", "Work with paint");
        CLI::App* mix = paint->add_subcommand("mix", "Mix colours");
        mix->add_flag("--stir", secret, "Stir well");
        paint->add_subcommand("dry", "Wait");
    }
    bool holds(const std::string& part) const {
        return manualPage(app, "1.2").find(part) != std::string::npos;
    }

    CLI::App app{"one-line description"};
    std::vector<std::string> sources;
    std::string output = "map.png";
    bool secret = false;
};

TEST(ManualPage, NamesTheProgramAndItsVersion) {
    const Program program;
    EXPECT_TRUE(program.holds(".TH MEZALITH 1 \"\" \"mezalith 1.2\" \"User Commands\"\n"));
    EXPECT_TRUE(program.holds("mezalith \\- one\\-line description\n"));
    EXPECT_TRUE(program.holds("\\fB\\-\\-help\\fR\nPrint this help.\n"));
}

TEST(ManualPage, TellsEachCommand) {
    const Program program;
    EXPECT_TRUE(program.holds(".SS draw\n\\fBmezalith draw\\fR [options] \\fISOURCE\\fR ...\n"));
    EXPECT_TRUE(program.holds("Draw a well\\-made map.\n"));
    EXPECT_TRUE(program.holds(".TP\n\\fISOURCE\\fR\nWhat to draw.\n"));
    EXPECT_TRUE(
        program.holds(".TP\n\\fB\\-o\\fR, \\fB\\-\\-output\\fR \\fIOUT\\fR\nWhere to draw.\n"));
    EXPECT_TRUE(program.holds("\n\\&.dots at the beginning\n"));
}

TEST(ManualPage, TellsCommandsWithinCommands) {
    const Program program;
    EXPECT_TRUE(program.holds(".SS paint mix\n\\fBmezalith paint mix\\fR [options]\n.PP\nMix col"));
    EXPECT_TRUE(program.holds(".SS paint dry\n"));
    EXPECT_FALSE(program.holds(".SS paint\n"));
}

TEST(ManualPage, LeavesHiddenOptionsOut) {
    EXPECT_FALSE(Program().holds("secret"));
    EXPECT_EQ(bashCompletion(Program().app).find("secret"), std::string::npos);
}

TEST(BashCompletion, HasACaseForEachCommand) {
    const std::string script = bashCompletion(Program().app);
    EXPECT_NE(script.find("'') words='draw paint --help' ;;\n"), std::string::npos);
    EXPECT_NE(script.find("draw) words='--help --output -o' ;;\n"), std::string::npos);
    EXPECT_NE(script.find("paint) words='mix dry --help --help --stir --help' ;;\n"),
              std::string::npos);
    EXPECT_NE(script.find("local groups=' paint '\n"), std::string::npos);
}

}  // namespace
}  // namespace mezalith::app
