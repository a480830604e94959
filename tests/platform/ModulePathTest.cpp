// Tests of modulePathOf: the path of the shared object that holds an address.
#include "ModulePath.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(ModulePath, FindsTheLibraryHoldingAnAddressWithinTheLimit) {
    const std::string path = kova::modulePathOf(reinterpret_cast<const void*>(&kova::modulePathOf));
    ASSERT_FALSE(path.empty());
    EXPECT_EQ(std::filesystem::path(path).filename(), "libkovaplatform.so");
    EXPECT_TRUE(std::filesystem::path(path).is_absolute()) << path;
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
    EXPECT_EQ(kova::modulePathOf(nullptr), "");
    const void* address = reinterpret_cast<const void*>(&kova::modulePathOf);
    EXPECT_EQ(kova::modulePathOf(address, path.size()), path) << "a limit of the path's length is enough";
    EXPECT_EQ(kova::modulePathOf(address, path.size() - 1), "") << "a path over the limit gives nothing";
}

} // namespace
