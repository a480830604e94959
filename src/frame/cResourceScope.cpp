// cResourceScope: which module's resources (templates, menus, icons) the UI code looks in.
#include "cResourceScope.h"

cResourceScope gResourceScope;

namespace {
void* gCurrentResourceHandle = nullptr;
}

void cResourceScope::Init(void* moduleHandle) {
    m_moduleHandle = moduleHandle;
    m_savedHandle = gCurrentResourceHandle;
}

void cResourceScope::Enter() {
    gCurrentResourceHandle = m_moduleHandle;
}

void cResourceScope::Leave() {
    gCurrentResourceHandle = m_savedHandle;
}

void* cResourceScope::Current() {
    return gCurrentResourceHandle;
}
