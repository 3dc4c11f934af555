#pragma once

#include "samples/leafplan.h"
#include "samples/polyline.h"

#include <vector>

/// Places a leaf on a picture: from positions across (x, positive to the right) and along (y, from
/// the base of the blade to its tip) the upright leaf, to pixels, and back.
class LeafFrame
{
public:
    LeafFrame() = default;

    /// Without shift; bent and tilted as planned.
    explicit LeafFrame(const LeafPlan& plan);

    Point toPicture(const Point& onLeaf) const;
    Point toLeaf(const Point& inPicture) const;

    /// Moves everything by so many pixels.
    void shift(const Point& by) { origin_ = origin_ + by; }

private:
    double sideways(double along) const;

    Point origin_;
    double cosine_ = 1.0;
    double sine_ = 0.0;
    double bladeLength_ = 1.0;
    double petioleLength_ = 1.0;
    double bend_ = 0.0;
    double petioleBend_ = 0.0;
};

/// A vein: its middle line and its width at both ends.
struct Vein
{
    Polyline line;
    double firstWidth = 0.0;
    double lastWidth = 0.0;
};

/// What a corner of the margin is.
enum class Structure { Sinus, Tip };

/// Whose corner it is: of a tooth of the leaf, of a tooth on a tooth, or of the tooth next to the
/// tip of the leaf, where that is smaller than its neighbour. The notch between two teeth of the
/// leaf is primary, and so is that below a distal tooth.
enum class ToothClass { Primary, Secondary, Distal };

/// A corner as it was drawn.
struct TrueLandmark
{
    Point place;
    Structure structure = Structure::Sinus;
    ToothClass label = ToothClass::Primary;
};

/// The geometry of one leaf in pixels of its picture.
struct LeafOutline
{
    LeafFrame frame;
    /// Blade and stalk in one closed line, clockwise on the screen, a point per pixel.
    Polyline outline;
    /// Where the blade meets the stalk: left and right with the tip up. They lie on the outline, a
    /// few pixels up the blade from the corner.
    Point leftJunction;
    Point rightJunction;
    Point apex;
    /// Of the blade alone, in square pixels.
    double bladeArea = 0.0;
    std::vector<Vein> veins;
    /// All notches and tips of teeth, on the outline: the upper half from base to tip, then the
    /// lower one. The tip of the leaf is none, nor is that of a palmate leaf's middle lobe.
    std::vector<TrueLandmark> landmarks;
};

/// Draws the outline of a plan, in the middle of a picture of this size.
LeafOutline makeOutline(const LeafPlan& plan, int width, int height);

/// The outline, the places on it and the area as they are on a picture so many times as large; frame
/// and veins stay.
LeafOutline enlarged(LeafOutline leaf, double factor);
