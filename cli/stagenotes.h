#pragma once

#include "shape/vertices/vertices.h"

#include <optional>
#include <string>
#include <vector>

class LMXStack;
class StackSlice;

/// Lets a stage of the command line be run again on what it was run on first.
///
/// Sinus detection resamples the contour and stores it in whole pixels; it and the later stages put
/// junctions and sinuses on the nearest vertex. Done again, all of that adds up: a contour that is
/// resampled once more gets one to two per cent longer. So each stage notes, in the annotation of
/// the slice, what it found and the checksum of what it left. A later run of the stage finds what
/// still has that checksum brought back to what the stage had found then; what was changed by hand
/// stays as it is. A hierarchy leaves a contour that sinus detection noted as it was stored.
///
/// The note is one line behind the user's own annotation, `crenara-stages` and then, for each stage
/// and each kind of landmark, the checksum and a `VertexCode`. Other programs take it for a text.
class StageNotes
{
public:
    enum class Stage { Sinus, Tips, Hierarchy };

    /// Brings the slices back to what the stage found at its last run, and drops the notes of it and
    /// of the later stages. Not `active`, it drops all notes and makes none.
    StageNotes(LMXStack& stack, Stage stage, bool active);

    /// To be called when the stage has run: notes what it changed.
    void finish();

    /// Takes the notes out of all annotations.
    static void clear(LMXStack& stack);

private:
    /// The contour, the junctions, or the sinuses with all their labels.
    enum class Kind { Contour, Junctions, Sinuses };

    struct Entry
    {
        Stage stage;
        Kind kind;
        std::string left;
        Vertices<int> found;
    };

    using Entries = std::vector<Entry>;

    static std::vector<Kind> kindsOf(Stage stage);
    static std::string checksum(StackSlice& slice, Kind kind);
    static std::optional<Vertices<int>> found(StackSlice& slice, Kind kind);
    static void bringBack(StackSlice& slice, const Entry& entry);
    static void keepContour(StackSlice& slice, const Vertices<int>& contour);
    static Entries read(const StackSlice& slice);
    static void write(StackSlice& slice, const Entries& entries);

    LMXStack& stack_;
    Stage stage_;
    // Of each slice, those of earlier stages, and what this stage finds.
    std::vector<Entries> notes_;
    std::vector<Entries> before_;
};
