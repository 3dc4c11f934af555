#include "interface/lmxitemverticeschangeaction.h"

#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "stack/modelitem.h"

LMXItemVerticesChangeAction::LMXItemVerticesChangeAction(ModelItem& item)
    : LMXItemAction(item)
{
    setVertices(item.getVertices());
}

void LMXItemVerticesChangeAction::setVertices(const Vertices<int>& vertices)
{
    vertices_ = vertices;
    vertices_.detach();
}

void LMXItemVerticesChangeAction::apply()
{
    LMXAction::apply();
    exchange();
}

void LMXItemVerticesChangeAction::revert()
{
    LMXAction::revert();
    exchange();
}

void LMXItemVerticesChangeAction::exchange()
{
    ModelItem& item = getModelItem();
    Vertices<int> former = item.getVertices();
    former.detach();
    item.setVertices(vertices_);
    item.getSelection().set(true);
    vertices_ = former;
    LMXModelItemVertexEvent event(item);
    LMXEventServer::notifyEvent(event);
}
