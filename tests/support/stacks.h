#pragma once

#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesourcefile.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/pose.h"
#include "stack/stack.h"
#include "stack/stackslice.h"
#include "stack/statedsource.h"
#include "system/exception.h"

#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// Builders of documents.
namespace stacks {

/// A source of the name and size given, whether the file is there or not.
inline StatedSource<ImageSourceFile> statedFile(const std::string& path, int rows, int columns)
{
    ImageSourceFile source;
    try {
        source.setFilename(path);
    } catch (const Exception&) {
        // The file isn't there; the source has kept the name.
    }
    return StatedSource<ImageSourceFile>(source, rows, columns);
}

inline void writeImage(const std::string& path, int width, int height)
{
    Image0 image;
    image.init(width, height, 8);
    image.clear();
    ImageWriter().write(image, path, true);
}

inline PixelCalibration calibration(float width, float aspectRatio)
{
    PixelCalibration result;
    LengthUnit unit;
    unit.setScale(-6);
    result.setLengthUnit(unit);
    result.setAspectRatio(aspectRatio);
    result.setPixelWidth(width);
    result.compute();
    return result;
}

inline StackSlice& addSlice(Stack& stack, const std::string& name, const ImageSource& source)
{
    auto slice = std::make_unique<StackSlice>();
    slice->setName(name);
    slice->setStack(stack);
    slice->setImageSource(source);
    slice->setPixelCalibration(stack.getDefaultPixelCalibration());
    stack.addSlice(*slice);
    return *slice.release();
}

inline Model&
addModel(Stack& stack, const std::string& name, MPrimitive geometry = PRIMITIVE_POLYGON)
{
    auto model = std::make_unique<Model>();
    model->setName(name);
    model->getProperties().setGeometry(geometry);
    stack.addModel(*model);
    return *model.release();
}

inline ModelItem&
addItem(Model& model, StackSlice& slice, const std::vector<std::pair<int, int>>& vertices)
{
    auto item = std::make_unique<ModelItem>();
    item->setModel(model);
    item->setSlice(slice);
    Vector<int> vertex(2);
    for (const auto& [x, y] : vertices) {
        vertex[0] = x;
        vertex[1] = y;
        item->appendVertex(vertex);
    }
    item->attach();
    return *item.release();
}

inline Pose& addPose(Stack& stack, const std::string& name)
{
    auto pose = std::make_unique<Pose>();
    pose->setName(name);
    pose->setStack(stack);
    pose->setXRotation(10);
    pose->setYRotation(-20);
    pose->setZRotation(30);
    pose->setTranslation(4, -5);
    pose->setZoom(150);
    pose->setAmbientLight(1);
    pose->setDiffuseLight(2);
    pose->setSpecularLight(3);
    pose->attach();
    return *pose.release();
}

/// Draws the values of a random document.
class Dice
{
public:
    explicit Dice(unsigned seed)
        : random_(seed)
    {}

    int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

    bool coin() { return below(2) == 0; }

    template <class Function>
    void maybe(Function function)
    {
        if (coin()) {
            function();
        }
    }

    /// Positive, of any number of digits, over some magnitudes.
    float number()
    {
        constexpr float magnitudes[] = {1e-9f, 1e-3f, 1.0f, 1e6f};
        return (static_cast<float>(random_()) / 4e9f + 0.01f) * magnitudes[below(4)];
    }

    /// With blanks, semicolons, quotes but double ones, marks of other formats, other alphabets.
    std::string name()
    {
        static const std::vector<std::string> pieces = {
            "leaf",   " ", ";",     "'",  "\xC3\xA9t\xC3\xA9",
            "__SC__", ",", "SLICE", "\\", "\xE8\x91\x89"};
        std::string name;
        for (int n = 1 + below(5); n > 0; --n) {
            name += pieces[static_cast<std::size_t>(below(static_cast<int>(pieces.size())))];
        }
        return name;
    }

    Vector<int> color()
    {
        Vector<int> rgb(3);
        for (int i = 0; i < 3; ++i) {
            rgb[i] = below(256);
        }
        return rgb;
    }

private:
    std::mt19937 random_;
};

inline void drawProperties(Dice& dice, ModelItemProperties& properties)
{
    dice.maybe([&] { properties.setColor(dice.color()); });
    dice.maybe([&] { properties.setLineWidth(static_cast<float>(dice.below(50)) / 8.0f); });
    dice.maybe([&] { properties.setPointSize(static_cast<float>(dice.below(50)) / 8.0f); });
    dice.maybe([&] { properties.setVertexSymbol(static_cast<VertexSymbol>(dice.below(6))); });
    dice.maybe([&] { properties.setVertexSymbolFilling(dice.coin()); });
    dice.maybe([&] { properties.setRenderingVisibility(dice.coin()); });
}

inline void drawSlice(Dice& dice, Stack& stack, const std::string& folder)
{
    const std::string file = folder + (dice.coin() ? "/" : "/images; of '1'/") + dice.name();
    StackSlice& slice = addSlice(stack, dice.name() + std::to_string(stack.getNumSlices()),
                                 statedFile(file, dice.below(5000), dice.below(5000)));
    slice.setAnnotation(dice.coin() ? "" : dice.name() + "\n\"" + dice.name() + "\"");
    dice.maybe([&] { slice.setPixelCalibration(calibration(dice.number(), dice.number())); });
    dice.maybe([&] {
        slice.setRegistration({dice.below(9) - 4, dice.below(9) - 4, dice.number()});
    });
    if (dice.coin()) {
        slice.setRelativePosition(-dice.number());
    } else if (dice.coin()) {
        slice.setAbsolutePosition(dice.number());
    }
}

inline void drawItem(Dice& dice, Model& model, StackSlice& slice)
{
    std::vector<std::pair<int, int>> vertices;
    RLEItemSet0 region;
    for (int n = dice.below(40); n > 0; --n) {
        if (model.getProperties().getGeometry() == PRIMITIVE_REGION) {
            region.add(RLEItem0(dice.below(20) - 10, dice.below(300), 1 + dice.below(20)));
        } else {
            vertices.emplace_back(dice.below(9000) - 1000, dice.below(9000) - 1000);
        }
    }
    ModelItem& item = addItem(model, slice, vertices);
    if (!region.isEmpty()) {
        item.setRLEItemSet(region);
    }
    drawProperties(dice, item.getProperties());
    item.setTriangulationTag(static_cast<CurveStackTriangulationContourTag>(dice.below(3)));
}

/// A document with something of everything that a stack file holds. Its images, beside or below
/// `folder`, are not there.
inline std::unique_ptr<Stack> randomStack(unsigned seed, const std::string& folder)
{
    Dice dice(seed);
    auto stack = std::make_unique<Stack>();
    stack->setName(dice.name());
    stack->setAnnotation(dice.name() + ";\n\"");
    stack->setAbsoluteImagesPathPolicy(dice.below(4) == 0);
    stack->setInvertedZAxis(dice.coin());
    stack->setDefaultRelativePosition(dice.number());
    stack->setDefaultPixelCalibration(calibration(dice.number(), dice.number()));
    for (int n = dice.below(6); n > 0; --n) {
        drawSlice(dice, *stack, folder);
    }
    for (int n = dice.below(5); n > 0; --n) {
        Model& model = addModel(*stack, dice.name(), static_cast<MPrimitive>(dice.below(5)));
        drawProperties(dice, model.getItemProperties());
        model.getProperties().setRenderingMode(static_cast<RenderingMode>(dice.below(7)));
        model.getProperties().setSurfaceOpacity(dice.number());
        model.getProperties().setQuadMeshWidth(dice.below(300));
        model.getProperties().setEconomicRendering(dice.coin());
        dice.maybe([&] { model.getProperties().setBeginCapFlag(dice.coin()); });
        for (int i = 0; i < stack->getNumSlices(); ++i) {
            dice.maybe([&] { drawItem(dice, model, stack->getSlice(i)); });
        }
    }
    for (int n = dice.below(3); n > 0; --n) {
        addPose(*stack, dice.name());
    }
    if (stack->getNumSlices() > 0) {
        stack->setLastSegmentedSlice(stack->getLastSlice().getName());
    }
    return stack;
}

} // namespace stacks
