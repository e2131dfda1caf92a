// SPDX-License-Identifier: MIT
#include <mezalith/platform/resource_bundle.hpp>
#include <tests/support/temporary_folder.hpp>

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

namespace fs = std::filesystem;

class Bundle : public ::testing::Test {
  protected:
    Bundle() {
        for (const char* folder : {"first", "second"}) fs::create_directory(root_.path(folder));
    }
    ~Bundle() override { unsetenv(ResourceBundle::kVariable); }

    testing::TemporaryFolder root_;
};

TEST_F(Bundle, LooksIntoItsFoldersInOrder) {
    const ResourceBundle bundle({root_.path("missing"), root_.path("first"), root_.path("second")});
    EXPECT_EQ(bundle.pathForResource("a.txt"), std::nullopt);
    const std::string second = root_.put("second/a.txt", "resource");
    EXPECT_EQ(bundle.pathForResource("a.txt"), second);
    const std::string first = root_.put("first/a.txt", "resource");
    EXPECT_EQ(bundle.pathForResource("a.txt"), first);
}

TEST_F(Bundle, HoldsFilesOnly) {
    fs::create_directory(root_.path("first/b.txt"));
    EXPECT_EQ(ResourceBundle({root_.path("first")}).pathForResource("b.txt"), std::nullopt);
    EXPECT_EQ(ResourceBundle({root_.path("first")}).pathForResource(""), std::nullopt);
    EXPECT_EQ(ResourceBundle({}).pathForResource("b.txt"), std::nullopt);
}

TEST_F(Bundle, OfTheLibraryIsFoundFromAnyFolder) {
    const auto found = ResourceBundle::library().pathForResource("IGRF11.COF");
    ASSERT_TRUE(found.has_value());
    EXPECT_TRUE(fs::path(*found).is_absolute());
    const fs::path before = fs::current_path();
    fs::current_path(root_.path());
    EXPECT_EQ(ResourceBundle::library().pathForResource("IGRF11.COF"), found);
    fs::current_path(before);
    EXPECT_EQ(ResourceBundle::library().pathForResource("no-such-resource"), std::nullopt);
}

TEST_F(Bundle, OfTheLibraryYieldsToTheFolderThatTheEnvironmentNames) {
    const auto own = ResourceBundle::library().pathForResource("IGRF11.COF");
    const std::string other = root_.put("first/IGRF11.COF", "resource");
    setenv(ResourceBundle::kVariable, root_.path("first").c_str(), 1);
    EXPECT_EQ(ResourceBundle::library().pathForResource("IGRF11.COF"), other);
    setenv(ResourceBundle::kVariable, root_.path("second").c_str(), 1);
    EXPECT_EQ(ResourceBundle::library().pathForResource("IGRF11.COF"), own);
    setenv(ResourceBundle::kVariable, "", 1);
    EXPECT_EQ(ResourceBundle::library().pathForResource("IGRF11.COF"), own);
}

}  // namespace
}  // namespace mezalith::platform
