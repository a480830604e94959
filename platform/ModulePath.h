// The file path of the shared object that holds a given address (the module's own path).
#pragma once
#include <string>

namespace kova {

// Full path of the module containing address, or empty when it cannot be found. maxLength
// mirrors the fixed buffer of the platform call: a longer path counts as not found.
std::string modulePathOf(const void* address, std::size_t maxLength = 259);

} // namespace kova
