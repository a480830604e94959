// cResourceScope: which module's resources (templates, menus, icons) the UI code looks in.
#pragma once

// On Windows the class library looks for dialog templates, menus, icons and strings in one
// module at a time, and a module switches that place to itself around dialog creation and modal
// runs. Qt has no such process-wide place: the module's templates are data it finds beside
// itself. The object keeps the contract all the same, as a record of whose resources are in
// force: Init stores the module handle and saves the handle current now, Enter makes the
// module's handle current, Leave puts the saved one back. There is no nesting count, so Enter
// must not be called twice without Leave.
class cResourceScope {
public:
    void Init(void* moduleHandle);
    void Enter();
    void Leave();

    // The handle whose resources are in force; null when no module switched to itself.
    static void* Current();

    void* moduleHandle() const { return m_moduleHandle; }

private:
    void* m_moduleHandle = nullptr;
    void* m_savedHandle = nullptr;
};

extern cResourceScope gResourceScope;
