#pragma once

#include <cstddef>
#include <vector>

namespace zavex::display {

class Listener;

/**
 * Listeners in the order in which they were added; owns none of them.
 *
 * Bears additions and removals while it is walked: who is added is not visited by the walks under
 * way, who is removed is not visited any more.
 */
class ListenerList {
public:
    void add(Listener* listener) { mListeners.push_back(listener); }

    /** Takes out the first occurrence; the others keep their order. */
    void remove(const Listener* listener);

    /** Visits the listener added first first. */
    template <typename Visit>
    void forEach(Visit visit)
    {
        const Walk walk{*this};
        const std::size_t count = mListeners.size();
        for (std::size_t i = 0; i < count; ++i)
            if (Listener* const listener = mListeners[i])
                visit(*listener);
    }

    /** Asks the listener added last first, until one answers true; returns whether one did. */
    template <typename Ask>
    bool askFromLast(Ask ask)
    {
        const Walk walk{*this};
        for (std::size_t i = mListeners.size(); i-- > 0;)
            if (Listener* const listener = mListeners[i]; listener && ask(*listener))
                return true;
        return false;
    }

private:
    /** Keeps positions while at least one walk is under way; the last one closes the gaps. */
    class Walk {
    public:
        explicit Walk(ListenerList& list) : mList(list) { ++mList.mWalks; }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        ~Walk()
        {
            if (--mList.mWalks == 0)
                std::erase(mList.mListeners, nullptr);
        }

    private:
        ListenerList& mList;
    };

    std::vector<Listener*> mListeners; // null where one was removed during a walk
    int mWalks = 0;
};

} // namespace zavex::display
