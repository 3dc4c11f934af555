#include "interface/lmxeventserver.h"

#include "interface/lmxeventclient.h"

#include <algorithm>

LMXEventServer::Walk* LMXEventServer::innermostWalk = nullptr;

std::vector<LMXEventClient*>& LMXEventServer::clients()
{
    // Never destroyed: clients go out until the very end of the process.
    static auto* const list = new std::vector<LMXEventClient*>;
    return *list;
}

/// One delivery, which may stand inside another. It reads the list afresh at each step, and is told
/// when a client in front of its place goes out.
class LMXEventServer::Walk
{
public:
    Walk()
        : outer_(innermostWalk)
    {
        innermostWalk = this;
    }

    ~Walk() { innermostWalk = outer_; }

    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    /// Null at the end of the list.
    LMXEventClient* next() { return next_ < clients().size() ? clients()[next_++] : nullptr; }

    static void clientGone(std::size_t place)
    {
        for (Walk* walk = innermostWalk; walk != nullptr; walk = walk->outer_) {
            if (place < walk->next_) {
                --walk->next_;
            }
        }
    }

private:
    Walk* outer_;
    std::size_t next_ = 0;
};

void LMXEventServer::attach(LMXEventClient& client)
{
    if (std::find(clients().begin(), clients().end(), &client) == clients().end()) {
        clients().push_back(&client);
    }
}

void LMXEventServer::detach(LMXEventClient& client)
{
    const auto found = std::find(clients().begin(), clients().end(), &client);
    if (found != clients().end()) {
        Walk::clientGone(static_cast<std::size_t>(found - clients().begin()));
        clients().erase(found);
    }
}

void LMXEventServer::notifyEvent(LMXEvent& event)
{
    Walk walk;
    while (LMXEventClient* client = walk.next()) {
        client->processEvent(event);
    }
}

void LMXEventServer::notifyAction(LMXAction& action)
{
    Walk walk;
    while (LMXEventClient* client = walk.next()) {
        client->processAction(action);
    }
}

void LMXEventServer::atEventBatchEnd()
{
    Walk walk;
    while (LMXEventClient* client = walk.next()) {
        client->atEventBatchEnd();
    }
}
