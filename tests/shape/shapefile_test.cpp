// The text files of all shapes.

#include "shape/meshes/quadmesh.h"
#include "shape/meshes/trimesh.h"
#include "support/commalocale.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

#include <cmath>
#include <limits>
#include <memory>
#include <set>
#include <sstream>

namespace {

const std::string saveWhere = "void Shape::save(const string&,const bool) const";
const std::string loadWhere = "Shape<T>::load(const string&)";
const std::string loadFileWhere = "Shape<T>* Shape<T>::loadFile(const string&)";
const std::string format = "Invalid shape description format";

template <class T>
std::string textOf(const Shape<T>& shape)
{
    std::ostringstream stream;
    shape.write(stream);
    return stream.str();
}

/// A shape of each type by suffix. Numbers are short, so that they come back as they were.
std::vector<std::pair<std::string, std::unique_ptr<Shape<float>>>> oneOfEach()
{
    std::vector<std::pair<std::string, std::unique_ptr<Shape<float>>>> shapes;
    for (const bool open : {false, true}) {
        shapes.emplace_back("cv", std::make_unique<Curve<float>>(2, 5, 0, 0, open));
        shapes.emplace_back("cs", std::make_unique<CurveStack<float>>(3, 3, 2, 0, 0, open));
        shapes.emplace_back("qm", std::make_unique<QuadMesh<float>>(3, 2, 3, 0, 0, open));
    }
    shapes.emplace_back("vx", std::make_unique<Vertices<float>>(3, 4, 0, 0));
    shapes.emplace_back("vs", std::make_unique<VertexStack<float>>(2, 2, 3, 0, 0));
    auto mesh = std::make_unique<TriMesh<float>>(3, 4, 0, 0);
    mesh->addTriangle(0, 1, 2);
    mesh->addTriangle(2, 1, 3);
    for (int i = 0; i < 4; ++i) {
        mesh->setNormal(i, vectorOf<float>({0, 1, 0}));
    }
    shapes.emplace_back("tm", std::move(mesh));
    int number = 0;
    for (const auto& shape : shapes) {
        for (auto walk = shape.second->vertexIterator(); walk.current() != nullptr; walk++) {
            for (int c = 0; c < shape.second->getSpace(); ++c) {
                (*walk.current())[c] = static_cast<float>(number++ * 37 % 200 - 99) / 4.0f;
            }
        }
    }
    return shapes;
}

/// Replaces each number in turn by another, and gives each text with where its new number stands.
std::vector<std::pair<std::string, std::size_t>> damaged(const std::string& text,
                                                         const std::string& number)
{
    std::vector<std::pair<std::string, std::size_t>> texts;
    for (std::size_t i = text.find_first_not_of("# \n"); i < text.size();) {
        const std::size_t end = std::min(text.find_first_of(" \n", i), text.size());
        texts.emplace_back(text.substr(0, i) + number + text.substr(end), i);
        i = text.find_first_not_of("# \n", end);
    }
    return texts;
}

} // namespace

TEST(ShapeFile, IsTheTextThatBiologistsKnow)
{
    Curve<float> curve = curveOf<float>({{1234.567f, -0.5f}, {1e10f, 0}, {3, 4}}, false);
    curve.remove(2);
    EXPECT_EQ(textOf(curve), "# 0\n# 2\n# 2\n1234.57 -0.5\n1e+10 0\n");
    EXPECT_EQ(textOf(Vertices<float>()), "# 6\n# 0\n# 0\n");
    const CurveStack<float> stack(1, 2, 1, 0, 0, true);
    EXPECT_EQ(textOf(stack).substr(0, 18), "# 3\n# 1\n# 2\n\n\n# 1\n");
}

TEST(ShapeFile, AllTypesComeBackAndAreRefusedWithFileAndReasonWhenDamaged)
{
    const TemporaryFolder folder;
    std::set<int> types;
    for (const auto& [suffix, shape] : oneOfEach()) {
        SCOPED_TRACE(shape->getShapeTypeName());
        const std::string text = textOf(*shape);
        shape->save(folder.file("leaf"), true);
        const std::unique_ptr<Shape<float>> loaded(
            Shape<float>::loadFile(folder.file("leaf." + suffix)));
        EXPECT_EQ(loaded->getName(), "leaf");
        // A mesh in squares takes no type for open but that of a stack.
        EXPECT_EQ(textOf(*loaded), text[2] == '5' ? "# 4" + text.substr(3) : text);
        types.insert(shape->getShapeType());

        const auto refuses = [&, &kept = *shape](const std::string& bad) {
            const std::string name = folder.write("bad." + suffix, bad);
            for (const bool anyType : {true, false}) {
                try {
                    if (anyType) {
                        delete Shape<float>::loadFile(name);
                    } else {
                        kept.load(name);
                    }
                    return false;
                } catch (const FileFormatError& error) {
                    EXPECT_EQ(error.getFilename(), name);
                    EXPECT_FALSE(error.getWhat().empty());
                }
            }
            return textOf(kept) == text;
        };
        for (std::size_t cut = 0; cut <= text.find_last_of(" \n", text.size() - 2); ++cut) {
            EXPECT_TRUE(refuses(text.substr(0, cut))) << cut;
        }
        for (const char* word : {"x", "nix"}) {
            for (const auto& [bad, at] : damaged(text, word)) {
                EXPECT_TRUE(refuses(bad)) << bad << at;
            }
        }
        // Behind the type, which `load` does not look at, dimension and counts stand behind a mark.
        // The last mark of a mesh in triangles tells whether normals follow.
        for (const char* number : {"-1", "-2000000000", "2000000000", "99999999999"}) {
            for (const auto& [bad, at] : damaged(text, number)) {
                if (at > 2 && text[at - 2] == '#' && (suffix != "tm" || at < text.rfind('#'))) {
                    EXPECT_TRUE(refuses(bad)) << bad;
                }
            }
        }
        for (std::size_t i = 0; suffix == "tm" && i < 12; i += 2) {
            for (const char* index : {"-1", "4"}) {
                const std::size_t at = text.find("\n0 1 2\n") + 1 + i;
                EXPECT_TRUE(refuses(std::string(text).replace(at, 1, index))) << at;
            }
        }
    }
    EXPECT_EQ(types, (std::set<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(ShapeFile, SavesUnderTheSuffixAndKeepsWhatIsThereInAnyLocale)
{
    const TemporaryFolder folder;
    const Curve<float> curve = curveOf<float>({{1.5f, 123456}, {-0.25f, 1e7f}}, true);
    const std::string before = textOf(curve);
    const CommaLocale comma;
    curve.save(folder.file("leaf.txt"));
    EXPECT_EQ(folder.read("leaf.txt.cv"), before);
    EXPECT_EQ(Curve<float>(folder.file("leaf.txt.cv")).toVector(), curve.toVector());
    EXPECT_RAISES(FileWriteError, saveWhere, "File already exists",
                  Curve<float>().save(folder.file("leaf.txt.cv")));
    EXPECT_EQ(folder.read("leaf.txt.cv"), before);
    Curve<float>::square(0, 0, 2).save(folder.file("leaf.txt.cv"), true);
    EXPECT_NE(folder.read("leaf.txt.cv"), before);
    EXPECT_EQ(folder.fileCount(), 1);
    EXPECT_THROW(curve.save(folder.file("none/leaf")), FileWriteError);
    std::ofstream full("/dev/full");
    EXPECT_THROW(Curve<float>(2, 10000, 0, 0, true).write(full), FileWriteError);
    EXPECT_EQ(full.exceptions(), std::ios::goodbit);
}

TEST(ShapeFile, ReadsAnyLineEndsAndTellsWhatIsNoShape)
{
    const TemporaryFolder folder;
    const auto load = [&](const std::string& text) {
        return std::unique_ptr<Shape<double>>(
            Shape<double>::loadFile(folder.write("shape.cv", text)));
    };
    EXPECT_EQ(load("#1#2\r\n# 2 0.5 1\r\n2\n\n3e2")->toVector(),
              vectorOf<double>({0.5, 1, 2, 300}));
    for (const char* text : {"", "x 1\n# 2\n# 0\n", "# leaf\n"}) {
        EXPECT_RAISES(FileFormatError, loadFileWhere, format, load(text));
    }
    for (const char* text : {"# 9\n# 2\n# 0\n", "# -1\n# 2\n# 0\n"}) {
        EXPECT_RAISES(FileFormatError, loadFileWhere, "Unknown shape type", load(text));
    }
    // Among them counts that no memory holds.
    for (const char* text : {"# 0\n# 0\n# 2000000000\n", "# 0\n# 65536\n# 65536\n1 2\n",
                             "# 0\n# 2\n# 2\n1e999 1\n2 3\n", "# 0\n# 2\n# 1\n1,5 2\n",
                             "# 4\n# 1\n# 2\n# 2\n1\n2\n# 1\n3\n"}) {
        EXPECT_RAISES(FileFormatError, loadWhere, format, load(text));
    }
    const std::string missing = folder.file("none.cv");
    EXPECT_RAISES(FileReadError, loadFileWhere, "Cannot open file for reading",
                  Shape<double>::loadFile(missing));
    EXPECT_RAISES(FileReadError, loadWhere, "Cannot open file for reading", Curve<double>{missing});
    EXPECT_THROW(Curve<double>(folder.path().string()), FileError);

    // What is no number, or too large, is written as a word, and comes back.
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Curve<double> words(curveOf<double>({{std::nan(""), -infinity}, {infinity, -1}}, false));
    words.save(folder.file("words.cv"), true);
    const std::unique_ptr<Shape<double>> loaded(Shape<double>::loadFile(folder.file("words.cv")));
    const Vector<double> numbers = loaded->toVector();
    EXPECT_TRUE(std::isnan(numbers[0]));
    EXPECT_TRUE(numbers[1] == -infinity && numbers[2] == infinity && numbers[3] == -1);
    EXPECT_RAISES(FileFormatError, loadWhere, format, load("# 0\n# 2\n# 1\n1 -no\n"));

    // Only the numbers matter to `load`.
    Curve<double> curve;
    curve.load(folder.write("letter.cv", "x 1\ny 1\nz 1\n5\n"));
    EXPECT_TRUE(curve.isOpen());
    EXPECT_EQ(curve[0][0], 5);

    // From a stream a list takes the announced size and what can be read.
    std::istringstream stream("# 1\n# 2\n# 3\n1 2\n3 leaf\n");
    curve.setOpen(false);
    EXPECT_EQ(curve.read(stream), 1);
    EXPECT_TRUE(stream.fail() && curve.isOpen());
    EXPECT_EQ(curve.toVector(), vectorOf<double>({1, 2, 3, 0, 0, 0}));
}

TEST(ShapeFile, DeformationsStandBesideTheirVertices)
{
    const TemporaryFolder folder;
    const Curve<float> from = curveOf<float>({{1, 2}, {3, 4}}, true);
    const Curve<float> to = curveOf<float>({{1.5f, 2}, {0, 0}}, false);
    const std::string name = folder.file("steps.txt");
    from.saveDeformations(to, name);
    EXPECT_EQ(folder.read("steps.txt"), "1\t2\t0.5\t0\t\n3\t4\t-3\t-4\t\n");
    const char* where = "void Shape<T>::saveDeformations(const Shape&,const string&) const";
    EXPECT_RAISES(FileWriteError, where, "File " + name + " already exists",
                  from.saveDeformations(to, name));
    EXPECT_RAISES(SizeError, where, "Space or size mismatch between shapes",
                  from.saveDeformations(Curve<float>(), folder.file("x")));
    EXPECT_EQ(folder.fileCount(), 1);
}
