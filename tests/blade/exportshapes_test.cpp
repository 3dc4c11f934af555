#include "blade/measures/exportshapes.h"
#include "numerics/squarematrix.h"
#include "support/stages.h"
#include "support/temporaryfolder.h"
#include "system/exception.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>

namespace {

namespace fs = std::filesystem;

/// Exports the teeth and returns what the user was told.
std::string exportTeeth(LMXStack& stack, const std::string& folder)
{
    ExportShapes process;
    process.setStack(stack);
    process.setOutputPath(QString::fromStdString(folder));
    return leaf::run(process).at(0);
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

} // namespace

TEST(ExportShapes, EachFileHoldsItsToothInTheCommonFrame)
{
    const float w = 2.5f;
    const auto stack = leaf::landmarkedStack({leaf::draw(4, 40.0, 33.0)});
    leaf::setPixelWidth(*stack, 0, w);
    TemporaryFolder folder;
    EXPECT_EQ(exportTeeth(*stack, folder.path().string()), "Export is complete");
    EXPECT_EQ(filesBelow(folder.path()).size(), 8u);

    leaf::Probe probe(*stack);
    probe.getModels(0);
    const Curve<float>& contour = *probe.contour;
    Vector<int> sinuses = probe.indexesPrimarySinuses();
    sinuses.sort();
    for (int k = 0; k < 8; ++k) {
        SCOPED_TRACE(k);
        const int rank = 1 + k / 2;
        const bool upper = k % 2 == 0;
        // Of the ten sinuses the first five, from base to apex, belong to the upper half.
        const int first = sinuses[upper ? 4 - rank : 4 + rank];
        const int next = sinuses[upper ? 5 - rank : 5 + rank];
        const Curve<float> tooth(folder.file("teeth/l/" + std::to_string(rank) + "/leaf0_" +
                                             (upper ? "up.cv" : "down.cv")));
        const int last = tooth.getSize() - 1;
        ASSERT_EQ(last, next - first);
        EXPECT_TRUE(tooth.isOpen() && tooth.getSpace() == 3);
        const int basal = upper ? 0 : last;
        EXPECT_EQ(tooth[basal].norm(), 0.0f);
        EXPECT_GT(tooth[last - basal][0], 0.0f);
        EXPECT_NEAR(tooth[last - basal][1], 0.0f, 1e-3);
        float height = 0.0f;
        for (int i = 0; i <= last; ++i) {
            height = std::max(height, tooth[i][1]);
            EXPECT_GT(tooth[i][1], -2.0f * w);
            EXPECT_EQ(tooth[i][2], 0.0f);
            const Vector<float>& place = contour[first + i];
            EXPECT_NEAR(tooth[i].distance(tooth[0]), place.distance(contour[first]) * w, 2e-2);
            EXPECT_NEAR(tooth[i].distance(tooth[last]), place.distance(contour[next]) * w, 2e-2);
        }
        EXPECT_GT(height, 20.0f * w);
    }
}

TEST(ExportShapes, AnyNameOfSliceAndFolderGetsItsOwnFiles)
{
    const leaf::Outline outline = leaf::draw(4, 40.0);
    const auto stack = leaf::landmarkedStack({outline, outline, outline});
    const std::string names[] = {"a/b \"c\"; d", "a_b \"c\"; d", "\xc3\xa9rable"};
    for (int i = 0; i < 3; ++i) {
        stack->getSlice(i).setName(names[i]);
    }
    TemporaryFolder folder;
    const std::string deep =
        folder.file("two words; '\xc3\xb6' \"$HOME\"/" + std::string(200, 'x'));
    exportTeeth(*stack, deep);
    EXPECT_EQ(filesBelow(deep).size(), 24u);
    for (const char* stem : {"a_b \"c\"; d", "a_b \"c\"; d-2", "\xc3\xa9rable"}) {
        EXPECT_TRUE(fs::exists(deep + "/teeth/l/4/" + stem + "_up.cv")) << stem;
    }
}

TEST(ExportShapes, ASecondRunOverwritesAndLeavesTheFilesOfRemovedTeeth)
{
    const leaf::Outline outline = leaf::draw(4, 40.0);
    const auto stack = leaf::landmarkedStack({outline});
    TemporaryFolder folder;
    exportTeeth(*stack, folder.path().string());
    const std::string first = folder.read("teeth/l/1/leaf0_up.cv");
    const std::string removed = folder.read("teeth/l/4/leaf0_down.cv");
    const auto& s = outline.sinuses;
    leaf::remark(*stack, "Primary Sinus", 0, {s[1], s[2], s[4], s[5]});
    exportTeeth(*stack, folder.path().string());
    // The tooth of rank 1 now spans two former ones, and one sinus of the lower half makes none.
    EXPECT_GT(folder.read("teeth/l/1/leaf0_up.cv").size(), 3 * first.size() / 2);
    EXPECT_EQ(folder.read("teeth/l/4/leaf0_down.cv"), removed);
    EXPECT_EQ(filesBelow(folder.path()).size(), 8u);
}

TEST(ExportShapes, WhatCannotBeExportedIsNamed)
{
    const leaf::Outline outline = leaf::draw(4, 40.0);
    const auto stack = leaf::landmarkedStack({outline, outline, outline});
    delete leaf::findItem(*stack, "Apex", 0);
    // Two sinuses that share a place, then a half with one sinus, then none at all.
    const auto& s = outline.sinuses;
    leaf::remark(*stack, "Primary Sinus", 1, {s[0], s[0], s[1], s[7]});
    leaf::remark(*stack, "Primary Sinus", 2, {});
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
    const auto direction = [](float at) {
        return Vector<float>(std::vector<float>{std::cos(at), std::sin(at), 0.0f});
    };
    for (int k = 0; k < 500; ++k) {
        const float from = angle(engine);
        // Every fifth pair is nearly parallel, where the cosine rounds to 1.
        const float to = k % 5 == 0 ? from + 1e-5f * angle(engine) : angle(engine);
        const Vector<float> a = direction(from) * 70.0f;
        const Vector<float> turned = process.rotationMatrix(a, direction(to)) * a;
        EXPECT_LT(turned.distance(direction(to) * 70.0f), 2e-4f);
    }
    const Vector<float> zero = direction(0.0f) * 0.0f;
    EXPECT_THROW(process.rotationMatrix(zero, zero), MathError);
}
