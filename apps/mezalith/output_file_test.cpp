// SPDX-License-Identifier: MIT
#include "apps/mezalith/output_file.hpp"

#include "host/failure_of.hpp"
#include "tests/support/temporary_folder.hpp"

#include <filesystem>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

namespace fs = std::filesystem;

using mezalith::testing::failureOf;

class OutputFileTest : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_.path(name); }

    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()));
    }

    static void write(OutputFile& file, std::string_view text) {
        file.write(std::as_bytes(std::span(text)));
    }

    mezalith::testing::TemporaryFolder folder_;
};

TEST_F(OutputFileTest, AppearsWhenItIsComplete) {
    OutputFile file(path("a"), false);
    write(file, "whole");
    EXPECT_FALSE(fs::exists(path("a")));
    file.commit();
    EXPECT_EQ(folder_.contentOf("a"), "whole");
    EXPECT_EQ(entries(), 1u);
}

TEST_F(OutputFileTest, LeavesNothingBehindWithoutACommit) {
    {
        OutputFile file(path("a"), false);
        write(file, "half");
        EXPECT_EQ(entries(), 1u);
    }
    EXPECT_EQ(entries(), 0u);
}

TEST_F(OutputFileTest, ReplacesOnlyWhenToldTo) {
    folder_.put("a", "old");
    EXPECT_EQ(failureOf([&] { OutputFile(path("a"), false); }),
              path("a") + ": the file exists; --overwrite replaces it");
    OutputFile file(path("a"), true);
    write(file, "new");
    EXPECT_EQ(folder_.contentOf("a"), "old");
    file.commit();
    EXPECT_EQ(folder_.contentOf("a"), "new");
}

TEST_F(OutputFileTest, SparesAFileThatCameMeanwhile) {
    OutputFile file(path("a"), false);
    folder_.put("a", "other");
    EXPECT_EQ(failureOf([&] { file.commit(); }), path("a") + ": File exists");
    EXPECT_EQ(folder_.contentOf("a"), "other");
}

TEST_F(OutputFileTest, FollowsSymbolicLinks) {
    folder_.put("real", "old");
    fs::create_symlink("real", path("link"));
    OutputFile file(path("link"), true);
    write(file, "new");
    file.commit();
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(folder_.contentOf("real"), "new");
}

TEST_F(OutputFileTest, WritesDevicesDirectly) {
    fs::create_symlink("/dev/full", path("full"));
    OutputFile file(path("full"), false);
    EXPECT_EQ(failureOf([&] { write(file, "x"); }), path("full") + ": No space left on device");
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(OutputFileTest, SaysWhyItCannot) {
    EXPECT_EQ(failureOf([&] { OutputFile(path("no/where"), false); }),
              path("no/where") + ": No such file or directory");
    EXPECT_EQ(failureOf([&] { OutputFile(folder_.path().string(), true); }),
              folder_.path().string() + ": Is a directory");
}

}  // namespace
}  // namespace mezalith::app
