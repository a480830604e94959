// ReactorList: the reactors one notifier of the host tells of its events.
#pragma once
#include <algorithm>
#include <vector>

namespace cadhost {

// Reactors in the order they came, each once. A reactor may add or remove reactors (itself among
// them) while it is being told: tell() calls each reactor that was there when it began and is
// still there when its turn comes.
template <class Reactor> class ReactorList {
public:
    void add(Reactor* reactor) {
        if (reactor && !contains(reactor))
            m_reactors.push_back(reactor);
    }
    void remove(Reactor* reactor) { std::erase(m_reactors, reactor); }
    template <class Pred> void removeIf(Pred pred) { std::erase_if(m_reactors, pred); }
    void clear() { m_reactors.clear(); }

    template <class Call> void tell(Call call) const {
        const std::vector<Reactor*> told = m_reactors;
        for (Reactor* reactor : told)
            if (contains(reactor))
                call(reactor);
    }

private:
    bool contains(Reactor* reactor) const {
        return std::find(m_reactors.begin(), m_reactors.end(), reactor) != m_reactors.end();
    }

    std::vector<Reactor*> m_reactors;
};

} // namespace cadhost
