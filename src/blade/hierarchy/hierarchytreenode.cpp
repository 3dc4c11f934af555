#include "blade/hierarchy/hierarchytreenode.h"

#include <memory>

template <class T>
HierarchyTreeNode<T>::HierarchyTreeNode(int nodeDepth, int index)
    : depth(nodeDepth)
    , curveIdx(index)
{}

template <class T>
HierarchyTreeNode<T>::~HierarchyTreeNode()
{
    for (HierarchyTreeNode* child : children) {
        delete child;
    }
}

template <class T>
HierarchyTreeNode<T>* HierarchyTreeNode<T>::addChild(int index)
{
    auto child = std::make_unique<HierarchyTreeNode>(depth + 1, index);
    children.push_back(child.get());
    return child.release();
}

template class HierarchyTreeNode<float>;
