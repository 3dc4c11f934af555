#pragma once

#include "intake/leaffinder.h"
#include "intake/leaftable.h"
#include "intake/outlinechoice.h"
#include "intake/scale/scalerequest.h"
#include "intake/slicecutter.h"
#include "interface/stackbuilder.h"

#include <optional>
#include <string>
#include <vector>

class ExtractContour;
class LMXStack;

/// A photograph, or a page of a file that has several, as it enters a stack.
struct IntakePicture
{
    std::string path; ///< of the file
    std::string name; ///< of its slice, if it gives one
    Photograph pixels;
    PixelCalibration calibration; ///< in the stack's unit
    FoundScale scale;             ///< if one was looked for
    /// Where a slice of the whole picture takes its pixels from; null for a PNG or JPEG photograph,
    /// which is converted when needed.
    std::shared_ptr<const ImageSource> source;
};

/// A leaf on its way into a stack.
struct IntakeLeaf
{
    std::string name; ///< of its slice
    SliceCut cut;
    ChosenOutline outline;
    LeafRow row;
};

/// Takes photographs into a stack: one slice a leaf, with its outline.
///
/// The steps are apart, so that a program can show what was found and change it: `open` a file,
/// `find` the leaves of each picture, `prepare` each leaf, `add` it. The first three touch no stack
/// and may run in any thread, each thread with an intake of its own; `add` belongs to the stack's.
class LeafIntake
{
public:
    struct Options
    {
        std::string folder; ///< of the stack's file; conversions and cuts go there
        LengthUnit unit;
        std::optional<float> pixelWidth;
        /// Looked for on each photograph, in place of what its file states. Where it isn't found, the
        /// photograph has no scale unless the settings give one.
        ScaleRequest scale;
        OutlineWish wish;
        const LeafTable* settings = nullptr; ///< rows given back; may be null
    };

    explicit LeafIntake(const Options& options);

    /// Reads a file. Raises the errors of the readers for one that is no picture.
    std::vector<IntakePicture> open(const std::string& path);

    /// The leaves of a picture: those of the settings' rows if it has some, else those found.
    FoundLeaves find(const IntakePicture& picture) const;

    /// Cuts the slice of a leaf and finds its outline. `place` is that among `found.leaves`.
    IntakeLeaf prepare(const IntakePicture& picture, const FoundLeaves& found, int place) const;

    /// Appends the slice, and stores its contour by `stage`, whose models must exist. Writes the cut
    /// beside the stack. Raises `NameError` for a name that the stack has already, `FileWriteError`.
    void
    add(LMXStack& stack, ExtractContour& stage, const IntakePicture& picture, IntakeLeaf& leaf);

    /// Has to follow when all slices are there.
    void finish(LMXStack& stack) const { builder_.finish(stack); }

    /// What a user should know of the files opened so far, a sentence each.
    const std::vector<std::string>& notes() const { return notes_; }

private:
    void findScaleOf(IntakePicture& picture);
    PixelCalibration calibrationOf(const IntakePicture& picture, LeafRow& row) const;
    const LeafRow* rowOf(const IntakePicture& picture, int place) const;
    std::string writeCut(const IntakePicture& picture, const IntakeLeaf& leaf);

    Options options_;
    StackBuilder builder_;
    std::vector<std::string> notes_;
};
