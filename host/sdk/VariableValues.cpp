// VariableValues: the values of some of a table's variables, held by each definition's place.
#include "VariableValues.h"

namespace cadhost {

void VariableValues::set(const VarDef& def, VarValue value) {
    if (def.index >= m_slots.size())
        m_slots.resize(def.index + 1);
    m_slots[def.index] = std::move(value);
}

void VariableValues::rebind(const VariableTable& from, const VariableTable& to) {
    std::vector<std::optional<VarValue>> old = std::move(m_slots);
    m_slots.clear();
    const std::vector<VarDef>& defs = from.definitions();
    for (size_t i = 0; i < old.size() && i < defs.size(); ++i)
        if (old[i])
            if (const VarDef* def = to.find(defs[i].name))
                set(*def, std::move(*old[i]));
}

} // namespace cadhost
