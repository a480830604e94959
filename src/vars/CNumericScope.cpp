// CNumericScope: numbers printed and scanned in the "C" locale for the time of a scope.
#include "CNumericScope.h"

CNumericScope::CNumericScope() {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
    previous_ = cLocale ? uselocale(cLocale) : locale_t(nullptr);
}

CNumericScope::~CNumericScope() {
    if (previous_)
        uselocale(previous_);
}
