#pragma once

#include "blade/process/modelsmanager.h"

/// The choice of no hierarchy: all sinuses and tips are primary.
class NoHierarchyProcess : public ModelsManager
{
public:
    NoHierarchyProcess() = default;

    void createModels() override {}

    /// Checks all slices and, if they are good, folds the labels of an earlier hierarchy back.
    /// Tells what is wrong, and in any case "No Hierarchy process is complete".
    void run() override;

    /// Nothing is done slice by slice; returns the empty text.
    std::string process(int slice) override;
};
