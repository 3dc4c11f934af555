#pragma once

#include "blade/process/modelsmanager.h"

/// What the two methods that sort structures have in common: the run over the stack.
class HierarchyProcess : public ModelsManager
{
public:
    /// Makes nothing: the models are made by a run, once the leaves are found good.
    void createModels() override {}

    /// Checks all slices; if they are good, folds the labels of an earlier hierarchy back and works
    /// on each slice. Tells what is wrong, and in any case "Hierarchy process is complete".
    void run() override;

protected:
    /// Makes the models of the labels that the method gives: the secondary ones.
    virtual void createLabelModels();
};
