#pragma once

#include "interface/lmxaction.h"
#include "shape/vertices/vertices.h"

/// Gives an item other vertices. Applying and reverting are one exchange: the action holds the
/// other state at any time. All vertices are selected afterwards.
class LMXItemVerticesChangeAction : public LMXItemAction
{
public:
    /// The item's own vertices, until others are set.
    explicit LMXItemVerticesChangeAction(ModelItem& subject);

    /// Copies the vertices, of dimension 2.
    void setVertices(const Vertices<int>& newVertices);

    void apply() override;
    void revert() override;

private:
    void exchange();

    Vertices<int> vertices;
};
