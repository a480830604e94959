// Tests of modulePathOf: the path of the shared object that holds an address.
#include "ModulePath.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(ModulePath, FindsTheLibraryHoldingAnAddress) {
    const std::string path = kova::modulePathOf(reinterpret_cast<const void*>(&kova::modulePathOf));
    ASSERT_FALSE(path.empty());
    EXPECT_EQ(std::filesystem::path(path).filename(), "libkovaplatform.so");
    EXPECT_TRUE(std::filesystem::path(path).is_absolute()) << path;
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
}

TEST(ModulePath, NothingForNoAddressOrATooLongPath) {
    EXPECT_EQ(kova::modulePathOf(nullptr), "");
    const void* address = reinterpret_cast<const void*>(&kova::modulePathOf);
    const std::size_t length = kova::modulePathOf(address).size();
    EXPECT_EQ(kova::modulePathOf(address, length), kova::modulePathOf(address));
    EXPECT_EQ(kova::modulePathOf(address, length - 1), "");
}

} // namespace
