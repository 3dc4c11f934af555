#include "image/imagesourcefile.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/pose.h"
#include "stack/stack.h"
#include "stack/stackslice.h"
#include "stack/stacksliceselectioninfo.h"
#include "support/errors.h"
#include "support/stacks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

StackSlice& append(Stack& stack, const std::string& name = "slice")
{
    auto* slice = new StackSlice;
    slice->setName(name);
    slice->setStack(stack);
    stack.addSlice(*slice);
    return *slice;
}

using stacks::addModel;

ModelItem& addItem(Model& model, StackSlice& slice)
{
    return stacks::addItem(model, slice, {});
}

/// The rules of positions as they are told, each getter calling the other along the stack.
struct Place
{
    float position = 0.0f;
    bool relative = true;
    bool standard = true;
};

float absolute(const std::vector<Place>& places, float spacing, std::size_t i);

float relative(const std::vector<Place>& places, float spacing, std::size_t i)
{
    if (places[i].standard) {
        return spacing;
    }
    if (places[i].relative) {
        return places[i].position;
    }
    return i == 0 ? 0.0f : absolute(places, spacing, i) - absolute(places, spacing, i - 1);
}

float absolute(const std::vector<Place>& places, float spacing, std::size_t i)
{
    if (!places[i].relative) {
        return places[i].position;
    }
    return i == 0 ? 0.0f : absolute(places, spacing, i - 1) + relative(places, spacing, i);
}

} // namespace

TEST(Stack, PositionsFollowTheRulesThroughRandomChanges)
{
    std::mt19937 random(9);
    const auto draw = [&random](unsigned bound) { return static_cast<int>(random() % bound); };
    Stack stack;
    float spacing = 0.0f;
    std::vector<Place> places;
    for (int step = 0; step < 3000; ++step) {
        const int n = stack.getNumSlices();
        const int i = n > 0 ? draw(static_cast<unsigned>(n)) : 0;
        const auto at = places.begin() + i;
        const float value = static_cast<float>(draw(100)) / 7.0f;
        const int operation = n < 3 ? 0 : n > 12 ? 4 : draw(6);
        if (operation <= 1) {
            auto* slice = new StackSlice;
            slice->setStack(stack);
            stack.addSlice(*slice, i);
            places.insert(at, Place());
        } else if (operation == 2) {
            stack.getSlice(i).setRelativePosition(value);
            *at = {value, true, false};
        } else if (operation == 3) {
            stack.getSlice(i).setAbsolutePosition(value);
            *at = {value, false, false};
        } else if (operation == 4) {
            if (i > 0 && i < n - 1 && (at + 1)->relative) {
                const auto k = static_cast<std::size_t>(i);
                const float kept = absolute(places, spacing, k + 1);
                *(at + 1) = {kept - absolute(places, spacing, k - 1), true, false};
            }
            stack.deleteSlice(i);
            places.erase(at);
        } else {
            spacing = value;
            stack.setDefaultRelativePosition(value);
        }
        for (std::size_t k = 0; k < places.size(); ++k) {
            const StackSlice& slice = stack.getSlice(static_cast<int>(k));
            ASSERT_EQ(slice.getAbsolutePosition(), absolute(places, spacing, k)) << step;
            ASSERT_EQ(slice.getRelativePosition(), relative(places, spacing, k)) << step;
        }
    }
}

TEST(Stack, RemovingAMiddleSliceKeepsThePlaceOfTheNext)
{
    Stack stack;
    stack.setDefaultSliceSpacing(2.0f);
    for (int i = 0; i < 4; ++i) {
        append(stack);
    }
    EXPECT_EQ(stack.getLastSlice().getAbsolutePosition(), 6.0f);
    stack.deleteSlice(1);
    EXPECT_EQ(stack.getSlice(1).getAbsolutePosition(), 4.0f);
    stack.setDefaultSliceSpacing(10.0f);
    EXPECT_EQ(stack.getSlice(1).getAbsolutePosition(), 4.0f) << "follows its own distance now";
    stack.deleteSlice(0);
    EXPECT_EQ(stack.getSlice(0).getAbsolutePosition(), 0.0f);
    EXPECT_EQ(stack.getSlice(1).getAbsolutePosition(), 10.0f);
}

TEST(Stack, NeighboursEndInThemselvesAndStrangersAreRefused)
{
    Stack stack;
    for (const char* name : {"a", "b", "c", "b"}) {
        append(stack, name);
    }
    std::string walk;
    for (const StackSlice* slice = &stack.getFirstSlice();; slice = &slice->nextSlice()) {
        walk += slice->getName();
        EXPECT_EQ(&slice->prevSlice().nextSlice() == slice, !slice->isFirstSlice());
        if (slice->isLastSlice()) {
            EXPECT_EQ(&slice->nextSlice(), slice);
            break;
        }
    }
    EXPECT_EQ(walk, "abcb");
    EXPECT_EQ(&stack.getFirstSlice().prevSlice(), &stack.getFirstSlice());
    EXPECT_EQ(stack.findSlice("b"), 1);
    EXPECT_EQ(stack.findSlice("B"), -1);
    EXPECT_EQ(stack.findSlice(stack.getSlice(3)), 3);

    StackSlice stranger;
    EXPECT_EQ(stack.findSlice(stranger), -1);
    EXPECT_THROW(stack.getNextSlice(stranger), ProgramError);
    EXPECT_THROW(stranger.getAbsolutePosition(), ProgramError);
    stranger.setStack(stack);
    EXPECT_THROW(stranger.isLastSlice(), ProgramError);
}

TEST(Stack, ClearingKeepsNameDefaultsAndPoses)
{
    Stack stack;
    stack.setName("sample");
    stack.setDefaultSliceThickness(3.0f);
    stack.setLastSegmentedSlice("a");
    stack.setLastRegisteredSlice("b");
    auto* pose = new Pose(Pose::canonicalPose2());
    pose->setStack(stack);
    pose->attach();
    pose->attach();
    addItem(addModel(stack, "Contour"), append(stack));
    stack.clear();
    EXPECT_EQ(stack.getNumSlices() + stack.getNumModels(), 0);
    EXPECT_EQ(stack.getLastSegmentedSlice() + stack.getLastRegisteredSlice(), "");
    EXPECT_EQ(stack.getName(), "sample");
    EXPECT_EQ(stack.getDefaultSliceThickness(), 3.0f);
    ASSERT_EQ(stack.getNumPoses(), 1);
    EXPECT_EQ(stack.getPose(0).getYRotation(), 90);
    pose->detach();
    EXPECT_EQ(stack.getNumPoses(), 0);
    delete pose;
}

TEST(Stack, LengthUnitReachesTheSlicesAndImagesPathEndsInASeparator)
{
    Stack stack;
    EXPECT_EQ(stack.getLengthUnit().getScale(), -6);
    StackSlice& slice = append(stack);
    PixelCalibration calibration;
    calibration.setPixelWidth(2.5f);
    slice.setPixelCalibration(calibration);
    LengthUnit millimetre;
    millimetre.setScale(-3);
    stack.setLengthUnit(millimetre);
    EXPECT_EQ(stack.getDefaultPixelCalibration().getLengthUnit().getScale(), -3);
    EXPECT_EQ(slice.getPixelCalibration().getLengthUnit().getScale(), -3);
    EXPECT_EQ(slice.getPixelCalibration().getPixelWidth(), 2.5f);
    stack.setImagesPath("leaves");
    EXPECT_EQ(stack.getImagesPath(), "leaves/");
    stack.setImagesPath("leaves/");
    EXPECT_EQ(stack.getImagesPath(), "leaves/");
}

TEST(Stack, GeometryQueriesCountModelsAndTheirItems)
{
    Stack stack;
    EXPECT_EQ(stack.findModel("Apex"), -1);
    Model& first = addModel(stack, "Apex", PRIMITIVE_POLYPOINT);
    addModel(stack, "Contour", PRIMITIVE_POLYGON);
    Model& second = addModel(stack, "Sinus", PRIMITIVE_POLYPOINT);
    EXPECT_EQ(stack.findModel("Sinus"), 2) << "a model without items is found all the same";
    EXPECT_EQ(stack.listGeometryModels(PRIMITIVE_POLYPOINT),
              (std::vector<Model*>{&first, &second}));
    EXPECT_TRUE(stack.hasGeometryModels(PRIMITIVE_POLYPOINT));
    EXPECT_FALSE(stack.hasGeometryModels(PRIMITIVE_REGION));
    EXPECT_FALSE(stack.hasGeometryModelItems(PRIMITIVE_POLYPOINT));
    addItem(second, append(stack));
    EXPECT_TRUE(stack.hasGeometryModelItems(PRIMITIVE_POLYPOINT));
}

TEST(StackSlice, CopyHasNoStackAndNoItems)
{
    Stack stack;
    StackSlice& slice = append(stack, "leaf");
    slice.setAnnotation("left side");
    slice.setRelativePosition(7.0f);
    slice.setThickness(0.5f);
    slice.setRegistration({1, -2, 30.0f});
    addItem(addModel(stack, "Contour"), slice);
    const StackSlice copy(slice);
    EXPECT_EQ(copy.getStack(), nullptr);
    EXPECT_EQ(copy.getNumItems(), 0);
    EXPECT_EQ(copy.getName(), "leaf");
    EXPECT_EQ(copy.getAnnotation(), "left side");
    EXPECT_EQ(copy.getRelativePosition(), 7.0f);
    EXPECT_EQ(copy.getThickness(), 0.5f);
    EXPECT_EQ(copy.getRegistration(), slice.getRegistration());
    EXPECT_TRUE(copy.isEmpty());
    EXPECT_RAISES(ProgramError, "const ImageSource& Slice::getImageSource() const",
                  "This slice has no image source", copy.getImageSource());
}

TEST(Registration, SumsAndDifferencesUndoEachOtherWithinOneTurn)
{
    std::mt19937 random(4);
    const auto draw = [&random](int bound) {
        return static_cast<int>(random() % static_cast<unsigned>(bound));
    };
    for (int round = 0; round < 500; ++round) {
        const Registration a = {draw(100) - 50, draw(100) - 50, static_cast<float>(draw(360))};
        const Registration b = {draw(100) - 50, draw(100) - 50, static_cast<float>(draw(360))};
        EXPECT_EQ(a + b - b, a);
        EXPECT_TRUE((a - a).isNull());
        EXPECT_GE((a - b).rotationAngle, 0.0f);
        EXPECT_LT((a + b).rotationAngle, 360.0f);
    }
    EXPECT_FALSE((Registration{0, 1, 0.0f}).isNull());
    EXPECT_FALSE((Registration{0, 0, 0.5f}).isNull());
}

TEST(Pose, CanonicalViewsTurnAboutOneAxisAndRotationsTruncate)
{
    const auto degrees = [](const Pose& p) {
        return std::vector<int>{p.getXRotation(), p.getYRotation(), p.getZRotation()};
    };
    EXPECT_EQ(degrees(Pose::canonicalPose1()), (std::vector<int>{0, 180, 0}));
    EXPECT_EQ(degrees(Pose::canonicalPose2()), (std::vector<int>{0, 90, 0}));
    EXPECT_EQ(degrees(Pose::canonicalPose3()), (std::vector<int>{90, 0, 0}));
    EXPECT_EQ(degrees(Pose::reverseCanonicalPose1()), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(degrees(Pose::reverseCanonicalPose2()), (std::vector<int>{0, -90, 0}));
    EXPECT_EQ(degrees(Pose::reverseCanonicalPose3()), (std::vector<int>{-90, 0, 0}));
    EXPECT_EQ(Pose().getZoom(), 100);
}

TEST(StackSliceSelectionInfo, CountsItemsWithASelection)
{
    Stack stack;
    StackSlice& slice = append(stack);
    Model& contour = addModel(stack, "Contour", PRIMITIVE_POLYGON);
    Model& blade = addModel(stack, "Blade", PRIMITIVE_POLYGON);
    Model& apex = addModel(stack, "Apex", PRIMITIVE_POLYPOINT);
    std::vector<ModelItem*> items = {&addItem(contour, slice), &addItem(contour, slice),
                                     &addItem(blade, slice), &addItem(apex, slice),
                                     &addItem(blade, slice)};
    for (ModelItem* item : items) {
        item->getSelection().reset(3);
    }
    items[1]->setTriangulationTag(CurveStackTriangulationContourTag::Begin);
    StackSliceSelectionInfo info;
    info.update();
    EXPECT_TRUE(info.emptySelection());
    info.setSlice(slice);
    EXPECT_TRUE(info.emptySelection());
    EXPECT_FALSE(info.homogeneousSelection());

    items[1]->getSelection().set(true);
    info.setSlice(slice);
    EXPECT_TRUE(info.emptySelection()) << "the slice is set already";
    info.update();
    EXPECT_FALSE(info.emptySelection() || info.multipleSelection() || info.partialSelection());
    EXPECT_EQ(info.selectionGeometry(), PRIMITIVE_POLYGON);
    EXPECT_EQ(info.triangulationTag(), CurveStackTriangulationContourTag::Begin);

    items[2]->getSelection().set(true, 0, true);
    info.update();
    EXPECT_TRUE(info.multipleSelection() && info.partialSelection());
    EXPECT_TRUE(info.homogeneousSelection());
    EXPECT_FALSE(info.singleModelSelection());

    items[3]->getSelection().set(true);
    items[4]->getSelection().set(true);
    info.update();
    EXPECT_FALSE(info.homogeneousSelection()) << "stays mixed when a polygon comes behind";
}
