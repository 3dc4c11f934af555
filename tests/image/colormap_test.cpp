#include "image/values/colormap.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

#include <cmath>
#include <vector>

namespace {

std::vector<int> color(const Colormap& colormap, int i)
{
    const Vector<int> c = colormap.getColor(i);
    return {c[0], c[1], c[2]};
}

using Color = std::vector<int>;

void expectColors(const Colormap& colormap, const std::vector<std::pair<int, Color>>& expected)
{
    for (const auto& [i, c] : expected) {
        EXPECT_EQ(color(colormap, i), c) << i;
    }
}

double lightness(const Colormap& colormap, int i)
{
    const Color c = color(colormap, i);
    return 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
}

} // namespace

TEST(Colormap, GrayRampTruncatesAndKnowsItself)
{
    Colormap map(1);
    map.makeGrayscale();
    EXPECT_EQ(color(map, 0), Color(3, 0));
    for (const auto& [size, second] : {std::pair(3, 127), std::pair(4, 85), std::pair(256, 1)}) {
        map.setSize(size);
        map.makeGrayscale();
        EXPECT_EQ(color(map, 1), Color(3, second));
        EXPECT_EQ(map.isIdentity(), size == 256);
        EXPECT_TRUE(map.isGrayscale());
        EXPECT_FALSE(map.isRedOnly());
    }
}

TEST(Colormap, TestsOfSingleColorsLookAtTheOtherTwoTables)
{
    Colormap map(2);
    map.getRed().setZeros();
    map.getGreen().setZeros();
    map.getBlue().setZeros();
    map.getBlue()[1] = 7;
    EXPECT_TRUE(map.isBlueOnly());
    EXPECT_FALSE(map.isRedOnly() || map.isGreenOnly() || map.isGrayscale());
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
    const double a = 255.0 / std::log(16.0);
    const double b = 255.0 / std::log(17.0);
    expectColors(Colormap::cold2Hot(64), {{0, {0, 0, 255}},
                                          {1, {0, 0, 255}},
                                          {9, {0, int(std::log(9.0) * a), 255}},
                                          {16, {0, 255, int(std::log(16.0) * a)}},
                                          {31, {0, 255, 0}},
                                          {32, {int(std::log(2.0) * b), 255, 0}},
                                          {50, {255, int(std::log(14.0) * b), 0}},
                                          {63, {255, 0, 0}}});
    EXPECT_EQ(Colormap::cold2Hot(4).getSize(), 4);
    for (const int size : {-4, 1, 62}) {
        EXPECT_RAISES(SizeError, "Colormap Colormap::cold2Hot(const int)",
                      "Colormap dimension is not a multiple of 4", Colormap::cold2Hot(size));
    }
}

TEST(Colormap, NamedTablesMeetTheirTellingRows)
{
    const Colormap fire = Colormap::fire();
    EXPECT_EQ(fire.getSize(), 256);
    expectColors(fire, {{0, {0, 0, 0}},
                        {16, {1, 0, 96}},
                        {96, {195, 0, 93}},
                        {144, {255, 117, 0}},
                        {255, {255, 255, 255}}});
    for (int i = 1; i < 256; ++i) {
        EXPECT_GE(lightness(fire, i) + 1.0, lightness(fire, i - 1)) << i;
    }
    expectColors(Colormap::thermal(), {{0, {70, 0, 115}},
                                       {96, {76, 255, 247}},
                                       {144, {178, 255, 163}},
                                       {224, {255, 175, 37}},
                                       {255, {255, 2, 2}}});
    expectColors(Colormap::flag(), {{13, {170, 85, 0}}});
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
