// CNumericScope: numbers printed and scanned in the "C" locale for the time of a scope.
#pragma once
#include <locale.h>

// Switches the calling thread to the "C" locale and back at the end of the scope, whatever locale
// the process runs in: the texts of values are stored in files and compared byte for byte, so
// "1.5" must never become "1,5".
class CNumericScope {
public:
    CNumericScope();
    ~CNumericScope();
    CNumericScope(const CNumericScope&) = delete;
    CNumericScope& operator=(const CNumericScope&) = delete;

private:
    locale_t previous_;
};
