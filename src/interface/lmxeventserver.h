#pragma once

#include <vector>

class LMXAction;
class LMXEvent;
class LMXEventClient;

/// Delivers events to all clients of the process, synchronously and in the order in which they came
/// in; the sender gets its event too. Clients that come in during a delivery are still served in
/// it, and handlers may send further events, which are delivered at once. An exception that a
/// handler lets through ends the delivery and reaches the sender.
class LMXEventServer
{
public:
    /// Adds a client that is not in the list yet.
    static void attach(LMXEventClient& client);
    /// Takes a client out of the list, if it is there.
    static void detach(LMXEventClient& client);

    static void notifyEvent(LMXEvent& event);
    static void notifyAction(LMXAction& action);
    static void atEventBatchEnd();

private:
    // Must exist once in a process, however many libraries bring this code along.
    static std::vector<LMXEventClient*> clients_;
};
