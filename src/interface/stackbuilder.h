#pragma once

#include "image/sources/imagesource.h"
#include "image/values/lengthunit.h"
#include "image/values/pixelcalibration.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class LMXStack;
class Stack;
class StackSlice;

/// What a slice is made of: its name, its pixels, and the size of a pixel in the stack's unit.
struct SliceSource
{
    std::string name;
    std::unique_ptr<ImageSource> pixels;
    PixelCalibration calibration;
};

/// Makes a stack of image files, in the order given: one slice per photograph, named after its file
/// without suffix; one slice per page or plane of a file that has several (TIFF stacks, volume files),
/// named after the file and the number of the page, counted from 1 ("leaf-07"). TIFF, raw and volume
/// files are used where they lie, others are converted (`PhotographImport`, `ImageImport`).
///
/// All slices of a stack have one length unit, to which the calibration of each file is converted.
/// A calibration counts if it has a unit and a width above 0, and comes from no resolution that is no
/// scale (`PhotographRecord::doubt`); a slice without one has pixels of width 1. Pixels that are not square keep their aspect ratio, and their width is that of the
/// square pixels which a slice shows. A width is rounded to what a stack file holds, so that a stack
/// just made gives the same measures as one read from its file.
class StackBuilder
{
public:
    StackBuilder();

    /// Micrometres unless set.
    void setLengthUnit(const LengthUnit& unit) { unit_ = unit; }

    /// The width of the pixels of all photographs, in the unit, in place of what the files state.
    void setPixelWidth(float width) { pixelWidth_ = width; }

    /// The folder for conversions, that of the stack file; the current one if empty.
    void setFolder(const std::string& folder) { folder_ = folder; }

    /// Joins every `rows` times `columns` photographs, row by row, into one slice, named after the
    /// first of them. 1 and 1 unless set. `build` raises `UsageError` when the photographs don't fill
    /// the last one.
    void setMosaic(int rows, int columns);

    /// A photograph that could not be taken, and why.
    struct Refusal
    {
        std::string photograph;
        std::string file; ///< the one that is at fault, a tile or a conversion
        std::string reason;
    };

    /// Leaves out photographs that can't be taken, with the mosaics that they are tiles of, where
    /// `build` would end with an error of a reader or for lack of memory.
    void setGoesOn(bool enabled) { goesOn_ = enabled; }

    /// What the last `build` left out.
    const std::vector<Refusal>& getRefused() const { return refused_; }

    /// Appends the slices to the stack. Raises `NameError` for two photographs of one name,
    /// `ValueError` for a name that a stack file can't hold, and the errors of the image readers; the
    /// stack then has the slices up to there.
    void build(LMXStack& stack, const std::vector<std::string>& photographs);

    /// What the file of a photograph makes: a source for each slice. Converts what needs it. Touches
    /// no stack, so that it may run in any thread, each with a builder of its own. Raises the errors
    /// of `build` for the file.
    std::vector<SliceSource> sourcesOf(const std::string& photograph);

    /// What the file of a photograph states, or nothing if that is no scale
    /// (`PhotographRecord::doubt`), which the first such photograph notes.
    PixelCalibration believed(const PixelCalibration& stated, const std::string& photograph);

    /// The calibration of a slice whose file states this one.
    PixelCalibration sliceCalibration(const PixelCalibration& stated) const;

    /// Appends one slice with this calibration; `photograph` is named in errors. Raises the errors of
    /// `build` for the name. When all are there, `finish` has to follow.
    void addSlice(LMXStack& stack, const SliceSource& source, const std::string& photograph);

    /// Gives the stack the length unit, and the calibration that all its slices have in common.
    void finish(LMXStack& stack) const;

    /// The photograph at which the last `build` ended with an error.
    const std::string& getCurrentPhotograph() const { return current_; }

    /// What the last `build` has to tell about its files, a sentence each.
    const std::vector<std::string>& getNotes() const { return notes_; }

    /// What `sourcesOf` and `believed` had to tell since the notes were taken last.
    std::vector<std::string> takeNotes() { return std::exchange(notes_, {}); }

    /// What a user should know about the pixel sizes of a stack, a sentence each: slices without
    /// one, and sizes or units that differ in kind.
    static std::vector<std::string> calibrationNotes(const Stack& stack);

    /// The slice has a pixel size. A stack file can't tell "no size" from a width of 1, which counts
    /// as none.
    static bool hasPixelSize(const StackSlice& slice);

    /// Gives a slice of a stack square pixels of this width, in the stack's unit, rounded to what a
    /// stack file holds. Pixels of the file that are not square keep their aspect ratio. Tells no
    /// client. A width that is not above 0 raises `ValueError`.
    static void setPixelWidth(StackSlice& slice, float width);

private:
    void append(LMXStack& stack, const std::vector<std::string>& tiles);
    void append(LMXStack& stack, const std::string& photograph);
    void appendMosaic(LMXStack& stack, const std::vector<std::string>& tiles);
    std::vector<SliceSource> pagesOf(const std::string& name, const std::string& file) const;
    std::vector<SliceSource> planesOf(const std::string& name, const std::string& file) const;
    SliceSource sourceOf(const std::string& name,
                         const ImageSource& source,
                         const PixelCalibration& stated) const;
    std::string imageFile(const std::string& photograph);

    LengthUnit unit_;
    std::optional<float> pixelWidth_;
    std::string folder_;
    bool goesOn_ = false;
    std::vector<Refusal> refused_;
    int rows_ = 1;
    int columns_ = 1;
    std::string current_;
    std::vector<std::string> notes_;
    bool doubtTold_ = false;
};
