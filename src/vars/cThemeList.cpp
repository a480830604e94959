// cThemeList: insertion by name, lookups by index and name, and the walk in name order.
#include "cThemeList.h"

#include "TextHelpers.h"

cThemeList::~cThemeList() { clear(); }

void cThemeList::clear()
{
    while (first) {
        cTheme* next = first->next;
        delete first;
        first = next;
    }
}

int cThemeList::addTheme(int index, const std::string& name)
{
    if (index == 0)
        return themeresult::badIndex;
    if (name.empty())
        return themeresult::noName;
    std::string trimmed = name;
    trimBoth(trimmed);
    if (hasThemeIndex(index))
        return themeresult::indexInUse;
    if (hasThemeName(trimmed))
        return themeresult::nameInUse;

    auto* theme = new cTheme{trimmed, index, nullptr};
    cTheme** link = &first;
    while (*link && compareText((*link)->name, trimmed) < 0)
        link = &(*link)->next;
    theme->next = *link;
    *link = theme;
    return themeresult::inserted;
}

bool cThemeList::hasThemeIndex(int index) const
{
    for (const cTheme* t = first; t; t = t->next)
        if (t->index == index)
            return true;
    return false;
}

bool cThemeList::hasThemeName(const std::string& name) const
{
    for (const cTheme* t = first; t; t = t->next)
        if (compareText(t->name, name) == 0)
            return true;
    return false;
}

int cThemeList::firstThemeIndex() const { return first ? first->index : 0; }

int cThemeList::themeIndexAfter(int index) const
{
    for (const cTheme* t = first; t; t = t->next)
        if (t->index == index)
            return t->next ? t->next->index : 0;
    return 0;
}

int cThemeList::themeNameOf(std::string& out, int index) const
{
    out.clear();
    if (index < 1)
        return 0;
    for (const cTheme* t = first; t; t = t->next) {
        if (t->index == index) {
            out = t->name;
            return index;
        }
    }
    return 0;
}
