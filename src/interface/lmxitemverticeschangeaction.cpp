#include "interface/lmxitemverticeschangeaction.h"

#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "stack/modelitem.h"

LMXItemVerticesChangeAction::LMXItemVerticesChangeAction(ModelItem& subject)
    : LMXItemAction(subject)
{
    setVertices(subject.getVertices());
}

void LMXItemVerticesChangeAction::setVertices(const Vertices<int>& newVertices)
{
    vertices = newVertices;
    vertices.detach();
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
    ModelItem& target = getModelItem();
    Vertices<int> former = target.getVertices();
    former.detach();
    target.setVertices(vertices);
    target.getSelection().set(true);
    vertices = former;
    LMXModelItemVertexEvent event(target);
    LMXEventServer::notifyEvent(event);
}
