#include "blade/hierarchy/hierarchyprocess.h"

#include "interface/lmxstack.h"

void HierarchyProcess::createLabelModels()
{
    createModelSecondarySinus();
    createModelSecondaryPeaks();
}

void HierarchyProcess::run()
{
    resetProgress();
    if (leavesAreGood()) {
        createModelsForHierarchy();
        createLabelModels();
        const int slices = stack->getNumSlices();
        for (int i = 0; i < slices; ++i) {
            showProgress(i, slices);
            process(i);
        }
    }
    tell("Hierarchy process is complete");
    resetProgress();
}
