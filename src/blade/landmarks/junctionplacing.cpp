#include "blade/landmarks/junctionplacing.h"

#include "blade/process/landmarks.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/slicenotes.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <cmath>
#include <locale>
#include <sstream>

namespace {

const char* const proposalKey = "junctions proposed";
/// How far, in pixels, junctions may lie from where they were proposed: the stages put them on the
/// contour.
constexpr double unmoved = 3.0;

std::string decimal(double value)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.setf(std::ios_base::fixed);
    stream.precision(1);
    stream << value;
    return stream.str();
}

struct Foot
{
    double x;
    double y;
    double distance;
};

/// The point of a segment that is nearest to (x, y).
Foot footOnSegment(double x, double y, const Vector<int>& a, const Vector<int>& b)
{
    const double dx = b[0] - a[0];
    const double dy = b[1] - a[1];
    const double squared = dx * dx + dy * dy;
    const double along =
        squared > 0.0 ? std::clamp(((x - a[0]) * dx + (y - a[1]) * dy) / squared, 0.0, 1.0) : 0.0;
    const double footX = a[0] + along * dx;
    const double footY = a[1] + along * dy;
    return {footX, footY, std::hypot(x - footX, y - footY)};
}

Foot footOnOutline(double x, double y, const Vertices<int>& outline)
{
    const int size = outline.getSize();
    Foot nearest = footOnSegment(x, y, outline[size - 1], outline[0]);
    for (int i = 1; i < size; ++i) {
        const Foot foot = footOnSegment(x, y, outline[i - 1], outline[i]);
        if (foot.distance < nearest.distance) {
            nearest = foot;
        }
    }
    return nearest;
}

double boxDiagonal(const Vertices<int>& outline)
{
    int lower[2] = {outline[0][0], outline[0][1]};
    int upper[2] = {outline[0][0], outline[0][1]};
    for (int i = 1; i < outline.getSize(); ++i) {
        for (int c = 0; c < 2; ++c) {
            lower[c] = std::min(lower[c], outline[i][c]);
            upper[c] = std::max(upper[c], outline[i][c]);
        }
    }
    return std::hypot(upper[0] - lower[0], upper[1] - lower[1]);
}

std::string faultOnOutline(const JunctionPoints& junctions, const Vertices<int>& outline)
{
    const double allowed = boxDiagonal(outline) / 10.0;
    Foot feet[2];
    for (int i = 0; i < 2; ++i) {
        feet[i] = footOnOutline(junctions.x[i], junctions.y[i], outline);
        if (feet[i].distance > allowed) {
            return "junction " + std::to_string(i + 1) + " lies " + decimal(feet[i].distance) +
                   " pixels from the contour, more than " + decimal(allowed);
        }
    }
    // Where the contour does not reach into the notch beside the stalk, the nearest points of both
    // junctions are on one side of the stalk, and the blade could not be told from it.
    const double drawn =
        std::hypot(junctions.x[0] - junctions.x[1], junctions.y[0] - junctions.y[1]);
    const double found = std::hypot(feet[0].x - feet[1].x, feet[0].y - feet[1].y);
    if (found < drawn / 2.0) {
        return "both junctions fall on one place of the contour, " + decimal(found) +
               " pixels apart there instead of " + decimal(drawn);
    }
    return "";
}

} // namespace

std::optional<double> proposalConfidence(const StackSlice& slice)
{
    const ModelItem* item = landmarkOf(slice, Landmarks::petiole);
    const std::optional<std::string> note = SliceNotes::get(slice, proposalKey);
    std::istringstream stream(note.value_or(""));
    stream.imbue(std::locale::classic());
    double confidence = 0.0;
    if (!item || item->getSize() != 2 || !(stream >> confidence)) {
        return std::nullopt;
    }
    for (int i = 0; i < 2; ++i) {
        int x = 0;
        int y = 0;
        const Vector<int>& vertex = item->getVertices()[i];
        if (!(stream >> x >> y) || std::hypot(vertex[0] - x, vertex[1] - y) > unmoved) {
            return std::nullopt;
        }
    }
    return confidence;
}

std::string junctionFault(const JunctionPoints& junctions, const StackSlice& slice)
{
    const bool hasImage = !slice.isEmpty();
    const int width = hasImage ? slice.width() : 0;
    const int height = hasImage ? slice.height() : 0;
    for (int i = 0; hasImage && i < 2; ++i) {
        const int x = junctions.x[i];
        const int y = junctions.y[i];
        if (x < 0 || y < 0 || x >= width || y >= height) {
            return "junction " + std::to_string(i + 1) + " (" + std::to_string(x) + ", " +
                   std::to_string(y) + ") lies outside the image of " + std::to_string(width) +
                   " x " + std::to_string(height) + " pixels";
        }
    }
    if (junctions.x[0] == junctions.x[1] && junctions.y[0] == junctions.y[1]) {
        return "both junctions are the same point";
    }
    const ModelItem* contour = contourOf(slice);
    return contour ? faultOnOutline(junctions, contour->getVertices()) : "";
}

void JunctionPlacing::createModels()
{
    const int index = stack->findModel(Landmarks::petiole);
    if (index < 0) {
        createModelPetiole();
    } else {
        petioleModel = &stack->getModel(index);
    }
}

void JunctionPlacing::place(const ProposedJunctions& junctions, int slice)
{
    place(static_cast<const JunctionPoints&>(junctions), slice);
    std::ostringstream note;
    note.imbue(std::locale::classic());
    note.setf(std::ios_base::fixed);
    note.precision(2);
    note << junctions.confidence;
    for (int i = 0; i < 2; ++i) {
        note << " " << junctions.x[i] << " " << junctions.y[i];
    }
    SliceNotes::set(stack->getSlice(slice), proposalKey, note.str());
}

void JunctionPlacing::place(const JunctionPoints& junctions, int slice)
{
    createModels();
    StackSlice& target = stack->getSlice(slice);
    SliceNotes::remove(target, proposalKey);
    for (int i = target.getNumItems() - 1; i >= 0; --i) {
        if (target.getItem(i).getModel() == petioleModel) {
            LMXModelItemDeleteEvent event(target.getItem(i));
            LMXEventServer::notifyEvent(event);
            delete &target.getItem(i);
        }
    }
    petioleItem = new ModelItem;
    petioleItem->setModel(*petioleModel);
    petioleItem->setSlice(target);
    Vector<int> vertex(2);
    for (int i = 0; i < 2; ++i) {
        vertex[0] = junctions.x[i];
        vertex[1] = junctions.y[i];
        petioleItem->appendVertex(vertex);
    }
    petioleItem->attach();
    LMXModelItemCreateEvent event(*petioleItem);
    LMXEventServer::notifyEvent(event);
}
