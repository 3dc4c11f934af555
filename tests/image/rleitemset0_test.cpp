#include "image/pixels/neighbourhood.h"
#include "image/regions/rleitemset0.h"
#include "shape/vertices/boundingbox.h"
#include "shape/vertices/vertices.h"
#include "support/errors.h"
#include "support/images.h"

#include <set>
#include <sstream>
#include <utility>

namespace {

using Pixels = std::set<std::pair<int, int>>;

Pixels pixelsOf(const RLEItemSet0& set)
{
    Pixels pixels;
    const Vertices<int> vertices = set.vertices();
    for (int i = 0; i < vertices.getSize(); ++i) {
        EXPECT_EQ(vertices[i], set.vertex(i));
        EXPECT_TRUE(pixels.emplace(vertices[i][0], vertices[i][1]).second);
    }
    EXPECT_EQ(static_cast<int>(pixels.size()), set.numVertices());
    return pixels;
}

/// Runs ascend and have gaps between them.
void expectInOrder(const RLEItemSet0& set)
{
    for (int i = 1; i < set.numItems(); ++i) {
        const RLEItem0& before = set.getItem(i - 1);
        const RLEItem0& item = set.getItem(i);
        if (before.getOrigin()[0] == item.getOrigin()[0]) {
            EXPECT_GT(item.begin(), before.end() + 1);
        } else {
            EXPECT_GT(item.getOrigin()[0], before.getOrigin()[0]);
        }
    }
}

} // namespace

TEST(RLEItem0, SettingOneEndKeepsTheOther)
{
    RLEItem0 item(3, 10, 5);
    EXPECT_EQ(item.end(), 14);
    item.setBegin(12);
    EXPECT_EQ(item.end(), 14);
    item.setEnd(20);
    EXPECT_EQ(item.getLength(), 9);
    EXPECT_EQ(item[2], vectorOf<int>({3, 14}));
    EXPECT_THROW(item.setBegin(21), ProgramError);
    EXPECT_THROW(item.setEnd(11), ProgramError);
    EXPECT_THROW(item.setLength(0), ProgramError);
    EXPECT_EQ(item, RLEItem0(3, 12, 9));
    EXPECT_EQ(item.findNearestVertex(vectorOf<int>({9, 0})), 0);
    EXPECT_EQ(item.findNearVertex(vectorOf<int>({6, 24}), 5), 8);
    EXPECT_EQ(item.findNearVertex(vectorOf<int>({6, 25}), 5), -1);
}

TEST(RLEItemSet0, AddingAndRemovingRunsIsSetArithmetic)
{
    std::mt19937 random(31);
    for (int round = 0; round < 100; ++round) {
        RLEItemSet0 set;
        Pixels expected;
        for (int step = 0; step < 40; ++step) {
            const RLEItem0 item(randomInt(0, 2, random), randomInt(-10, 19, random),
                                randomInt(1, 8, random));
            const bool adds = random() % 5 < 3;
            for (int j = item.begin(); j <= item.end(); ++j) {
                expected.erase({item.getOrigin()[0], j});
                if (adds) {
                    expected.emplace(item.getOrigin()[0], j);
                }
            }
            adds ? set.add(item) : set.remove(item);
            ASSERT_EQ(pixelsOf(set), expected);
            expectInOrder(set);
            EXPECT_EQ(set.isEmpty(), expected.empty());
        }
        RLEItemSet0 copy(set);
        set.remove(copy);
        EXPECT_TRUE(set.isEmpty());
        set.add(copy);
        EXPECT_EQ(set, copy);
    }
}

TEST(RLEItemSet0, RunsArePrintedAndIndicesChecked)
{
    RLEItemSet0 set;
    set.add(RLEItem0(0, 0, 4));
    set.remove(vectorOf<int>({0, 1}));
    set.add(0, 4);
    std::ostringstream text;
    set.print(text);
    EXPECT_EQ(text.str(), "0 0 1\n0 2 3\n");
    EXPECT_THROW(set.getItem(2), RangeError);
    EXPECT_THROW(set.vertex(4), RangeError);
    EXPECT_THROW(set.add(vectorOf<int>({1, 2, 3})), SizeError);
}

TEST(RLEItemSet0, MasksComeBackFromTheirRuns)
{
    std::mt19937 random(32);
    const auto mask = imageFrom<int>(9, 23, [&](int, int) { return randomInt(0, 2, random); });
    PixelMatrix<int> back(9, 23);
    back.setZeros();
    RLEItemSet0 set;
    for (int value : {1, 2}) {
        set.fromMask(mask, value);
        expectInOrder(set);
        set.toMask(back, value, false);
    }
    EXPECT_EQ(back, mask);
    set.toMask(back, 10, true);
    EXPECT_EQ(back, imageFrom<int>(
                        9, 23, [&](int i, int j) { return mask(i, j) == 2 ? 12 : mask(i, j); }));
    set.translate(vectorOf<int>({5, -20}));
    back.setZeros();
    set.toMask(back, 1, false);
    EXPECT_EQ(back, imageFrom<int>(9, 23, [&](int i, int j) {
                  return i >= 5 && j + 20 < 23 && mask(i - 5, j + 20) == 2;
              }));
}

TEST(RLEItemSet0, ABallIsTheCircularNeighbourhoodOfItsCentre)
{
    for (int radius = 0; radius < 15; ++radius) {
        RLEItemSet0 set;
        set.add(100, 100);
        set.setBall(vectorOf<int>({-3, 8}), radius);
        Pixels expected;
        const Neighbourhood offsets = Neighbourhood::circularNeighbourhood(radius, true);
        for (int i = 0; i < offsets.getSize1(); ++i) {
            expected.emplace(offsets(i, 0) - 3, offsets(i, 1) + 8);
        }
        EXPECT_EQ(pixelsOf(set), expected);
        EXPECT_EQ(set.boundingBox().getVertex1(), vectorOf<int>({-3 - radius, 8 - radius}));
        EXPECT_EQ(set.boundingBox().getVertex2(), vectorOf<int>({-3 + radius, 8 + radius}));
    }
}

TEST(RLEItemSet0, NearestPixelIsTheFirstOfTheClosest)
{
    std::mt19937 random(33);
    RLEItemSet0 set;
    EXPECT_EQ(set.findNearestVertex(vectorOf<int>({0, 0})), -1);
    EXPECT_FALSE(set.boundingBox().isValid());
    for (int i = 0; i < 30; ++i) {
        set.add(RLEItem0(random() % 40, random() % 40, 1 + random() % 4));
    }
    for (int round = 0; round < 200; ++round) {
        const Vector<int> p = vectorOf<int>({int(random() % 50) - 5, int(random() % 50) - 5});
        int nearest = 0;
        for (int i = 1; i < set.numVertices(); ++i) {
            if (set.vertex(i).sdistance(p) < set.vertex(nearest).sdistance(p)) {
                nearest = i;
            }
        }
        EXPECT_EQ(set.findNearestVertex(p), nearest);
        const int square = set.vertex(nearest).sdistance(p);
        EXPECT_EQ(set.findNearVertex(p, 3), square <= 9 ? nearest : -1);
    }
}
