// Basic integer types and export macros of the host SDK.
#pragma once
#include <cstdint>

namespace Adesk {
using Int8 = std::int8_t;
using Int16 = std::int16_t;
using Int32 = std::int32_t;
using UInt32 = std::uint32_t;
using Boolean = bool;
constexpr Boolean kFalse = false;
constexpr Boolean kTrue = true;
} // namespace Adesk

#define ACSDK_EXPORT __attribute__((visibility("default")))
