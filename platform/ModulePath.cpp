// The path of the shared object that holds an address, found through the dynamic loader.
#include "ModulePath.h"

#include <filesystem>
#include <system_error>

#include <dlfcn.h>

namespace kova {

std::string modulePathOf(const void* address, std::size_t maxLength) {
    Dl_info info{};
    if (address == nullptr || dladdr(address, &info) == 0 || info.dli_fname == nullptr ||
        info.dli_fname[0] == '\0')
        return {};
    // The loader reports the name the object was opened by, which may be relative.
    std::error_code ec;
    std::filesystem::path path = std::filesystem::weakly_canonical(info.dli_fname, ec);
    std::string result = ec ? std::string(info.dli_fname) : path.string();
    if (result.size() > maxLength)
        return {};
    return result;
}

} // namespace kova
