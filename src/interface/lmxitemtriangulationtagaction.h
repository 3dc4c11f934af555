#pragma once

#include "interface/lmxaction.h"
#include "shape/meshes/curvestacktriangulationcontourtag.h"

/// Gives an item another triangulation tag. Told to the clients as an action, not as an event; the
/// `reverted` flag is not kept.
class LMXItemTriangulationTagAction : public LMXItemAction
{
public:
    /// Keeps the item's present tag as what `revert` brings back.
    explicit LMXItemTriangulationTagAction(ModelItem& subject);

    void setTriangulationTag(CurveStackTriangulationContourTag tag) { newTag = tag; }

    CurveStackTriangulationContourTag getTriangulationTag() const { return newTag; }

    /// Marks the item's live stack as modified, too.
    void apply() override;
    void revert() override;

private:
    CurveStackTriangulationContourTag oldTag;
    CurveStackTriangulationContourTag newTag;
};
