#include "blade/blademessages.h"
#include "blade/exportshapes.h"
#include "numerics/squarematrix.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>

namespace fs = std::filesystem;

namespace {

leaf::Outline toothedLeaf(double angleDegrees = 0.0)
{
    leaf::Shape shape;
    shape.toothHeight = 40.0;
    shape.angleDegrees = angleDegrees;
    return leaf::draw(shape);
}

void addLandmarks(LMXStack& stack, int slice, const leaf::Outline& outline)
{
    leaf::addItem(stack, "Apex", PRIMITIVE_POLYPOINT, slice, {outline.apex});
    leaf::addItem(stack, "Primary Sinus", PRIMITIVE_POLYPOINT, slice, outline.sinuses);
}

void setPixelWidth(StackSlice& slice, float width)
{
    PixelCalibration calibration;
    calibration.setPixelWidth(width);
    slice.setPixelCalibration(calibration);
}

/// Exports the teeth and returns what the user was told.
std::string exportTeeth(LMXStack& stack, const std::string& folder)
{
    ExportShapes process;
    process.setStack(stack);
    process.setOutputPath(QString::fromStdString(folder));
    std::string told;
    const auto former = BladeMessages::setHandler([&](const std::string& text) { told += text; });
    process.run();
    BladeMessages::setHandler(former);
    return told;
}

std::vector<std::string> filesBelow(const fs::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            names.push_back(fs::relative(entry.path(), folder).string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

float distance(const Curve<float>& curve, int i, int j)
{
    return (curve[i] - curve[j]).norm();
}

} // namespace

TEST(ExportShapes, EachFileHoldsItsToothInTheCommonFrame)
{
    const float w = 2.5f;
    const leaf::Outline outline = toothedLeaf(33.0);
    const auto stack = leaf::stackOf({outline});
    addLandmarks(*stack, 0, outline);
    setPixelWidth(stack->getSlice(0), w);
    TemporaryFolder folder;
    EXPECT_EQ(exportTeeth(*stack, folder.path().string()), "Export is complete");
    EXPECT_EQ(filesBelow(folder.path()).size(), 8u);

    leaf::Probe probe(*stack);
    probe.getModels(0);
    Vector<int> sinuses = probe.indexesPrimarySinuses();
    sinuses.sort();
    for (int rank = 1; rank <= 4; ++rank) {
        for (const bool upper : {true, false}) {
            SCOPED_TRACE("rank " + std::to_string(rank) + (upper ? " up" : " down"));
            // Of the ten sinuses the first five, from base to apex, belong to the upper half.
            const int first = upper ? 4 - rank : 4 + rank;
            const Curve<float> tooth(folder.file("teeth/l/" + std::to_string(rank) + "/leaf0_" +
                                                 (upper ? "up.cv" : "down.cv")));
            const int last = tooth.getSize() - 1;
            ASSERT_EQ(last, sinuses[first + 1] - sinuses[first]);
            EXPECT_TRUE(tooth.isOpen());
            EXPECT_EQ(tooth.getSpace(), 3);
            const int basal = upper ? 0 : last;
            const int distal = last - basal;
            EXPECT_EQ(tooth[basal].norm(), 0.0f);
            EXPECT_GT(tooth[distal][0], 0.0f);
            EXPECT_NEAR(tooth[distal][1], 0.0f, 1e-3);
            float height = 0.0f;
            for (int i = 0; i <= last; ++i) {
                height = std::max(height, tooth[i][1]);
                EXPECT_GT(tooth[i][1], -2.0f * w);
                EXPECT_EQ(tooth[i][2], 0.0f);
                const Vector<float>& place = (*probe.contour)[sinuses[first] + i];
                EXPECT_NEAR(distance(tooth, i, 0),
                            (place - (*probe.contour)[sinuses[first]]).norm() * w, 2e-2);
                EXPECT_NEAR(distance(tooth, i, last),
                            (place - (*probe.contour)[sinuses[first + 1]]).norm() * w, 2e-2);
            }
            EXPECT_GT(height, 20.0f * w);
        }
    }
}

TEST(ExportShapes, AnyNameOfSliceAndFolderGetsItsOwnFiles)
{
    const leaf::Outline outline = toothedLeaf();
    const auto stack = leaf::stackOf({outline, outline, outline});
    const std::string names[] = {"a/b \"c\"; d", "a_b \"c\"; d", "\xc3\xa9rable"};
    for (int i = 0; i < 3; ++i) {
        addLandmarks(*stack, i, outline);
        stack->getSlice(i).setName(names[i]);
    }
    TemporaryFolder folder;
    const std::string deep =
        folder.file("two words; '\xc3\xb6' \"$HOME\"/" + std::string(200, 'x'));
    exportTeeth(*stack, deep);
    const std::vector<std::string> files = filesBelow(deep);
    ASSERT_EQ(files.size(), 24u);
    for (const char* stem : {"a_b \"c\"; d", "a_b \"c\"; d-2", "\xc3\xa9rable"}) {
        for (const char* end : {"_up.cv", "_down.cv"}) {
            EXPECT_TRUE(fs::exists(deep + "/teeth/l/4/" + stem + end)) << stem << end;
        }
    }
}

TEST(ExportShapes, ASecondRunOverwritesAndLeavesTheFilesOfRemovedTeeth)
{
    const leaf::Outline outline = toothedLeaf();
    const auto stack = leaf::stackOf({outline});
    addLandmarks(*stack, 0, outline);
    TemporaryFolder folder;
    exportTeeth(*stack, folder.path().string());
    const std::string first = folder.read("teeth/l/1/leaf0_up.cv");
    const std::string removed = folder.read("teeth/l/4/leaf0_down.cv");
    delete leaf::findItem(*stack, "Primary Sinus", 0);
    const auto& sinuses = outline.sinuses;
    leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, 0,
                  {sinuses[1], sinuses[2], sinuses[4], sinuses[5]});
    exportTeeth(*stack, folder.path().string());
    // The tooth of rank 1 now spans two former ones, and one sinus of the lower half makes none.
    EXPECT_GT(folder.read("teeth/l/1/leaf0_up.cv").size(), 3 * first.size() / 2);
    EXPECT_EQ(folder.read("teeth/l/4/leaf0_down.cv"), removed);
    EXPECT_EQ(filesBelow(folder.path()).size(), 8u);
}

TEST(ExportShapes, WhatCannotBeExportedIsNamed)
{
    const leaf::Outline outline = toothedLeaf();
    const auto stack = leaf::stackOf({outline, outline, outline, outline});
    addLandmarks(*stack, 0, outline);
    delete leaf::findItem(*stack, "Apex", 0);
    // Two sinuses that share a place, then a half with one sinus, then none at all.
    addLandmarks(*stack, 1, outline);
    delete leaf::findItem(*stack, "Primary Sinus", 1);
    const auto& sinuses = outline.sinuses;
    leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, 1,
                  {sinuses[0], sinuses[0], sinuses[1], sinuses[7]});
    addLandmarks(*stack, 2, outline);
    leaf::findItem(*stack, "Primary Sinus", 2)->setVertices(Vertices<int>(2, 0, 0, 0));
    TemporaryFolder folder;
    EXPECT_EQ(exportTeeth(*stack, folder.path().string()),
              "Export is complete\nleaf0: no contour or no apex\n"
              "leaf1: two sinuses at one place give no tooth");
    EXPECT_EQ(filesBelow(folder.path()), std::vector<std::string>{"teeth/l/1/leaf1_up.cv"});
}

TEST(ExportShapes, TheRotationTurnsOneDirectionOntoTheOther)
{
    const ExportShapes process;
    std::mt19937 engine(7);
    std::uniform_real_distribution<float> angle(-3.14159f, 3.14159f);
    for (int k = 0; k < 500; ++k) {
        Vector<float> a(3);
        Vector<float> b(3);
        const float from = angle(engine);
        // Every fifth pair is nearly parallel, where the cosine rounds to 1.
        const float to = k % 5 == 0 ? from + 1e-5f * angle(engine) : angle(engine);
        a[0] = 70.0f * std::cos(from);
        a[1] = 70.0f * std::sin(from);
        b[0] = std::cos(to);
        b[1] = std::sin(to);
        a[2] = b[2] = 0.0f;
        const Vector<float> turned = process.rotationMatrix(a, b) * a;
        EXPECT_NEAR(turned[0], 70.0f * b[0], 1e-4);
        EXPECT_NEAR(turned[1], 70.0f * b[1], 1e-4);
    }
    Vector<float> zero(3);
    zero.setZeros();
    EXPECT_THROW(process.rotationMatrix(zero, zero), MathError);
}
