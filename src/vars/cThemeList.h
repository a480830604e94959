// cThemeList: the themes of the AVL file, a chain in name order with unique names and indices.
#pragma once
#include <functional>
#include <map>
#include <string>
#include <unordered_map>

struct cTheme {
    std::string name;       // the title, no blanks at either end; keeps its case
    int index = 0;          // what variables refer to, never 0
    cTheme* next = nullptr; // next theme in name order
};

// How cThemeList::addTheme ended, in the order of its tests.
enum class ThemeResult {
    Inserted,
    BadIndex, // the index is 0
    NoName,   // the name is empty before trimming
    IndexInUse,
    NameInUse, // the trimmed name, compared exactly
};

class cThemeList {
public:
    cThemeList() = default;
    ~cThemeList();
    cThemeList(const cThemeList&) = delete;
    cThemeList& operator=(const cThemeList&) = delete;

    cTheme* first = nullptr; // owned chain, ascending by compareText of the names

    // Inserts a theme ahead of the first one whose name is greater than or equal to the trimmed
    // name. A name of blanks alone passes and is stored empty.
    ThemeResult addTheme(int index, const std::string& name);
    bool hasThemeIndex(int index) const;
    bool hasThemeName(const std::string& name) const; // exact
    // Index of the first theme in name order; 0 for an empty list.
    int firstThemeIndex() const;
    // Index of the theme behind the given one in name order; 0 after the last and for an index
    // that is not in the list. With firstThemeIndex this walks the themes by title.
    int themeIndexAfter(int index) const;
    // out is emptied, then takes the theme's name. Returns index, or 0 (out empty) for an index
    // below 1 or one that is not in the list.
    int themeNameOf(std::string& out, int index) const;
    // Deletes every theme.
    void clear();

private:
    // Every theme of the chain by its name and by its index, kept in step with the chain, so that
    // placing and finding a theme walk nothing.
    std::map<std::string, cTheme*, std::less<>> m_byName;
    std::unordered_map<int, cTheme*> m_byIndex;

    const cTheme* themeOf(int index) const;
};
