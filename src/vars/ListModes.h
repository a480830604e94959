// How the variable list is shown: which records, whether only the changed ones, in which order.
#pragma once
#include <cstdint>

// All variables, or the user list only.
enum class ListView : std::int32_t { All, UserList };

// On: only the user list's records whose new text differs from the current one.
enum class CompareMode : std::int32_t { Off, On };

// The orders of the list: by letter, by theme, by scope then letter, by scope then theme. Each
// has a row in the order table of the dialogs (dialogs/ListOrderTable.h): its menu entry, tool
// button, image and rows.
enum class ListOrder : std::int32_t { Letter, Theme, ScopeLetter, ScopeTheme };
