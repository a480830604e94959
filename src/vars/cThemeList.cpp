// cThemeList: insertion by name, lookups by index and name, and the walk in name order.
#include "cThemeList.h"

#include "TextHelpers.h"

#include <iterator>

cThemeList::~cThemeList() {
    clear();
}

void cThemeList::clear() {
    while (first) {
        cTheme* next = first->next;
        delete first;
        first = next;
    }
    m_byName.clear();
    m_byIndex.clear();
}

ThemeResult cThemeList::addTheme(int index, const std::string& name) {
    if (index == 0)
        return ThemeResult::BadIndex;
    if (name.empty())
        return ThemeResult::NoName;
    std::string trimmed = name;
    trimBoth(trimmed);
    if (hasThemeIndex(index))
        return ThemeResult::IndexInUse;
    if (hasThemeName(trimmed))
        return ThemeResult::NameInUse;

    // Names are unique by now, and std::string orders as compareText does: the new theme goes
    // ahead of the first greater name, behind the one before it.
    auto* theme = new cTheme{trimmed, index, nullptr};
    const auto ahead = m_byName.lower_bound(trimmed);
    cTheme** link = ahead == m_byName.begin() ? &first : &std::prev(ahead)->second->next;
    theme->next = *link;
    *link = theme;
    m_byName.emplace_hint(ahead, trimmed, theme);
    m_byIndex.emplace(index, theme);
    return ThemeResult::Inserted;
}

const cTheme* cThemeList::themeOf(int index) const {
    const auto found = m_byIndex.find(index);
    return found == m_byIndex.end() ? nullptr : found->second;
}

bool cThemeList::hasThemeIndex(int index) const {
    return themeOf(index) != nullptr;
}

bool cThemeList::hasThemeName(const std::string& name) const {
    return m_byName.contains(name);
}

int cThemeList::firstThemeIndex() const {
    return first ? first->index : 0;
}

int cThemeList::themeIndexAfter(int index) const {
    const cTheme* theme = themeOf(index);
    return theme && theme->next ? theme->next->index : 0;
}

int cThemeList::themeNameOf(std::string& out, int index) const {
    out.clear();
    if (index < 1)
        return 0;
    const cTheme* theme = themeOf(index);
    if (!theme)
        return 0;
    out = theme->name;
    return index;
}
