#include "cli/commandrunner.h"
#include "cli/leaffolder.h"

#include <gtest/gtest.h>

namespace {

const Words subcommands = {"stack",     "contour", "junctions", "sinus",  "tips",
                           "hierarchy", "measure", "average",   "teeth",  "landmarks",
                           "project",   "run",     "remove",    "picture"};

} // namespace

TEST(Usage, HelpAndVersionGoToTheStandardOutput)
{
    const CommandResult version = runs({"--version"});
    EXPECT_EQ(version.out, "crenara 1.16\n");
    const CommandResult help = runs({"--help"});
    for (const std::string& name : subcommands) {
        EXPECT_NE(help.out.find("\n  " + name + " "), std::string::npos) << name;
        const CommandResult own = runs({name, "--help"});
        EXPECT_EQ(own.out.find("Usage: crenara " + name + " "), 0u) << own.out;
        EXPECT_EQ(own.err, "") << name;
    }
}

TEST(Usage, WrongUsageEndsWithStatusTwoAndTouchesNoFile)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    const std::string other = folder.addLeaf("b");
    const std::string table = folder.writeJunctions();
    const std::string stack = folder.makeStack({photograph});
    const std::string before = bytesOf(stack);
    const int files = folder.fileCount();

    struct Case
    {
        Words arguments;
        std::string message;
    };

    const std::vector<Case> cases = {
        {{}, "Usage: crenara SUBCOMMAND"},
        {{"contours", stack}, "no subcommand 'contours'"},
        {{"contour"}, "too few arguments"},
        {{"contour", stack, "more"}, "unexpected argument 'more'"},
        {{"contour", stack, "--colour", "red"}, "Unknown option 'colour'"},
        {{"contour", stack, "--fidelity", "9"}, "'fidelity' needs an integer from 10 to 100"},
        {{"contour", stack, "--channel", "pink"}, "'channel' needs one of auto, grey"},
        {{"contour", stack, "--background", "Dark"}, "'background' needs one of dark, light"},
        {{"contour", stack, "-o", photograph}, "should be the name of a .sdf file"},
        {{"sinus", stack, "--angle", "180"}, "'angle' needs a number from 1 to 179"},
        {{"sinus", stack, "--angle", "nan"}, "'angle' needs a number"},
        {{"sinus", stack, "--angle", "145,0"}, "'angle' needs a number"},
        {{"sinus", stack, "--half-neighbourhood", "2.5"}, "needs an integer from 1 to 200"},
        {{"hierarchy", stack, "both"}, "'both' is no method"},
        {{"hierarchy", stack, "none", "--limit-angle", "180"}, "from 1 to 179"},
        {{"hierarchy", stack, "none", "--tolerance", "0.04"}, "from 0.05 to 1"},
        {{"tips", stack, "--exclude", "1"}, "needs an integer from 2 to 50"},
        {{"tips", stack, "--venation", "pin"}, "'venation' needs one of pinnate, palmate"},
        {{"measure", stack, "--scaling", "-1"}, "'scaling' needs a number above 0"},
        {{"measure", stack, "--prefix", "a/b"}, "can't begin the names of the tables"},
        // The stack's own name forgotten: no photograph may be overwritten.
        {{"stack", photograph, other}, "should be the name of a .sdf file"},
        {{"stack", folder.file("n.sdf"), photograph, "--unit", "inch"}, "'unit' needs one of"},
        {{"stack", folder.file("n.sdf"), photograph, "--pixel-width", "inf"}, "above 0"},
        {{"project", photograph}, "should be the name of a .crp file"},
        {{"project", folder.file("p.crp"), "--name", "a\"b"}, "can't hold double quotes"},
        {{"run", "--as-is", photograph, "--junctions", table}, "option 'out' is missing"},
        {{"run", "--as-is", photograph, "--out", folder.file("o")},
         "option 'junctions' is missing"},
        {{"picture", stack}, "option 'out' is missing"},
    };
    for (const Case& given : cases) {
        const CommandResult result = fails(given.arguments, given.message, 2);
        EXPECT_EQ(result.out, "");
    }
    EXPECT_EQ(bytesOf(stack), before);
    EXPECT_EQ(folder.fileCount(), files);
}

TEST(Usage, AProjectFileHoldsTheFactsAndOptionsWinOverThem)
{
    LeafFolder folder;
    const std::string stack = folder.makeStack({folder.addLeaf("a", 3)});
    const std::string project = folder.file("Projekt ä.crp");
    runs({"project", project, "--name", "Änne", "--species", "Quercus; robur", "--venation",
          "palmate", "--scaling", "90.5"});
    EXPECT_EQ(bytesOf(project), "ProjectName\t\"Änne\"\nProjectPath\t\"" + folder.path().string() +
                                    "\"\nSpecies\t\"Quercus; robur\"\nGenotype\t\"\"\n"
                                    "GrowthCondition\t\"\"\nGroupLeaf\t\"\"\n"
                                    "VenationType\t\"PALMATE\"\nkineticParameters\ttrue\n"
                                    "InflectionPoint\t1\nScaling\t90.5\nStrengthFactor\t1\n");
    runs({"sinus", stack});
    runs({"measure", stack, "--project", project});
    const std::string table = folder.file("Änne_LeafMeasures.data");
    EXPECT_EQ(cellOf(table, "a", "Terminal_Peak_Number"), "1");

    runs({"measure", stack, "--project", project, "--venation", "pinnate", "--prefix", "own",
          "--out", folder.file("deep/er"), "--scaling", "1e6"});
    const std::string own = folder.file("deep/er/own_LeafMeasures.data");
    EXPECT_EQ(cellOf(own, "a", "Terminal_Peak_Number"), "no cell");
    EXPECT_EQ(cellOf(own, "a", "Blade_Area"), cellOf(table, "a", "Blade_Area"));
    EXPECT_NE(cellOf(own, "a", "Age(day)"), cellOf(table, "a", "Age(day)"));
    const std::string record = bytesOf(folder.file("deep/er/own_run.json"));
    EXPECT_NE(record.find("\"species\": \"Quercus; robur\""), std::string::npos) << record;
    EXPECT_NE(record.find("\"venation\": \"pinnate\""), std::string::npos) << record;

    fails({"measure", stack, "--project", folder.file("none.crp")}, "");
}
