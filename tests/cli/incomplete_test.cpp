#include "cli/commandrunner.h"
#include "cli/leaffolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

/// The stack file's text without what stands from `begin` to the next blank line.
std::string without(const std::string& text, const std::string& begin)
{
    const std::size_t at = text.find(begin);
    return at == std::string::npos
               ? text
               : text.substr(0, at) + text.substr(std::min(text.size(), text.find("\n\n", at) + 2));
}

} // namespace

TEST(Incomplete, AStackWithSlicesLeftOutCanBeGoneOnWith)
{
    LeafFolder folder;
    folder.addLeaf("a", 3);
    folder.addBlank("blank");
    folder.addLeaf("c", 4);
    folder.addLeaf("norow", 4);
    const std::string all = folder.writeJunctions("all.tsv");
    const std::string table =
        folder.write("t.tsv", bytesOf(all).substr(0, bytesOf(all).find("norow")));
    const Words photographs = folder.photographs();
    const std::string stack = folder.file("o/o.sdf");
    fails(joined({"run", "--as-is", "--out", folder.file("o"), "--junctions", table}, photographs),
          "");
    runs({"run", "--as-is", "--out", folder.file("p"), "--junctions", table, photographs[0],
          photographs[2]});
    const std::string whole = folder.file("p/p.sdf");

    const std::vector<Words> stages = {{"sinus"},
                                       {"tips"},
                                       {"hierarchy", "none"},
                                       {"measure"},
                                       {"average", "bins", "--number", "1", "--out", "m"}};
    for (const Words& stage : stages) {
        Words words = stage;
        if (words.back() == "m") {
            words.back() = folder.file("m");
        }
        words.insert(words.begin() + 1, stack);
        fails(words, "Missing Contour in slice number :blank");
        const CommandResult result = runs(joined(words, {"--skip-incomplete"}));
        EXPECT_TRUE(result.says("slice blank: it has no contour")) << result.err;
        EXPECT_TRUE(result.says("slice norow: it has no two junctions")) << result.err;
        words[1] = whole;
        runs(words);
    }
    EXPECT_EQ(bytesOf(folder.file("o/o_LeafMeasures.data")),
              bytesOf(folder.file("p/p_LeafMeasures.data")));
    EXPECT_EQ(bytesOf(folder.file("o/o_PeakMeasures.data")),
              bytesOf(folder.file("p/p_PeakMeasures.data")));
    const std::string record = bytesOf(folder.file("o/o_run.json"));
    EXPECT_NE(record.find("\"slice\": \"norow\""), std::string::npos);

    const std::string before = bytesOf(stack);
    fails({"remove", stack, "blank", "nobody"}, "the stack has no slice nobody");
    fails({"remove", stack, "blank", "norow", "a", "c"}, "no slice would be left");
    EXPECT_EQ(bytesOf(stack), before);
    runs({"remove", stack, "blank", "norow"});
    std::string kept = bytesOf(stack);
    kept.replace(kept.find("STACK \"o\""), 9, "STACK \"p\"");
    EXPECT_EQ(kept, bytesOf(whole));
}

TEST(Incomplete, LeavesWithoutApexAndTablesWithoutTeethAreTold)
{
    LeafFolder folder;
    const std::string stack =
        folder.makeLandmarks({folder.addLeaf("a", 3), folder.addLeaf("b", 3)});
    runs({"measure", stack});
    const auto header = [&](const std::string& name) {
        return folder.read(name).substr(0, folder.read(name).find('\n') + 1);
    };
    const std::string leaves = header("s_LeafMeasures.data");
    const std::string teeth = header("s_PeakMeasures.data");
    const std::string text = bytesOf(stack);
    folder.write("s.sdf", without(text, "MODELITEM \"Apex\" \"b\""));
    fails({"measure", stack}, "slice b: it lacks contour, junctions or apex");
    EXPECT_EQ(tableOf(folder.file("s_LeafMeasures.data")).size(), 2u);
    EXPECT_NE(folder.read("s_run.json").find("\"slice\": \"b\""), std::string::npos);
    folder.write("s.sdf", without(without(folder.read("s.sdf"), "MODELITEM \"Apex\" \"a\""),
                                  "MODELITEM \"Primary Sinus\" \"a\""));
    fails({"measure", stack}, "slice a: it lacks");
    EXPECT_EQ(folder.read("s_LeafMeasures.data"), leaves);
    EXPECT_EQ(folder.read("s_PeakMeasures.data"), teeth);
}

TEST(Incomplete, NamesWithATabAndCurvesWithoutAPlaneAreRefused)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    const std::string named = folder.file("a\tb.tif");
    fs::copy_file(photograph, named);
    fails({"stack", folder.file("n.sdf"), named}, "tables can't hold a name with a TAB");
    const std::string stack = folder.makeLandmarks({photograph}, false);
    std::string text = bytesOf(stack);
    for (std::size_t at = 0; (at = text.find("\"a\"", at)) != std::string::npos; at += 3) {
        text.replace(at, 3, "\"a\tb\"");
    }
    folder.write("s.sdf", text);
    fails({"measure", stack}, "tables can't hold a name with a TAB");
    fails({"landmarks", stack, folder.file("l.tsv")}, "tables can't hold a name with a TAB");
    const std::string curve = folder.write("none.cv", "# 0\n# 0\n# 3\n\n\n\n");
    fails({"picture", curve, "--sheet", folder.file("x.png")}, curve + ": ");
}

TEST(Incomplete, ValuesOfAProjectFileAreHeldToWhatTheOptionsAre)
{
    LeafFolder folder;
    const std::string stack = folder.makeLandmarks({folder.addLeaf("a", 3)}, false);
    const std::string project = folder.file("p.crp");
    runs({"project", project, "--strength", "2", "--scaling", "10.5"});
    const std::string good = bytesOf(project);

    struct Case
    {
        std::string from;
        std::string to;
        std::string message;
    };

    for (const Case& given :
         {Case{"PINNATE", "palmate", "'VenationType' needs one of PINNATE, PALMATE, not 'palmate'"},
          Case{"\t10.5", "\t10,5", "'Scaling' needs a number above 0, not '10,5'"},
          Case{"InflectionPoint\t1", "InflectionPoint\t-1",
               "'InflectionPoint' needs a number above"},
          Case{"StrengthFactor\t2\n", "", "'StrengthFactor' is missing"}}) {
        std::string text = good;
        text.replace(text.find(given.from), given.from.size(), given.to);
        folder.write("p.crp", text);
        fails({"measure", stack, "--project", project}, project + ": " + given.message, 2);
        runs({"measure", stack, "--project", project, "--venation", "palmate", "--strength", "2",
              "--inflection", "1", "--scaling", "3"});
    }
}
