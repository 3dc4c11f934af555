#pragma once

#include "blade/process/modelsmanager.h"

#include <QString>

#include <string>
#include <vector>

template <class T>
class SquareMatrix;

/// Writes every tooth of every leaf as a curve file of its own, sorted by rank: below the output
/// path "teeth/l/<rank>/<slice>_up.cv" and "..._down.cv". Rank 1 is the tooth next to the apex.
///
/// A tooth is the run of contour vertices between two neighbouring sinuses of one half of the blade,
/// both included; sinuses before the apex bound the upper teeth, the others the lower ones. The
/// tooth across the apex of a palmate leaf is not written.
///
/// The files hold open curves of three coordinates in the stack's length unit, in one frame for
/// both halves: basal sinus at the origin, distal sinus on the positive first axis, the tooth on the
/// side of positive second coordinates, the third coordinate 0.
///
/// A file that is there is overwritten; one of a tooth that is no more stays. In the names a slash
/// of a slice's name becomes "_", and of slices with equal names the later ones get "-2", "-3" and
/// so on, so that none takes the place of another.
class ExportShapes : public ModelsManager
{
public:
    ExportShapes();

    /// The folder in which "teeth" comes to stand.
    void setOutputPath(const QString& path) { outputPath = path.toUtf8().toStdString(); }

    /// Makes the folders, exports all slices in their order, and tells "Export is complete",
    /// followed by what could not be exported, one a line. Raises `FileWriteError` with the path of
    /// the folder or file that can't be written; the files written before stay.
    void run() override;

    /// Exports the teeth of one slice; always returns the empty text. A slice without sinuses has
    /// none.
    std::string process(int slice) override;

    /// Makes no model.
    void createModels() override;

    /// Moves a tooth of the half before the apex into the common frame, multiplied by
    /// `calibration`, and writes it. `tooth` runs from its basal to its distal sinus and has a chord
    /// between them; it stays as it is.
    void SaveUpperTeeth(const Curve<float>& tooth,
                        const std::string& sliceName,
                        int rank,
                        const std::string& subdirectory,
                        float calibration) const;

    /// The same for the half behind the apex, whose teeth run from the distal sinus to the basal
    /// one.
    void SaveLowerTeeth(const Curve<float>& tooth,
                        const std::string& sliceName,
                        int rank,
                        const std::string& subdirectory,
                        float calibration) const;

    /// A copy of a plane curve, with 0 as its third coordinate.
    Curve<float> make2Dto3D(const Curve<float>& curve) const;

    /// The matrix, of the size of `a`, that turns the direction of `a` into that of `b` in the plane
    /// of the first two coordinates, applied as matrix times vector. Raises `MathError` if one of
    /// them is zero.
    SquareMatrix<float> rotationMatrix(const Vector<float>& a, const Vector<float>& b) const;

    /// What was left out since the object was made, one text a case with the name of the slice.
    const std::vector<std::string>& getLeftOut() const { return leftOut; }

    /// The number of files written since the object was made.
    int getNumTeeth() const { return numTeeth; }

private:
    enum class Half { Upper, Lower };

    void exportHalf(int slice, const Vector<int>& sinuses, Half half);
    Curve<float> toothBetween(int s0, int s1) const;
    void nameFiles();
    std::string rankDirectory(const std::string& subdirectory, int rank) const;

    std::string outputPath;
    std::string teethPath;
    std::vector<std::string> fileNames;
    std::vector<std::string> leftOut;
    int numTeeth = 0;
};
