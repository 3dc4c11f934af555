#include "shape/curve.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <locale>
#include <memory>
#include <random>
#include <sstream>

namespace {

const std::string saveWhere = "void Shape::save(const string&,const bool) const";
const std::string loadWhere = "Shape<T>::load(const string&)";
const std::string loadFileWhere = "Shape<T>* Shape<T>::loadFile(const string&)";

/// Decimal comma and grouped thousands, whatever locales the machine has.
class CommaNumbers : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }

    char do_thousands_sep() const override { return '.'; }

    std::string do_grouping() const override { return "\3"; }
};

class CommaLocale
{
public:
    CommaLocale()
        : former_(std::locale::global(std::locale(std::locale(), new CommaNumbers)))
    {}

    ~CommaLocale() { std::locale::global(former_); }

private:
    std::locale former_;
};

std::string textOf(const Shape<float>& shape)
{
    std::ostringstream stream;
    shape.write(stream);
    return stream.str();
}

} // namespace

TEST(ShapeFile, IsTheTextThatBiologistsKnow)
{
    Curve<float> curve = curveOf<float>({{1234.567f, -0.5f}, {1e10f, 0}, {3, 4}}, false);
    curve.remove(2);
    EXPECT_EQ(textOf(curve), "# 0\n# 2\n# 2\n1234.57 -0.5\n1e+10 0\n");
    curve.setOpen(true);
    EXPECT_EQ(textOf(curve).substr(0, 4), "# 1\n");
    EXPECT_EQ(textOf(Vertices<float>()), "# 6\n# 0\n# 0\n");
}

TEST(ShapeFile, RoundTripsEveryClassTypeAndDimension)
{
    const TemporaryFolder folder;
    std::mt19937 engine(71);
    for (int round = 0; round < 24; ++round) {
        const int space = 1 + round % 4;
        Curve<int> curve = randomCurve<int>(round, 100000, round % 2 == 0, engine, space);
        curve.reverse();
        const std::string name = folder.file("leaf" + std::to_string(round));
        curve.save(name, false);
        const std::unique_ptr<Shape<int>> shape(Shape<int>::loadFile(name + ".cv"));
        EXPECT_EQ(shape->getName(), "leaf" + std::to_string(round));
        EXPECT_EQ(shape->getShapeType(), curve.getShapeType());
        EXPECT_EQ(shape->getSpace(), space);
        EXPECT_EQ(shape->toVector(), curve.toVector());

        Vertices<int>(curve).save(folder.file("points.vx"), true);
        const Vertices<int> points(folder.file("points.vx"));
        EXPECT_EQ(points.toVector(), curve.toVector());
        for (int i = 0; i < round; ++i) {
            EXPECT_EQ(points.getIndex(i), i);
        }
    }
}

TEST(ShapeFile, SavesUnderTheSuffixAndKeepsWhatIsThere)
{
    const TemporaryFolder folder;
    const Curve<float> square = Curve<float>::square(0, 0, 1);
    square.save(folder.file("leaf.txt"));
    const std::string before = folder.read("leaf.txt.cv");
    EXPECT_EQ(before, textOf(square));
    expectError<FileWriteError>([&] { Curve<float>().save(folder.file("leaf.txt.cv")); }, saveWhere,
                                "File already exists");
    EXPECT_EQ(folder.read("leaf.txt.cv"), before);
    Curve<float>::square(0, 0, 2).save(folder.file("leaf.txt.cv"), true);
    EXPECT_NE(folder.read("leaf.txt.cv"), before);
    EXPECT_EQ(folder.fileCount(), 1);

    try {
        square.save(folder.file("none/leaf"));
        FAIL();
    } catch (const FileWriteError& error) {
        EXPECT_EQ(error.getFilename(), folder.file("none/leaf.cv"));
    }
}

TEST(ShapeFile, FailingStreamsRaiseAndKeepTheirExceptionMask)
{
    const Curve<float> square = Curve<float>::square(0, 0, 1);
    std::ostringstream failed;
    failed.setstate(std::ios::badbit);
    EXPECT_THROW(square.write(failed), FileWriteError);
    EXPECT_EQ(failed.exceptions(), std::ios::goodbit);
    std::ofstream full("/dev/full");
    EXPECT_THROW(
        {
            for (int i = 0; i < 1000; ++i) {
                square.write(full);
            }
        },
        FileWriteError);
}

TEST(ShapeFile, ReadsAnyLineEndsAndRefusesWhatIsNoShape)
{
    const TemporaryFolder folder;
    const auto load = [&](const std::string& text) {
        return std::unique_ptr<Shape<double>>(
            Shape<double>::loadFile(folder.write("shape.cv", text)));
    };
    EXPECT_EQ(load("#1#2\r\n# 2 0.5 1\r\n2\n\n3e2")->toVector(),
              vectorOf<double>({0.5, 1, 2, 300}));
    const std::string format = "Invalid shape description format";
    const std::string unknown = "Unknown shape type";
    expectError<FileFormatError>([&] { load(""); }, loadFileWhere, format);
    expectError<FileFormatError>([&] { load("x 1\n# 2\n# 0\n"); }, loadFileWhere, format);
    expectError<FileFormatError>([&] { load("# leaf\n"); }, loadFileWhere, format);
    expectError<FileFormatError>([&] { load("# 9\n# 2\n# 0\n"); }, loadFileWhere, unknown);
    expectError<FileFormatError>([&] { load("# -1\n# 2\n# 0\n"); }, loadFileWhere, unknown);
    expectError<FileReadError>([&] { Shape<double>::loadFile(folder.file("none.cv")); },
                               loadFileWhere, "Cannot open file for reading");
    expectError<FileReadError>([&] { Curve<double>(folder.file("none.cv")); }, loadWhere,
                               "Cannot open file for reading");
    EXPECT_THROW(Curve<double>(folder.path().string()), FileError);

    // Only the numbers matter to `load`.
    Curve<double> curve;
    curve.load(folder.write("letter.cv", "x 1\ny 1\nz 1\n5\n"));
    EXPECT_TRUE(curve.isOpen());
    EXPECT_EQ(curve[0][0], 5);
}

TEST(ShapeFile, NumbersOutOfRangeRaiseAtOnceAndLeaveTheShape)
{
    const TemporaryFolder folder;
    for (const std::string text :
         {"# 0\n# 2\n# 2000000000\n1 2\n", "# 0\n# 2000000000\n# 1\n1\n", "# 0\n# 2\n# -3\n1 2\n",
          "# 0\n# -2\n# 1\n1 2\n", "# 0\n# 0\n# 2000000000\n", "# 0\n# 65536\n# 65536\n1 2\n",
          "# 0\n# 2\n# 99999999999\n1 2\n", "# 0\n# 2\n# many\n", "# 0\n# 2\n"}) {
        Curve<float> curve = Curve<float>::square(0, 0, 1);
        curve.setOpen(true);
        expectError<FileFormatError>([&] { curve.load(folder.write("bad.cv", text)); }, loadWhere,
                                     "Invalid shape description format");
        EXPECT_EQ(curve.getSize(), 4) << text;
        EXPECT_TRUE(curve.isOpen());
    }
    for (const std::string number : {"nan", "inf", "1e999", "one", "0x", "1,5"}) {
        Curve<float> curve;
        EXPECT_THROW(curve.load(folder.write("bad.cv", "# 1\n# 2\n# 2\n1 2\n" + number + " 4\n")),
                     FileFormatError)
            << number;
        EXPECT_EQ(curve.getSize(), 2);
        EXPECT_EQ(curve[0], vectorOf<float>({1, 2}));
        EXPECT_EQ(curve[1][1], 0);
    }
}

TEST(ShapeFile, EveryCutAndEveryChangedByteIsReadOrRefused)
{
    const TemporaryFolder folder;
    std::mt19937 engine(72);
    Curve<float> written = randomCurve<float>(5, 900, true, engine);
    written[4] = vectorOf<float>({-7, 1234.5f});
    const std::string whole = textOf(written);
    const std::size_t lastNumber = whole.find_last_of(' ') + 1;
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        const std::string name = folder.write("cut.cv", whole.substr(0, cut));
        Curve<float> curve;
        if (cut > lastNumber) {
            curve.load(name);
            EXPECT_EQ(curve.getSize(), 5);
        } else {
            EXPECT_THROW(curve.load(name), FileFormatError) << cut;
        }
    }
    int refused = 0;
    for (std::size_t place = 0; place < whole.size(); ++place) {
        for (const char byte : {'\0', '-', '9', 'x', '\n', '\xff'}) {
            std::string text = whole;
            text[place] = byte;
            const std::string name = folder.write("changed.cv", text);
            try {
                const std::unique_ptr<Shape<float>> shape(Shape<float>::loadFile(name));
                const Vector<float> coordinates = shape->toVector();
                for (int i = 0; i < coordinates.getSize(); ++i) {
                    ASSERT_TRUE(std::isfinite(coordinates[i]));
                }
            } catch (const FileFormatError& error) {
                EXPECT_EQ(error.getFilename(), name);
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, static_cast<int>(whole.size()));
}

TEST(ShapeFile, KeepsItsNumbersUnderADecimalComma)
{
    const TemporaryFolder folder;
    const Curve<float> curve = curveOf<float>({{1.5f, 123456}, {-0.25f, 1e7f}}, true);
    const std::string expected = textOf(curve);
    const CommaLocale comma;
    curve.save(folder.file("comma.cv"));
    EXPECT_EQ(folder.read("comma.cv"), expected);
    EXPECT_EQ(Curve<float>(folder.file("comma.cv")).toVector(), curve.toVector());
    EXPECT_EQ(textOf(curve), expected);
}

TEST(ShapeFile, DeformationsStandBesideTheirVertices)
{
    const TemporaryFolder folder;
    const Curve<float> from = curveOf<float>({{1, 2}, {3, 4}}, true);
    const Curve<float> to = curveOf<float>({{1.5f, 2}, {0, 0}}, false);
    from.saveDeformations(to, folder.file("steps.txt"));
    EXPECT_EQ(folder.read("steps.txt"), "1\t2\t0.5\t0\t\n3\t4\t-3\t-4\t\n");
    const char* where = "void Shape<T>::saveDeformations(const Shape&,const string&) const";
    expectError<FileWriteError>([&] { from.saveDeformations(to, folder.file("steps.txt")); }, where,
                                "File " + folder.file("steps.txt") + " already exists");
    expectError<SizeError>([&] { from.saveDeformations(Curve<float>(), folder.file("x")); }, where,
                           "Space or size mismatch between shapes");
    EXPECT_EQ(folder.fileCount(), 1);
}
