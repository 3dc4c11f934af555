#include "blade/hierarchy/nohierarchyprocess.h"

void NoHierarchyProcess::run()
{
    if (leavesAreGood()) {
        createModelsForHierarchy();
    }
    tell("No Hierarchy process is complete");
    resetProgress();
}

std::string NoHierarchyProcess::process(int)
{
    return "";
}
