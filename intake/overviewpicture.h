#pragma once

#include "intake/leafintake.h"

#include <QImage>

/// A photograph in small on which is drawn what was found: leaves outlined with the names of their
/// slices, things taken for no leaf crossed out with the reason, what the scale was found by. Needs the fonts of a
/// `QGuiApplication`.
class OverviewPicture
{
public:
    /// `leaves` are the slices made of `found.leaves`, in that order.
    static QImage draw(const IntakePicture& picture,
                       const FoundLeaves& found,
                       const std::vector<IntakeLeaf>& leaves);
};
