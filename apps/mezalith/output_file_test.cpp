// SPDX-License-Identifier: MIT
#include "apps/mezalith/output_file.hpp"

#include "host/failure.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

namespace fs = std::filesystem;

class OutputFileTest : public testing::Test {
  protected:
    OutputFileTest() {
        std::string name = (fs::temp_directory_path() / "mezalith-XXXXXX").string();
        folder_ = ::mkdtemp(name.data());
    }
    ~OutputFileTest() override { fs::remove_all(folder_); }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    static std::string contentOf(const std::string& path) {
        std::ifstream file(path);
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }

    static void put(const std::string& path, const std::string& text) {
        std::ofstream(path) << text;
    }

    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }

    static void write(OutputFile& file, std::string_view text) {
        file.write(std::as_bytes(std::span(text)));
    }

    static std::string failureOf(const std::function<void()>& work) {
        try {
            work();
        } catch (const host::Failure& failure) {
            return failure.what();
        }
        return "no failure";
    }

    fs::path folder_;
};

TEST_F(OutputFileTest, AppearsWhenItIsComplete) {
    OutputFile file(path("a"), false);
    write(file, "whole");
    EXPECT_FALSE(fs::exists(path("a")));
    file.commit();
    EXPECT_EQ(contentOf(path("a")), "whole");
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
    put(path("a"), "old");
    EXPECT_EQ(failureOf([&] { OutputFile(path("a"), false); }),
              path("a") + ": the file exists; --overwrite replaces it");
    OutputFile file(path("a"), true);
    write(file, "new");
    EXPECT_EQ(contentOf(path("a")), "old");
    file.commit();
    EXPECT_EQ(contentOf(path("a")), "new");
}

TEST_F(OutputFileTest, SparesAFileThatCameMeanwhile) {
    OutputFile file(path("a"), false);
    put(path("a"), "other");
    EXPECT_EQ(failureOf([&] { file.commit(); }), path("a") + ": File exists");
    EXPECT_EQ(contentOf(path("a")), "other");
}

TEST_F(OutputFileTest, FollowsSymbolicLinks) {
    put(path("real"), "old");
    fs::create_symlink("real", path("link"));
    OutputFile file(path("link"), true);
    write(file, "new");
    file.commit();
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(contentOf(path("real")), "new");
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
    EXPECT_EQ(failureOf([&] { OutputFile(folder_.string(), true); }),
              folder_.string() + ": Is a directory");
}

}  // namespace
}  // namespace mezalith::app
