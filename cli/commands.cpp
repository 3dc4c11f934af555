#include "cli/commands.h"

const std::vector<Command>& commands()
{
    static const std::vector<Command> table = {
        {"stack", "makes a stack of photographs", runStack},
        {"leaves", "finds the leaves on photographs and makes a stack of them", runLeaves},
        {"contour", "finds the outline of the leaf on each slice", runContour},
        {"junctions", "puts the blade-petiole junctions of a table on the slices", runJunctions},
        {"sinus", "finds apex and sinuses", runSinus},
        {"tips", "finds the tips of the teeth", runTips},
        {"hierarchy", "sorts sinuses and tips by the teeth that carry teeth", runHierarchy},
        {"measure", "writes the tables of leaf and tooth measures", runMeasure},
        {"average", "writes average leaf shapes", runAverage},
        {"teeth", "writes each tooth as a curve file", runTeeth},
        {"landmarks", "writes the places of the landmarks as a table", runLandmarks},
        {"project", "writes a project file", runProject},
        {"run", "does all of this on a set of photographs", runRun},
        {"remove", "takes slices off a stack", runRemove},
        {"picture", "draws the landmarks on the photographs", runPicture},
    };
    return table;
}
