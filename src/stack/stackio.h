#pragma once

#include "system/progresssubject.h"

#include <map>
#include <string>
#include <vector>

/// What writer and reader of the stack description file share: the keywords, the escapes of texts,
/// the version, and the report of a run.
///
/// The file (suffix "sdf") is text, one statement after another: a keyword, its values, a
/// semicolon. The keywords are class data that stand while any `StackIO` does, without a lock.
class StackIO : public ProgressSubject
{
public:
    /// The words of the file; each has one text or more, the first of which is written.
    enum class Keyword {
        Annotation = 0,
        BeginCap,
        Brilliancy,
        CalibrationCurve,
        Color,
        EcoRendering,
        EndCap,
        FileFormatVersion,
        FilledIn,
        Fit,
        Hidden3D,
        Image,
        ImagesPath,
        InvertZAxis,
        AbsoluteImagesPathPolicy,
        LastSegmentedSlice,
        LastRegisteredSlice,
        LengthUnitScale,
        Model,
        ModelItem,
        ModelItemData,
        MeshNormalSmoothing,
        PixAspect,
        PixHeight,
        PixWidth,
        PointSize,
        Pose,
        PoseRotation,
        PoseShift,
        PoseZoom,
        AmbientLight,
        DiffuseLight,
        SpecularLight,
        Position,
        Primitive,
        RelPosition,
        RenderingMode,
        Resampling,
        Rotate,
        Sample,
        SampleCoords,
        SampleValue,
        Shift,
        Slice,
        SliceSize1,
        SliceSize2,
        Stack,
        StackSlice,
        StandardImage,
        Thickness,
        Transparency,
        TriangulationTag,
        MeshVertexSmoothing,
        VertexSymbol,
        Unknown = 54
    };

    StackIO();
    StackIO(const StackIO& other);
    StackIO& operator=(const StackIO& other) = default;
    ~StackIO() override;

    /// The version of the file at hand, 1.05 unless a file says otherwise.
    float getFileFormatVersion() const { return fileFormatVersion; }

    void setFileFormatVersion(float version) { fileFormatVersion = version; }

    /// Whether a feature of version `version` may stand in the file.
    bool ensureFileFormatVersion(float version) const;

    /// The keyword that has this text, upper and lower case told apart; `Unknown` for any other.
    Keyword getKeyword(const std::string& text) const;

    /// The text that is written for the keyword; empty for `Unknown`.
    std::string getString(Keyword keyword) const;

    /// Makes a text fit between double quotes on one line: replaces ";" by "__SC__", a line feed by
    /// "__NL__", a double quote by "__DQ__". A text that holds such a mark itself comes back
    /// changed.
    std::string exportString(const std::string& text) const;

    /// The way back.
    std::string importString(const std::string& text) const;

    /// Replaces every occurrence of `from`, going on behind each replacement. An empty `from` occurs
    /// nowhere.
    static void replace(std::string& text, const std::string& from, const std::string& to);

    /// The messages of the last run, in the order of the file.
    const std::vector<std::string>& getLog() const { return log; }

    /// How many of them tell of something in the file that is lost.
    int getNumFatalErrors() const { return numFatalErrors; }

protected:
    /// Ends each statement, behind the semicolon.
    static constexpr const char* EOL = "\n";

    std::vector<std::string> log;
    int numFatalErrors = 0;
    float fileFormatVersion = 1.05f;

private:
    using Keywords = std::map<Keyword, std::vector<std::string>>;

    // No plain class data: each library with this code would set up and destroy the one table.
    static Keywords& keywords();
    static int numInstances_;
};
