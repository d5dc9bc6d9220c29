#include "display/dis_listenerlist.h"

#include <algorithm>

namespace zavex::display {

void ListenerList::remove(const Listener* listener)
{
    const auto found = std::ranges::find(mListeners, listener);
    if (found == mListeners.end())
        return;

    if (mWalks > 0)
        *found = nullptr;
    else
        mListeners.erase(found);
}

} // namespace zavex::display
