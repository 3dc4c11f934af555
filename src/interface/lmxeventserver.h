#pragma once

#include <vector>

class LMXAction;
class LMXEvent;
class LMXEventClient;

/// The list of all clients of the process, in the order in which they came in, and the delivery to
/// them.
///
/// Delivery is synchronous: when `notifyEvent` returns, every client has reacted, the sender too. A
/// client may send further events from its reaction; they are delivered at once, in between. One
/// that comes in during a delivery is still served in it; one that goes out before its turn is not,
/// and no other loses its turn by that. An exception that a reaction lets through ends the delivery
/// and reaches the sender. The list belongs to the GUI thread and is not locked.
class LMXEventServer
{
public:
    /// Adds a client that is not in the list yet.
    static void attach(LMXEventClient& client);

    /// Takes a client out of the list, if it is there.
    static void detach(LMXEventClient& client);

    static void notifyEvent(LMXEvent& event);

    /// Tells an action that was applied or reverted.
    static void notifyAction(LMXAction& action);
    static void atEventBatchEnd();

private:
    class Walk;

    // Both must exist once in a process, however many libraries bring this code along. The list is
    // therefore no plain class data, which each of them would set up and destroy.
    static std::vector<LMXEventClient*>& clients();
    static Walk* innermostWalk;
};
