#include "interface/lmxitemtriangulationtagaction.h"

#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

LMXItemTriangulationTagAction::LMXItemTriangulationTagAction(ModelItem& subject)
    : LMXItemAction(subject)
    , oldTag(subject.getTriangulationTag())
    , newTag(subject.getTriangulationTag())
{}

void LMXItemTriangulationTagAction::apply()
{
    getModelItem().setTriangulationTag(newTag);
    LMXEventServer::notifyAction(*this);
    const StackSlice* slice = getModelItem().getSlice();
    if (auto* stack = slice ? dynamic_cast<LMXStack*>(slice->getStack()) : nullptr) {
        stack->setModified(true);
    }
}

void LMXItemTriangulationTagAction::revert()
{
    getModelItem().setTriangulationTag(oldTag);
    LMXEventServer::notifyAction(*this);
}
