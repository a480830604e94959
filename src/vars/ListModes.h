// How the variable list is shown: which records, whether only the changed ones, in which order.
#pragma once
#include <cstdint>

// All variables, or the user list only.
enum class ListView : std::int32_t { All, UserList };

// On: only the user list's records whose new text differs from the current one.
enum class CompareMode : std::int32_t { Off, On };

// The orders of the list, in the order of their menu commands and tool buttons: by letter, by
// theme, by scope then letter, by scope then theme.
enum class ListOrder : std::int32_t { Letter, Theme, ScopeLetter, ScopeTheme };
inline constexpr int kListOrderCount = 4;

// The order at index (a menu command's or tool button's offset from the first).
constexpr ListOrder listOrderAt(int index) {
    return static_cast<ListOrder>(index);
}
constexpr int indexOf(ListOrder order) {
    return static_cast<int>(order);
}
