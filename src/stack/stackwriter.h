#pragma once

#include "stack/stackio.h"

#include <ostream>
#include <string>

class Model;
class ModelItem;
class PixelCalibration;
class Stack;
class StackSlice;

template <class T>
class VoxelMatrix;

/// Writes stack description files.
///
/// Numbers have up to 6 significant digits and a decimal point in every locale. What the format has
/// no form for raises an error: `ValueError` a name that holds a double quote or a line break (or a
/// semicolon, of a mosaic's tile) and a number that is not finite; `ProgramError` a slice without an
/// image source or on a plane of an LSM file. Written all the same, such a file could not be read
/// back. An item whose slice is not in the stack is left out, with a message in the log, which tells
/// of the last writing alone.
class StackWriter : public StackIO
{
public:
    /// Writes the whole stack. Returns false, and reports nothing, if the file can't be created or
    /// written anew. The file takes the place of an older one when it is whole: the errors of the
    /// class, and the `FileWriteError` of a disk that is full, leave the older one as it was, and no
    /// part of a new one.
    bool write(const Stack& stack, const std::string& path);

    /// The slices in stack order. `folder` is the folder of the description file, to which folders
    /// of images are made relative unless the stack wants them absolute; the current folder if
    /// empty. A source of an unknown kind is left out, the rest of its slice is written.
    void writeSlices(const Stack& stack, const std::string& folder, std::ostream& stream);

    /// The models in stack order, each with its items.
    void writeModels(const Stack& stack, std::ostream& stream);
    void writePoses(const Stack& stack, std::ostream& stream);

    /// Turns a volume into a stack on disk, one slice per plane: the planes as 8-bit files
    /// `<imagesFolder><name>_000.tif` and so on, their values truncated to bytes, and the
    /// description `<stackFolder><name>.sdf`, all of them over older ones. `spacing` is the distance
    /// of the slices. `FileWriteError` where one of the files can't be written.
    template <class T>
    void saveAsStack(const VoxelMatrix<T>& matrix,
                     const std::string& name,
                     const std::string& imagesFolder,
                     const std::string& stackFolder,
                     const PixelCalibration& calibration,
                     float spacing);

private:
    void writeHeader(const Stack& stack, std::ostream& stream);
    void writeSource(const StackSlice& slice,
                     const Stack& stack,
                     const std::string& folder,
                     std::string& lastFolder,
                     std::ostream& stream);
    void writeModel(const Model& model, std::ostream& stream);
    void writeItem(const ModelItem& item, const Model& model, std::ostream& stream);
};

extern template void StackWriter::saveAsStack(const VoxelMatrix<int>&,
                                              const std::string&,
                                              const std::string&,
                                              const std::string&,
                                              const PixelCalibration&,
                                              float);
extern template void StackWriter::saveAsStack(const VoxelMatrix<float>&,
                                              const std::string&,
                                              const std::string&,
                                              const std::string&,
                                              const PixelCalibration&,
                                              float);
extern template void StackWriter::saveAsStack(const VoxelMatrix<double>&,
                                              const std::string&,
                                              const std::string&,
                                              const std::string&,
                                              const PixelCalibration&,
                                              float);
extern template void StackWriter::saveAsStack(const VoxelMatrix<long double>&,
                                              const std::string&,
                                              const std::string&,
                                              const std::string&,
                                              const PixelCalibration&,
                                              float);
