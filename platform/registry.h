// Handles of searches and threads. A registry looks a handle up before it touches anything: a wrong, old or
// foreign one is harmless. Searches get the odd numbers and threads the even ones, so neither is taken for the
// other.
#pragma once

#include <map>
#include <mutex>
#include <utility>

#include "platform/find.h"

namespace platform {

inline constexpr Handle kFirstSearch = 1;
inline constexpr Handle kFirstThread = 2;
inline constexpr Handle kHandleStep = 2;

// What the handles stand for. Any thread; one that lives as long as the process is never destroyed, as a
// background thread may still look at it while the process ends.
template <class Item>
class Registry {
 public:
    explicit Registry(Handle first) : m_first(first), m_next(first) {}

    Handle Add(Item item) {
        const std::lock_guard lock(m_guard);
        const Handle handle = m_next;
        m_next += kHandleStep;
        m_items.emplace(handle, std::move(item));
        return handle;
    }

    // False when the handle stands for nothing, or for nothing any more.
    bool Remove(Handle handle) {
        const std::lock_guard lock(m_guard);
        return m_items.erase(handle) != 0;
    }

    // What `use` answers to the item, while no other thread has it; `otherwise` when there is none.
    template <class Answer, class Use>
    Answer With(Handle handle, Answer otherwise, Use use) {
        const std::lock_guard lock(m_guard);
        const auto found = m_items.find(handle);
        return found == m_items.end() ? otherwise : use(found->second);
    }

    // Whether the handle was ever given, to an item that is still there or not.
    bool WasGiven(Handle handle) {
        const std::lock_guard lock(m_guard);
        return handle >= m_first && handle < m_next && (handle - m_first) % kHandleStep == 0;
    }

 private:
    std::mutex m_guard;
    std::map<Handle, Item> m_items;
    const Handle m_first;
    Handle m_next;
};

}  // namespace platform
