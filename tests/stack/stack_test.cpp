#include "stack/stacksliceselectioninfo.h"
#include "support/errors.h"
#include "support/stacks.h"

#include <algorithm>

namespace {

StackSlice& append(Stack& stack, const std::string& name = "slice")
{
    return stacks::addSlice(stack, name, ImageSourceFile());
}

using stacks::addModel;

ModelItem& addItem(Model& model, StackSlice& slice)
{
    return stacks::addItem(model, slice, {});
}

struct Place
{
    float position = 0.0f;
    bool relative = true;
    bool standard = true;
};

/// Where each slice stands and how far from the one before it.
std::vector<std::pair<float, float>> layOut(const std::vector<Place>& places, float spacing)
{
    std::vector<std::pair<float, float>> result;
    for (const Place& place : places) {
        const bool first = result.empty();
        const float before = first ? 0.0f : result.back().first;
        const float step = place.standard ? spacing : place.position;
        if (place.relative) {
            result.emplace_back(first ? 0.0f : before + step, step);
        } else {
            result.emplace_back(place.position, first ? 0.0f : place.position - before);
        }
    }
    return result;
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
            stack.addSlice(*new StackSlice, i);
            stack.getSlice(i).setStack(stack);
            places.insert(at, Place());
        } else if (operation == 2) {
            stack.getSlice(i).setRelativePosition(value);
            *at = {value, true, false};
        } else if (operation == 3) {
            stack.getSlice(i).setAbsolutePosition(value);
            *at = {value, false, false};
        } else if (operation == 4) {
            if (i > 0 && i < n - 1 && (at + 1)->relative) {
                const auto old = layOut(places, spacing);
                *(at + 1) = {old.at(unsigned(i + 1)).first - old.at(unsigned(i - 1)).first, true,
                             false};
            }
            stack.deleteSlice(i);
            places.erase(at);
        } else {
            spacing = value;
            stack.setDefaultRelativePosition(value);
        }
        std::vector<std::pair<float, float>> found;
        for (int k = 0; k < stack.getNumSlices(); ++k) {
            const StackSlice& slice = stack.getSlice(k);
            found.emplace_back(slice.getAbsolutePosition(), slice.getRelativePosition());
        }
        ASSERT_EQ(found, layOut(places, spacing)) << step;
    }
}

TEST(Stack, NeighboursEndInThemselvesAndStrangersAreRefused)
{
    Stack stack;
    for (const char* name : {"a", "b", "c", "b"}) {
        append(stack, name);
    }
    for (int i = 0; i < 4; ++i) {
        StackSlice& slice = stack.getSlice(i);
        EXPECT_EQ(&slice.nextSlice(), &stack.getSlice(std::min(i + 1, 3)));
        EXPECT_EQ(&slice.prevSlice(), &stack.getSlice(std::max(i - 1, 0)));
        EXPECT_EQ(slice.isFirstSlice(), i == 0);
        EXPECT_EQ(slice.isLastSlice(), i == 3);
        EXPECT_EQ(stack.findSlice(slice), i);
    }
    EXPECT_EQ(stack.findSlice("b"), 1);
    EXPECT_EQ(stack.findSlice("B"), -1);
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
    Pose& pose = stacks::addPose(stack, "front");
    pose.attach();
    addItem(addModel(stack, "Contour"), append(stack));
    stack.clear();
    EXPECT_EQ(stack.getNumSlices() + stack.getNumModels(), 0);
    EXPECT_EQ(stack.getLastSegmentedSlice() + stack.getLastRegisteredSlice(), "");
    EXPECT_EQ(stack.getName(), "sample");
    EXPECT_EQ(stack.getDefaultSliceThickness(), 3.0f);
    EXPECT_EQ(stack.getNumPoses(), 1);
    pose.detach();
    EXPECT_EQ(stack.getNumPoses(), 0);
    delete &pose;
}

TEST(Stack, LengthUnitReachesTheSlicesAndImagesPathEndsInASeparator)
{
    Stack stack;
    EXPECT_EQ(stack.getLengthUnit().getScale(), -6);
    StackSlice& slice = append(stack);
    slice.setPixelCalibration(stacks::calibration(2.5f, 1.0f));
    LengthUnit millimetre;
    millimetre.setScale(-3);
    stack.setLengthUnit(millimetre);
    EXPECT_EQ(stack.getDefaultPixelCalibration().getLengthUnit().getScale(), -3);
    EXPECT_EQ(slice.getPixelCalibration().getLengthUnit().getScale(), -3);
    EXPECT_EQ(slice.getPixelCalibration().getPixelWidth(), 2.5f);
    for (const char* path : {"leaves", "leaves/"}) {
        stack.setImagesPath(path);
        EXPECT_EQ(stack.getImagesPath(), "leaves/");
    }
}

TEST(Stack, GeometryQueriesCountModelsAndTheirItems)
{
    Stack stack;
    Model& first = addModel(stack, "Apex", PRIMITIVE_POLYPOINT);
    addModel(stack, "Contour", PRIMITIVE_POLYGON);
    Model& second = addModel(stack, "Sinus", PRIMITIVE_POLYPOINT);
    EXPECT_EQ(stack.findModel("Sinus"), 2);
    EXPECT_EQ(stack.findModel("sinus"), -1);
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
    EXPECT_EQ(copy.getName() + copy.getAnnotation(), "leafleft side");
    EXPECT_EQ(copy.getRelativePosition(), 7.0f);
    EXPECT_EQ(copy.getThickness(), 0.5f);
    EXPECT_EQ(copy.getRegistration(), slice.getRegistration());
    EXPECT_RAISES(ProgramError, "const ImageSource& Slice::getImageSource() const",
                  "This slice has no image source", StackSlice().getImageSource());
}

TEST(Registration, SumsAndDifferencesUndoEachOtherWithinOneTurn)
{
    stacks::Dice dice(4);
    const auto draw = [&dice]() -> Registration {
        return {dice.below(100) - 50, dice.below(100) - 50, static_cast<float>(dice.below(360))};
    };
    for (int round = 0; round < 500; ++round) {
        const Registration a = draw();
        const Registration b = draw();
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
    const std::pair<Pose, std::vector<int>> poses[] = {
        {Pose::canonicalPose1(), {0, 180, 0}},        {Pose::canonicalPose2(), {0, 90, 0}},
        {Pose::canonicalPose3(), {90, 0, 0}},         {Pose::reverseCanonicalPose1(), {0, 0, 0}},
        {Pose::reverseCanonicalPose2(), {0, -90, 0}}, {Pose::reverseCanonicalPose3(), {-90, 0, 0}}};
    for (const auto& [p, degrees] : poses) {
        EXPECT_EQ((std::vector<int>{p.getXRotation(), p.getYRotation(), p.getZRotation()}),
                  degrees);
    }
    EXPECT_EQ(Pose().getZoom(), 100);
}

TEST(StackSliceSelectionInfo, CountsItemsWithASelection)
{
    Stack stack;
    StackSlice& slice = append(stack);
    Model& contour = addModel(stack, "Contour", PRIMITIVE_POLYGON);
    Model& blade = addModel(stack, "Blade", PRIMITIVE_POLYGON);
    Model& apex = addModel(stack, "Apex", PRIMITIVE_POLYPOINT);
    std::vector<ModelItem*> items;
    for (Model* model : {&contour, &contour, &blade, &apex, &blade}) {
        items.push_back(&addItem(*model, slice));
        items.back()->getSelection().reset(3);
    }
    items[1]->setTriangulationTag(CurveStackTriangulationContourTag::Begin);
    StackSliceSelectionInfo info;
    info.update();
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
