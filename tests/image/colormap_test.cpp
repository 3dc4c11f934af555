#include "image/colormap.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

std::vector<int> color(const Colormap& colormap, int i)
{
    const Vector<int> c = colormap.getColor(i);
    return {c[0], c[1], c[2]};
}

using Color = std::vector<int>;

double lightness(const Colormap& colormap, int i)
{
    const Color c = color(colormap, i);
    return 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
}

} // namespace

TEST(Colormap, GrayRampTruncatesAndKnowsItself)
{
    Colormap map(256);
    map.makeGrayscale();
    EXPECT_TRUE(map.isIdentity());
    EXPECT_TRUE(map.isGrayscale());
    EXPECT_FALSE(map.isRedOnly());
    map.setSize(4);
    map.makeGrayscale();
    EXPECT_EQ(color(map, 1), Color(3, 85));
    EXPECT_FALSE(map.isIdentity());
    map.setSize(3);
    map.makeGrayscale();
    EXPECT_EQ(color(map, 1), Color(3, 127));
    map.setSize(1);
    map.makeGrayscale();
    EXPECT_EQ(color(map, 0), Color(3, 0));
}

TEST(Colormap, TestsOfSingleColorsLookAtTheOtherTwoTables)
{
    Colormap map(2);
    map.getRed().setZeros();
    map.getGreen().setZeros();
    map.getBlue().setZeros();
    map.getBlue()[1] = 7;
    EXPECT_TRUE(map.isBlueOnly());
    EXPECT_FALSE(map.isRedOnly());
    EXPECT_FALSE(map.isGreenOnly());
    EXPECT_FALSE(map.isGrayscale());
    Colormap other(map);
    EXPECT_EQ(map, other);
    other.getGreen()[0] = 8;
    EXPECT_NE(map, other);
    other.convertToGrayscale();
    EXPECT_EQ(color(other, 0), Color(3, 2));
    EXPECT_EQ(color(other, 1), Color(3, 2));
}

TEST(Colormap, ColdToHotMeetsTheFormulasAndRefusesOtherSizes)
{
    const Colormap map = Colormap::cold2Hot(64);
    const double a = 255.0 / std::log(16.0);
    const double b = 255.0 / std::log(17.0);
    EXPECT_EQ(color(map, 0), (Color{0, 0, 255}));
    EXPECT_EQ(color(map, 1), (Color{0, 0, 255}));
    EXPECT_EQ(color(map, 9), (Color{0, int(std::log(9.0) * a), 255}));
    EXPECT_EQ(color(map, 16), (Color{0, 255, int(std::log(16.0) * a)}));
    EXPECT_EQ(color(map, 31), (Color{0, 255, 0}));
    EXPECT_EQ(color(map, 32), (Color{int(std::log(2.0) * b), 255, 0}));
    EXPECT_EQ(color(map, 50), (Color{255, int(std::log(14.0) * b), 0}));
    EXPECT_EQ(color(map, 63), (Color{255, 0, 0}));
    EXPECT_EQ(Colormap::cold2Hot(4).getSize(), 4);
    for (const int size : {-4, 1, 62}) {
        expectError<SizeError>([size] { Colormap::cold2Hot(size); },
                               "Colormap Colormap::cold2Hot(const int)",
                               "Colormap dimension is not a multiple of 4");
    }
}

TEST(Colormap, NamedTablesMeetTheirTellingRows)
{
    const Colormap fire = Colormap::fire();
    EXPECT_EQ(fire.getSize(), 256);
    EXPECT_EQ(color(fire, 0), (Color{0, 0, 0}));
    EXPECT_EQ(color(fire, 16), (Color{1, 0, 96}));
    EXPECT_EQ(color(fire, 96), (Color{195, 0, 93}));
    EXPECT_EQ(color(fire, 144), (Color{255, 117, 0}));
    EXPECT_EQ(color(fire, 255), (Color{255, 255, 255}));
    for (int i = 1; i < 256; ++i) {
        EXPECT_GE(lightness(fire, i) + 1.0, lightness(fire, i - 1)) << i;
    }
    const Colormap thermal = Colormap::thermal();
    EXPECT_EQ(color(thermal, 0), (Color{70, 0, 115}));
    EXPECT_EQ(color(thermal, 96), (Color{76, 255, 247}));
    EXPECT_EQ(color(thermal, 144), (Color{178, 255, 163}));
    EXPECT_EQ(color(thermal, 224), (Color{255, 175, 37}));
    EXPECT_EQ(color(thermal, 255), (Color{255, 2, 2}));
    EXPECT_EQ(color(Colormap::flag(), 13), (Color{170, 85, 0}));
    EXPECT_EQ(Colormap::flag().getSize(), 16);
}

TEST(Colormap, ATableFileGivesTheEntriesTruncatedToBytes)
{
    const TemporaryFolder folder;
    const std::string path =
        folder.write("map.data", "Blue\tRed\tGreen\n1\t2.9\t3\n4\t5.5\t6\n7\t8.0\t300\n");
    const Colormap map(path);
    ASSERT_EQ(map.getSize(), 3);
    EXPECT_EQ(color(map, 0), (Color{2, 3, 1}));
    EXPECT_EQ(color(map, 2), (Color{8, 44, 7}));
    EXPECT_THROW(Colormap(folder.file("missing")), FileReadError);
    EXPECT_THROW(Colormap(folder.write("short", "Red\tGreen\n1\t2\n")), NameError);
    EXPECT_THROW(Colormap(folder.write("text", "Red\tGreen\tBlue\n1\tx\t2\n")), TypeError);
}
