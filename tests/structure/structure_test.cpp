#include "structure/includegraph.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const std::set<std::string> foundation = {"system", "numerics"};

std::set<std::string> with(std::set<std::string> layers, const std::set<std::string>& more)
{
    layers.insert(more.begin(), more.end());
    return layers;
}

/// Who may include whom. The one place where this is written down for the machine.
LayerTable allowedIncludes()
{
    const std::set<std::string> qt = {"Q"};
    const std::set<std::string> shape = with(foundation, {"shape", "colormap"});
    const std::set<std::string> image = with(shape, {"image"});
    const std::set<std::string> stack = with(image, {"stack"});
    const std::set<std::string> interface = with(stack, {"interface"});
    const std::set<std::string> blade = with(interface, {"blade"});
    const std::set<std::string> all = with(blade, {"shell"});
    return {
        {"system", {{"numerics"}, {}}},
        {"numerics", {{"system"}, {"fftw3", "omp"}}},
        {"colormap", {foundation, {}}},
        {"shape", {with(foundation, {"colormap"}), {"omp"}}},
        {"image", {shape, {"tiff", "H5", "hdf5", "omp"}}},
        {"stack", {image, {}}},
        {"interface", {stack, qt}},
        {"blade", {interface, qt}},
        {"shell", {blade, qt}},
        {"host/document", {all, qt}},
        {"host/panels", {with(all, {"host/document"}), qt}},
        {"host/editing", {with(all, {"host/document"}), qt}},
        {"host/view", {with(all, {"host/editing"}), qt}},
        {"host/results", {with(all, {"host/document"}), qt}},
        {"host",
         {with(all, {"host/document", "host/panels", "host/editing", "host/view", "host/results"}),
          qt}},
        {"cli", {all, qt}},
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
    LayerTable rest = allowedIncludes();
    for (const std::string& layer : foundation) {
        rest.erase(layer);
    }
    // Takes away, again and again, the layers that include nothing that is left.
    while (!rest.empty()) {
        const std::size_t before = rest.size();
        for (auto layer = rest.begin(); layer != rest.end();) {
            const auto& targets = layer->second.layers;
            const bool free = std::none_of(targets.begin(), targets.end(), [&](const auto& target) {
                return rest.count(target) != 0;
            });
            layer = free ? rest.erase(layer) : std::next(layer);
        }
        ASSERT_LT(rest.size(), before) << "cycle with " << rest.begin()->first;
    }
}

TEST(IncludeGraph, FindsArrowsAgainstTheTable)
{
    Tree tree;
    tree.add("src/shape/curves/curve.h",
             "#include \"image/values/colormap.h\"\n #  include \"image/pixels/image0.h\"\n");
    tree.add("src/image/values/colormap.h",
             "#include \"shape/curves/curve.h\"\n#include <vector>\n");
    tree.add("src/image/pixels/image0.h", "// #include \"shell/window.h\"\n#include <tiffio.h>\n");
    tree.add("src/stack/stack.cpp", "#include <QString>\n#include \"stack.h\"\n");
    tree.add("src/other/a.h", "");
    tree.add("samples/leaf.cpp", "#include \"leaf.h\"\n#include \"shape/curves/curve.h\"\n");
    tree.add("samples/leaf.h", "#include <tiffio.h>\n");
    EXPECT_EQ(lines(tree.graph().forbiddenIncludes(allowedIncludes())),
              "image/values/colormap.h includes \"shape/curves/curve.h\"\n"
              "other/a.h: the folder is not in the table\n"
              "samples/leaf.cpp includes \"shape/curves/curve.h\"\n"
              "shape/curves/curve.h includes \"image/pixels/image0.h\"\n"
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
