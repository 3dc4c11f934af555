#include "structure/includegraph.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Rooms = std::set<std::string>;

const Rooms foundation = {"system", "numerics"};

Rooms operator+(Rooms rooms, const Rooms& more)
{
    rooms.insert(more.begin(), more.end());
    return rooms;
}

/// The rooms of one hall.
Rooms in(const std::string& hall, const Rooms& names)
{
    Rooms rooms;
    for (const std::string& name : names) {
        rooms.insert(hall + "/" + name);
    }
    return rooms;
}

/// Who may include whom. The one place where this is written down for the machine.
RoomTable allowedIncludes()
{
    const std::set<std::string> qt = {"Q"};
    const std::set<std::string> none;
    const Rooms vertices = foundation + in("shape", {"vertices"});
    const Rooms shape = vertices + in("shape", {"curves", "meshes", "registration"});
    const Rooms pixels = vertices + Rooms{"colormap"} + in("image", {"values", "pixels"});
    const Rooms image = shape + pixels + in("image", {"filters", "regions", "files", "sources"});
    const Rooms stack = image + Rooms{"stack"};
    const Rooms document = stack + Rooms{"interface"};
    const Rooms process = document + in("blade", {"geometry", "process"});
    const Rooms blade = process + in("blade", {"project", "contour", "landmarks", "hierarchy",
                                               "measures", "averages"});
    const Rooms pages = blade + in("shell", {"settings", "widgets"});
    const Rooms shell = pages + in("shell", {"project", "pages", "window"});
    const Rooms outside = {"intake", "intake/scale", "findings"};
    const Rooms desk = shell + outside + Rooms{"host/document"};
    return {
        {"system", {{"numerics"}, none}},
        {"numerics", {{"system"}, {"fftw3"}}},
        {"colormap", {foundation, none}},

        {"shape/vertices", {foundation, none}},
        {"shape/curves", {vertices, none}},
        {"shape/meshes", {vertices + Rooms{"colormap", "shape/curves"}, none}},
        {"shape/registration",
         {vertices + Rooms{"colormap", "shape/curves", "shape/meshes"}, none}},

        {"image/values", {foundation + Rooms{"colormap"}, none}},
        {"image/pixels", {pixels, {"omp"}}},
        {"image/filters", {pixels, none}},
        {"image/regions", {pixels + Rooms{"image/filters", "shape/curves"}, none}},
        {"image/files", {pixels, {"tiff", "H5"}}},
        {"image/sources", {pixels + Rooms{"image/files"}, none}},

        {"stack", {image, none}},
        {"interface", {stack, qt}},

        {"blade/geometry", {document, qt}},
        {"blade/process", {document + Rooms{"blade/geometry"}, qt}},
        {"blade/project", {process, qt}},
        {"blade/contour", {process, qt}},
        {"blade/landmarks", {process, qt}},
        {"blade/hierarchy", {process, qt}},
        {"blade/measures", {process + Rooms{"blade/project"}, qt}},
        {"blade/averages", {process + Rooms{"blade/measures"}, qt}},

        {"shell/settings", {blade, qt}},
        {"shell/widgets", {blade + Rooms{"shell/settings"}, qt}},
        {"shell/project", {pages, qt}},
        {"shell/pages", {pages, qt}},
        {"shell/window", {shell, qt}},
        {"shell/plugin", {shell, qt}},

        {"intake/scale", {foundation, {"Q", "opencv2"}}},
        {"intake", {blade + Rooms{"intake/scale"}, {"Q", "opencv2"}}},
        {"findings", {blade, qt}},
        {"host/document", {desk, qt}},
        {"host/panels", {desk, qt}},
        {"host/editing", {desk, qt}},
        {"host/view", {desk + Rooms{"host/editing"}, qt}},
        {"host/results", {desk, qt}},
        {"host",
         {desk + Rooms{"shell/plugin"} + in("host", {"panels", "editing", "view", "results"}), qt}},
        {"cli", {blade + outside, qt}},
        {"samples", {foundation, {"tiff"}}},
    };
}

std::string lines(const std::vector<std::string>& texts)
{
    std::string joined;
    for (const std::string& text : texts) {
        joined += text + "\n";
    }
    return joined;
}

/// A small tree with one file per name.
class Tree
{
public:
    void add(const std::string& name, const std::string& content)
    {
        std::filesystem::create_directories(folder_.path() /
                                            std::filesystem::path(name).parent_path());
        folder_.write(name, content);
    }

    IncludeGraph graph() const { return IncludeGraph(folder_.path()); }

private:
    TemporaryFolder folder_;
};

} // namespace

TEST(IncludeGraph, TheProjectIncludesOnlyWhatTheTableAllows)
{
    const IncludeGraph graph(CRENARA_SOURCE_DIR);
    EXPECT_GT(graph.fileCount(), 20);
    EXPECT_EQ(lines(graph.forbiddenIncludes(allowedIncludes())), "");
}

TEST(IncludeGraph, NoFileOfTheProjectIncludesItselfByARoundabout)
{
    EXPECT_EQ(lines(IncludeGraph(CRENARA_SOURCE_DIR).cycle()), "");
}

TEST(IncludeGraph, TheTableHasNoCycleButInTheFoundation)
{
    RoomTable rest = allowedIncludes();
    for (const std::string& room : foundation) {
        rest.erase(room);
    }
    // Takes away, again and again, the rooms that include nothing that is left.
    while (!rest.empty()) {
        const std::size_t before = rest.size();
        for (auto room = rest.begin(); room != rest.end();) {
            const auto& targets = room->second.rooms;
            const bool free = std::none_of(targets.begin(), targets.end(), [&](const auto& target) {
                return target != room->first && rest.count(target) != 0;
            });
            room = free ? rest.erase(room) : std::next(room);
        }
        ASSERT_LT(rest.size(), before) << "cycle with " << rest.begin()->first;
    }
}

TEST(IncludeGraph, FindsArrowsAgainstTheTable)
{
    Tree tree;
    tree.add("src/shape/curves/curve.h",
             "#include \"image/values/colormap.h\"\n #  include \"shape/meshes/mesh.h\"\n");
    tree.add("src/shape/meshes/mesh.h",
             "#include \"shape/curves/curve.h\"\n#include \"image/values/colormap.h\"\n");
    tree.add("src/image/values/colormap.h",
             "#include \"shape/curves/curve.h\"\n#include <vector>\n");
    tree.add("src/image/files/tiff.h", "// #include \"shell/window.h\"\n#include <tiffio.h>\n");
    tree.add("src/image/pixels/image0.h", "#include <tiffio.h>\n");
    tree.add("src/image/astray.h", "");
    tree.add("src/stack/stack.cpp", "#include <QString>\n#include \"stack.h\"\n");
    tree.add("findings/facts.h", "#include \"intake/leaf.h\"\n");
    tree.add("host/view/view.cpp", "#include \"intake/leaf.h\"\n#include <opencv2/core.hpp>\n");
    tree.add("intake/leaf.h", "#include <opencv2/core.hpp>\n");
    tree.add("samples/leaf.cpp", "#include \"leaf.h\"\n#include \"shape/curves/curve.h\"\n");
    tree.add("samples/leaf.h", "#include <tiffio.h>\n");
    EXPECT_EQ(lines(tree.graph().forbiddenIncludes(allowedIncludes())),
              "findings/facts.h includes \"intake/leaf.h\"\n"
              "host/view/view.cpp includes <opencv2/core.hpp>\n"
              "image/astray.h: the folder is not in the table\n"
              "image/pixels/image0.h includes <tiffio.h>\n"
              "image/values/colormap.h includes \"shape/curves/curve.h\"\n"
              "samples/leaf.cpp includes \"shape/curves/curve.h\"\n"
              "shape/curves/curve.h includes \"image/values/colormap.h\"\n"
              "shape/curves/curve.h includes \"shape/meshes/mesh.h\"\n"
              "stack/stack.cpp includes <QString>\n"
              "stack/stack.cpp includes \"stack.h\", which is no file\n");
}

TEST(IncludeGraph, FindsCycles)
{
    Tree tree;
    tree.add("src/shape/a.h", "#include \"shape/b.h\"\n");
    tree.add("src/shape/b.h", "#include \"shape/d.h\"\n#include \"shape/c.h\"\n");
    tree.add("src/shape/c.h", "#include \"shape/b.h\"\n");
    tree.add("src/shape/d.h", "");
    EXPECT_EQ(lines(tree.graph().cycle()), "shape/b.h\nshape/c.h\nshape/b.h\n");
}
