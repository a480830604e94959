// VariableValues: the values of some of a table's variables, held by each definition's place.
#pragma once
#include "VariableTable.h"

#include <optional>
#include <vector>

namespace cadhost {

// Values kept for definitions of one variable table. A read or write is an index by the
// definition's place, not a lookup by name: a module that reads or sets every variable touches
// them in memory order. When the session loads another table it moves the values over with
// rebind; a definition of any other table must not be used here.
class VariableValues {
public:
    // The value stored for def; null when none is.
    const VarValue* find(const VarDef& def) const {
        return def.index < m_slots.size() && m_slots[def.index] ? &*m_slots[def.index] : nullptr;
    }
    void set(const VarDef& def, VarValue value);
    void clear() { m_slots.clear(); }
    // Moves each value from its definition in from to the definition of the same name in to;
    // values of names that to does not hold are dropped.
    void rebind(const VariableTable& from, const VariableTable& to);

private:
    std::vector<std::optional<VarValue>> m_slots;
};

} // namespace cadhost
