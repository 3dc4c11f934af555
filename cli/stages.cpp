#include "cli/stages.h"

#include "blade/contour/extractcontour.h"
#include "blade/landmarks/extractconvexpoints.h"
#include "blade/landmarks/extractpeak.h"
#include "blade/landmarks/halfneighbourhood.h"
#include "blade/landmarks/junctionplacing.h"
#include "blade/process/landmarks.h"
#include "cli/commandline.h"
#include "cli/failure.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "cli/stagenotes.h"
#include "image/files/imagereader.h"
#include "image/pixels/image0.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/slicenotes.h"
#include "stack/stackslice.h"
#include "stack/stacktovolume.h"
#include "system/exception.h"

#include <optional>

namespace {

const QStringList channelNames = {"auto", "grey", "red", "green", "blue"};
const QStringList backgroundNames = {"dark", "light"};
const QStringList methodNames = {"symmetry", "curvature"};
const QString automatic = "auto";
const char* const halfNeighbourhoodKey = "half neighbourhood";

/// The channel of the images' own colour; grey where colours mix or can't be told. Images that can't
/// be read have no say.
int ownChannel(const LMXStack& stack)
{
    std::optional<ImageColorContent> content;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        ImageColorContent own = ImageColorContent::Unknown;
        const std::string fault = faultOn(slice, [&] {
            Image0 image;
            ImageReader().read(image, slice.getImageSource());
            own = image.colorContent();
        });
        if (!fault.empty()) {
            continue;
        }
        if (own != content.value_or(own)) {
            return 0;
        }
        content = own;
    }
    const bool single = content == ImageColorContent::Red || content == ImageColorContent::Green ||
                        content == ImageColorContent::Blue;
    return single ? static_cast<int>(*content) : 0;
}

/// The half neighbourhood for a slice; notes it in the annotation where it is one a leaf.
int chooseHalfNeighbourhood(StackSlice& slice, const SinusOptions& options)
{
    const auto given = options.halfNeighbourhoodOf.find(slice.getName());
    if (options.halfNeighbourhood > 0 && given == options.halfNeighbourhoodOf.end()) {
        SliceNotes::remove(slice, halfNeighbourhoodKey);
        return options.halfNeighbourhood;
    }
    const int value =
        given != options.halfNeighbourhoodOf.end() ? given->second : autoHalfNeighbourhood(slice);
    if (contourOf(slice)) {
        SliceNotes::set(slice, halfNeighbourhoodKey, std::to_string(value));
    }
    return value;
}

/// Throws `Failure` with the names of file and slice for any error of `work`.
template <class Work>
void onSlice(const StackSlice& slice, Work work)
{
    const std::string fault = faultOn(slice, work);
    if (!fault.empty()) {
        throw Failure(fault);
    }
}

} // namespace

void ContourOptions::declare(CommandLine& line)
{
    line.addOption("channel", "Channel: " + channelNames.join(", ") + ".", "CHANNEL", "auto");
    line.addOption("background", "Brightness of the background: dark or light.", "VALUE", "dark");
    line.addOption("fidelity", "Closeness to the pixels, 10 to 100.", "F", "100");
    line.addFlag("binary", "The photographs have two values, leaf and background.");
}

ContourOptions::ContourOptions(const CommandLine& line)
    : channelName(line.bytes("channel"))
    , channel(line.choice("channel", channelNames) - 1)
    , background(static_cast<BackgroundValue>(line.choice("background", backgroundNames)))
    , fidelity(line.integer("fidelity", 10, 100))
    , binary(line.isSet("binary"))
{}

QJsonObject ContourOptions::toJson() const
{
    return {{"channel", QString::fromStdString(channelName)},
            {"background", backgroundNames[background]},
            {"fidelity", fidelity},
            {"binary", binary}};
}

void SinusOptions::declare(CommandLine& line)
{
    line.addOption("half-neighbourhood",
                   "Half neighbourhood in contour vertices, 1 to 200, or auto: one a leaf, in "
                   "proportion to the length of its outline, so that the size of the photograph "
                   "does not matter.",
                   "N", "25");
    line.addOption("angle", "Angle in degrees below which a notch is a sinus, 1 to 179.", "A",
                   "145");
}

SinusOptions::SinusOptions(const CommandLine& line)
    : halfNeighbourhood(line.text("half-neighbourhood") == automatic
                            ? 0
                            : line.integer("half-neighbourhood", 1, 200))
    , angle(line.number("angle", 1.0, 179.0))
{}

QJsonObject SinusOptions::toJson() const
{
    const QJsonValue shown = halfNeighbourhood > 0 ? QJsonValue(halfNeighbourhood) : automatic;
    return {{"half-neighbourhood", shown}, {"angle", double(angle)}};
}

void TipsOptions::declare(CommandLine& line)
{
    line.addOption("method", "How a tip is found: curvature or symmetry.", "METHOD", "curvature");
    line.addOption("exclude", "Divisor of a tooth's length for the curvature method, 2 to 50.", "N",
                   "10");
}

TipsOptions::TipsOptions(const CommandLine& line)
    : method(static_cast<MethodExtractPeaks>(line.choice("method", methodNames)))
    , exclude(line.integer("exclude", 2, 50))
{}

QJsonObject TipsOptions::toJson() const
{
    return {{"method", methodNames[method]}, {"exclude", exclude}};
}

std::vector<std::pair<std::string, std::string>>
extractContours(LMXStack& stack, const ContourOptions& options, Report& report)
{
    const int channel = options.channel < 0 ? ownChannel(stack) : options.channel;
    ExtractContour process;
    process.setStack(stack);
    process.setChannel(static_cast<ImageColorContent>(channel));
    process.setBackground(options.background);
    process.setFidelity(options.fidelity);
    process.setBinaryImage(options.binary);
    process.createModels();
    StageNotes::clear(stack);
    // The process's own run would hold the images of all slices at once.
    std::vector<std::pair<std::string, std::string>> faults;
    const int slices = stack.getNumSlices();
    for (int i = 0; i < slices; ++i) {
        try {
            onSlice(stack.getSlice(i), [&] {
                PixelMatrix<float> plane;
                loadPlane(stack.getSlice(i), plane, channel);
                process.process(plane, i);
            });
        } catch (const Failure& failure) {
            report.fault(failure.what());
            faults.emplace_back(stack.getSlice(i).getName(), failure.what());
        }
        report.progress("contour", i + 1, slices);
    }
    return faults;
}

int contourSize(const StackSlice& slice)
{
    const ModelItem* contour = contourOf(slice);
    return contour ? contour->getSize() : 0;
}

QJsonObject halfNeighbourhoods(const LMXStack& stack)
{
    QJsonObject values;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        if (const std::optional<std::string> value = SliceNotes::get(slice, halfNeighbourhoodKey)) {
            values[QString::fromStdString(slice.getName())] =
                QString::fromStdString(*value).toInt();
        }
    }
    return values;
}

void declareResampling(CommandLine& line)
{
    line.addOption(
        "resample",
        "once: what the program has resampled and stored, and nobody has changed, is not "
        "resampled again, so that measures stay the same; always: it is.",
        "WHEN", "once");
}

Resampling resamplingOf(const CommandLine& line)
{
    return static_cast<Resampling>(line.choice("resample", {"once", "always"}));
}

void extractSinuses(LMXStack& stack,
                    const SinusOptions& options,
                    Resampling resampling,
                    Report& report)
{
    StageNotes notes(stack, StageNotes::Stage::Sinus, resampling == Resampling::Once);
    ExtractConvexPoints process;
    process.setStack(stack);
    process.setThresholdAngle(options.angle);
    process.createModels();
    const int slices = stack.getNumSlices();
    std::string incomplete;
    for (int i = 0; i < slices; ++i) {
        onSlice(stack.getSlice(i), [&] {
            process.setNeigbourhood(chooseHalfNeighbourhood(stack.getSlice(i), options));
            const std::string name = process.process(i);
            incomplete += name.empty() ? "" : name + "\n";
        });
        report.progress("sinus", i + 1, slices);
    }
    notes.finish();
    report.note(incomplete.empty() ? "Detection of the sinuses is complete"
                                   : "Please add manually all missing sinuses\n" + incomplete);
}

void extractTips(LMXStack& stack,
                 const TipsOptions& options,
                 VenationType venation,
                 Resampling resampling,
                 Report& report)
{
    StageNotes notes(stack, StageNotes::Stage::Tips, resampling == Resampling::Once);
    ExtractPeak process;
    process.setStack(stack);
    process.setMethodToExtract(options.method);
    process.setExcludeNeighbourhood(options.exclude);
    process.setVenationType(venation);
    process.setProgressListener([&report](int percent) {
        if (percent >= 0) {
            report.progress("tips", percent, 100);
        }
    });
    process.run();
    notes.finish();
}

void requireGate(GatedStage stage, const LMXStack& stack, Report& report)
{
    const GateResult result = evaluateGate(stage, stack);
    if (result.passed) {
        return;
    }
    if (!result.missing.empty()) {
        report.fault(stack.getFilename() + ": " + result.missing);
    }
    throw Failure(stack.getFilename() + ": " + stageGate(stage).title + ": " +
                  stageGate(stage).text);
}
