#pragma once

#include <vector>

/// A node of the record that a walk over the teeth of a half leaf leaves: a tooth at `depth`, with
/// the teeth that it carries as its children.
template <class T>
class HierarchyTreeNode
{
public:
    HierarchyTreeNode() = default;
    HierarchyTreeNode(int nodeDepth, int index);
    ~HierarchyTreeNode();
    HierarchyTreeNode(const HierarchyTreeNode&) = delete;
    HierarchyTreeNode& operator=(const HierarchyTreeNode&) = delete;

    void setDepth(int value) { depth = value; }

    int getDepth() const { return depth; }

    /// Row of the tooth's tip in the leaf segmentation, -1 for a node without a tip.
    int getCurveIdx() const { return curveIdx; }

    /// Adds a node one level down, and returns it; it belongs to this one.
    HierarchyTreeNode* addChild(int index);

    std::vector<HierarchyTreeNode*> getChildren() const { return children; }

private:
    int depth = 0;
    int curveIdx = -1;
    std::vector<HierarchyTreeNode*> children;
};

extern template class HierarchyTreeNode<float>;
