#include "interface/lmxeventserver.h"

#include "interface/lmxeventclient.h"

#include <algorithm>

std::vector<LMXEventClient*> LMXEventServer::clients_;

void LMXEventServer::attach(LMXEventClient& client)
{
    if (std::find(clients_.begin(), clients_.end(), &client) == clients_.end()) {
        clients_.push_back(&client);
    }
}

void LMXEventServer::detach(LMXEventClient& client)
{
    clients_.erase(std::remove(clients_.begin(), clients_.end(), &client), clients_.end());
}

void LMXEventServer::notifyEvent(LMXEvent& event)
{
    for (std::size_t i = 0; i < clients_.size(); ++i) {
        clients_[i]->processEvent(event);
    }
}

void LMXEventServer::notifyAction(LMXAction& action)
{
    for (std::size_t i = 0; i < clients_.size(); ++i) {
        clients_[i]->processAction(action);
    }
}

void LMXEventServer::atEventBatchEnd()
{
    for (std::size_t i = 0; i < clients_.size(); ++i) {
        clients_[i]->atEventBatchEnd();
    }
}
