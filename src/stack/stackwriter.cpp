#include "stack/stackwriter.h"

#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/pixels/voxelmatrix.h"
#include "image/sources/imagesourcekinds.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/pose.h"
#include "stack/stack.h"
#include "stack/stackslice.h"
#include "stack/statedsource.h"
#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"
#include "system/stringtools.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <memory>
#include <optional>

namespace {

using Keyword = StackIO::Keyword;

constexpr const char* inWrite = "bool StackWriter::write(const Stack&, const string&)";

std::string text(int value)
{
    return std::to_string(value);
}

std::string formatted(float value, std::chars_format format, int precision)
{
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, format, precision);
    return std::string(buffer, end.ptr);
}

std::string text(float value)
{
    if (!std::isfinite(value)) {
        raise<ValueError>(inWrite, "A stack file can't hold a number that is not finite");
    }
    return formatted(value, std::chars_format::general, 6);
}

std::string text(bool value)
{
    return value ? "true" : "false";
}

const std::string& text(const std::string& value)
{
    return value;
}

/// The name, which must not hold a character that ends it early.
const std::string& fitting(const std::string& name, const char* ends)
{
    if (name.find_first_of(ends) != std::string::npos) {
        raise<ValueError>(inWrite, "A stack file can't hold a name with a double quote, a line "
                                   "break or, for a tile, a semicolon: " +
                                       name);
    }
    return name;
}

std::string quoted(const std::string& name)
{
    return '"' + fitting(name, "\"\n") + '"';
}

/// Writes statements with the words of the table.
class Statements
{
public:
    Statements(const StackIO& words, std::ostream& stream)
        : words_(words)
        , stream_(stream)
    {}

    template <class... Values>
    void write(Keyword keyword, const Values&... values)
    {
        stream_ << words_.getString(keyword);
        ((stream_ << ' ' << text(values)), ...);
        stream_ << ";\n";
    }

private:
    const StackIO& words_;
    std::ostream& stream_;
};

// Comparing what is written, not what is held, makes a second writing equal to the first.
bool sameText(float a, float b)
{
    return text(a) == text(b);
}

void append(std::string& data, int value)
{
    char buffer[16];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
    data.append(buffer, end.ptr);
}

std::string vertexData(const Vertices<int>& vertices)
{
    constexpr int verticesPerLine = 7;
    const int count = vertices.getSize();
    std::string data;
    data.reserve(static_cast<std::size_t>(count) * 12);
    for (int i = 0; i < count; ++i) {
        const Vector<int>& vertex = vertices[i];
        data += ' ';
        append(data, vertex[0]);
        data += ',';
        append(data, vertex[1]);
        if ((i + 1) % verticesPerLine == 0 && i + 1 < count) {
            data += '\n';
        }
    }
    return data;
}

std::string regionData(const RLEItemSet0& set)
{
    constexpr std::size_t lineLimit = 80;
    std::string data;
    std::size_t sum = 0;
    const int count = set.numItems();
    for (int i = 0; i < count; ++i) {
        const RLEItem0& item = set.getItem(i);
        std::string run = " ";
        append(run, item.getOrigin()[0]);
        run += ',';
        append(run, item.getOrigin()[1]);
        run += ',';
        append(run, item.getLength());
        sum += run.size();
        if (sum > lineLimit) {
            data += '\n';
            sum = 0;
        }
        data += run;
    }
    return data;
}

std::string withoutFinalSeparator(const std::string& folder)
{
    return folder.size() > 1 && folder.back() == '/' ? folder.substr(0, folder.size() - 1) : folder;
}

void writeMosaic(Statements& out, const std::string& name, const ImageSourceFileMosaic& mosaic)
{
    out.write(Keyword::Slice, quoted(name), mosaic.getRows(), mosaic.getCols());
    const auto* stated = dynamic_cast<const StatedMosaic*>(&mosaic);
    for (int i = 0; i < mosaic.getRows(); ++i) {
        for (int j = 0; j < mosaic.getCols(); ++j) {
            std::string file = mosaic.getFilename(i, j);
            if (file.empty() && stated != nullptr) {
                file = stated->missingName(i, j);
            }
            if (!file.empty()) {
                out.write(Keyword::Image, i + 1, j + 1, fitting(file, ";\n"));
            }
        }
    }
}

} // namespace

bool StackWriter::write(const Stack& stack, const std::string& path)
{
    log.clear();
    numFatalErrors = 0;
    std::optional<FileReplacement> replacement;
    try {
        replacement.emplace(inWrite, path);
    } catch (const FileWriteError&) {
        return false;
    }
    replacement->setOnlyCopy();
    std::ofstream stream(replacement->temporaryName(), std::ios_base::binary);
    if (!stream) {
        return false;
    }
    writeHeader(stack, stream);
    writeSlices(stack, FileInfo::dirName(path), stream);
    writeModels(stack, stream);
    writePoses(stack, stream);
    stream.close();
    replacement->commit(stream.good());
    return true;
}

void StackWriter::writeHeader(const Stack& stack, std::ostream& stream)
{
    Statements out(*this, stream);
    const PixelCalibration& calibration = stack.getDefaultPixelCalibration();
    out.write(Keyword::FileFormatVersion,
              formatted(fileFormatVersion, std::chars_format::fixed, 2));
    out.write(Keyword::Stack, quoted(stack.getName()));
    out.write(Keyword::LengthUnitScale, stack.getLengthUnit().getScale());
    out.write(Keyword::PixAspect, calibration.getAspectRatio());
    out.write(Keyword::PixWidth, calibration.getPixelWidth());
    out.write(Keyword::RelPosition, stack.getDefaultRelativePosition());
    out.write(Keyword::LastSegmentedSlice, quoted(stack.getLastSegmentedSlice()));
    out.write(Keyword::LastRegisteredSlice, quoted(stack.getLastRegisteredSlice()));
    out.write(Keyword::Annotation, '"' + exportString(stack.getAnnotation()) + '"');
    out.write(Keyword::AbsoluteImagesPathPolicy, stack.getAbsoluteImagesPathPolicy());
    out.write(Keyword::InvertZAxis, stack.hasInvertedZAxis());
}

void StackWriter::writeSlices(const Stack& stack, const std::string& folder, std::ostream& stream)
{
    Statements out(*this, stream);
    const PixelCalibration& defaults = stack.getDefaultPixelCalibration();
    std::string lastFolder;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        stream << EOL;
        writeSource(slice, stack, folder, lastFolder, stream);
        out.write(Keyword::SliceSize1, slice.getImageSource().getSize1());
        out.write(Keyword::SliceSize2, slice.getImageSource().getSize2());

        if (!slice.useRelativePosition()) {
            out.write(Keyword::Position, slice.getAbsolutePosition());
        } else if (!sameText(slice.getRelativePosition(), stack.getDefaultRelativePosition())) {
            out.write(Keyword::RelPosition, slice.getRelativePosition());
        }
        const PixelCalibration& calibration = slice.getPixelCalibration();
        if (!sameText(calibration.getAspectRatio(), defaults.getAspectRatio())) {
            out.write(Keyword::PixAspect, calibration.getAspectRatio());
        }
        if (!sameText(calibration.getPixelWidth(), defaults.getPixelWidth())) {
            out.write(Keyword::PixWidth, calibration.getPixelWidth());
        }
        const Registration& registration = slice.getRegistration();
        if (registration.rotationAngle != 0.0f) {
            out.write(Keyword::Rotate, registration.rotationAngle);
        }
        if (registration.horShift != 0 || registration.verShift != 0) {
            out.write(Keyword::Shift, registration.horShift, registration.verShift);
        }
        if (!slice.getAnnotation().empty()) {
            out.write(Keyword::Annotation, '"' + exportString(slice.getAnnotation()) + '"');
        }
    }
}

void StackWriter::writeSource(const StackSlice& slice,
                              const Stack& stack,
                              const std::string& folder,
                              std::string& lastFolder,
                              std::ostream& stream)
{
    Statements out(*this, stream);
    const std::string& name = slice.getName();
    const ImageSource& source = slice.getImageSource();

    const auto enterFolderOf = [&](const std::string& file) {
        if (file.empty()) {
            return;
        }
        std::string own = FileInfo::dirName(file);
        if (!stack.getAbsoluteImagesPathPolicy()) {
            own = FileInfo::relativePath(withoutFinalSeparator(own), folder);
            own = own == "." ? "" : own;
        }
        if (own != lastFolder) {
            out.write(Keyword::ImagesPath, quoted(own));
            stream << EOL;
            lastFolder = own;
        }
    };
    const auto writePlane = [&](const std::string& file, int plane) {
        enterFolderOf(file);
        out.write(Keyword::StackSlice, quoted(name), quoted(FileInfo::fileName(file)), plane);
    };

    const char* const where =
        "void StackWriter::writeSlices(const Stack&, const string&, ostream&)";
    withKind(source, where,
             Kinds{[&](const ImageSourceFile& file) {
                       enterFolderOf(file.getFilename());
                       out.write(Keyword::Slice, quoted(name),
                                 quoted(FileInfo::fileName(file.getFilename())));
                   },
                   [&](const ImageSourceFileMosaic& mosaic) { writeMosaic(out, name, mosaic); },
                   [&](const ImageSourceVoxelMatrixPlane& plane) {
                       writePlane(withoutFinalSeparator(stack.getImagesPath()), plane.getPlane());
                   },
                   [&](const ImageSourceVoxelMatrixFilePlane& plane) {
                       writePlane(plane.getVoxelMatrixFilename(), plane.getPlane());
                   },
                   [&](const ImageSourceTiffStackPlane& page) {
                       writePlane(page.getTiffStackFilename(), page.getPlane());
                   },
                   [&](const ImageSourceLSMStackPlane&) {
                       raise<ProgramError>(
                           where, "A plane of an LSM file has no written form: slice " + name);
                   }});
}

void StackWriter::writeModels(const Stack& stack, std::ostream& stream)
{
    for (int i = 0; i < stack.getNumModels(); ++i) {
        const Model& model = stack.getModel(i);
        writeModel(model, stream);
        for (int j = 0; j < model.getNumItems(); ++j) {
            const ModelItem& item = model.getItem(j);
            if (item.getSlice() != nullptr && stack.findSlice(*item.getSlice()) >= 0) {
                writeItem(item, model, stream);
            } else {
                log.push_back("Model \"" + model.getName() +
                              "\": an item on a slice outside the stack was left out");
            }
        }
    }
}

void StackWriter::writeModel(const Model& model, std::ostream& stream)
{
    Statements out(*this, stream);
    // A new model tells what an attribute is that this one leaves undefined.
    ModelProperties properties = Model().getProperties();
    properties.update(model.getProperties());
    ModelItemProperties itemProperties = Model().getItemProperties();
    itemProperties.update(model.getItemProperties());
    const Vector<int>& color = itemProperties.getColor();

    stream << EOL;
    out.write(Keyword::Model, quoted(model.getName()));
    out.write(Keyword::Brilliancy, properties.getSurfaceShininess());
    out.write(Keyword::Color, color[0], color[1], color[2]);
    out.write(Keyword::EcoRendering, properties.getEconomicRendering());
    out.write(Keyword::FilledIn, itemProperties.getVertexSymbolFilling());
    out.write(Keyword::Hidden3D, !itemProperties.getRenderingVisibility());
    out.write(Keyword::PointSize, itemProperties.getPointSize());
    out.write(Keyword::Primitive, ModelProperties::toString(properties.getGeometry()));
    out.write(Keyword::RenderingMode, ModelProperties::toString(properties.getRenderingMode()));
    out.write(Keyword::Resampling, properties.getQuadMeshWidth(), properties.getQuadMeshHeight());
    out.write(Keyword::MeshVertexSmoothing, properties.getVertexSmoothing());
    out.write(Keyword::MeshNormalSmoothing, properties.getNormalSmoothing());
    out.write(Keyword::Thickness, itemProperties.getLineWidth());
    out.write(Keyword::Transparency, properties.getSurfaceOpacity());
    out.write(Keyword::VertexSymbol,
              ModelItemProperties::toString(itemProperties.getVertexSymbol()));
    if (properties.hasBeginCapFlag()) {
        out.write(Keyword::BeginCap, properties.getBeginCapFlag());
    }
    if (properties.hasEndCapFlag()) {
        out.write(Keyword::EndCap, properties.getEndCapFlag());
    }
}

void StackWriter::writeItem(const ModelItem& item, const Model& model, std::ostream& stream)
{
    Statements out(*this, stream);
    const ModelItemProperties& properties = item.getProperties();
    stream << EOL;
    out.write(Keyword::ModelItem, quoted(model.getName()), quoted(item.getSlice()->getName()));
    if (properties.definesColor()) {
        const Vector<int>& color = properties.getColor();
        out.write(Keyword::Color, color[0], color[1], color[2]);
    }
    if (properties.definesVertexSymbolFilling()) {
        out.write(Keyword::FilledIn, properties.getVertexSymbolFilling());
    }
    if (properties.definesRenderingVisibility()) {
        out.write(Keyword::Hidden3D, !properties.getRenderingVisibility());
    }
    if (properties.definesPointSize()) {
        out.write(Keyword::PointSize, properties.getPointSize());
    }
    if (properties.definesLineWidth()) {
        out.write(Keyword::Thickness, properties.getLineWidth());
    }
    if (properties.definesVertexSymbol()) {
        out.write(Keyword::VertexSymbol,
                  ModelItemProperties::toString(properties.getVertexSymbol()));
    }
    if (item.getTriangulationTag() == CurveStackTriangulationContourTag::Begin) {
        out.write(Keyword::TriangulationTag, std::string("Begin"));
    } else if (item.getTriangulationTag() == CurveStackTriangulationContourTag::End) {
        out.write(Keyword::TriangulationTag, std::string("End"));
    }
    const bool region = model.getProperties().definesGeometry() &&
                        model.getProperties().getGeometry() == PRIMITIVE_REGION;
    stream << getString(Keyword::ModelItemData) << EOL
           << (region ? regionData(item.getRLEItemSet()) : vertexData(item.getVertices())) << ';'
           << EOL;
}

void StackWriter::writePoses(const Stack& stack, std::ostream& stream)
{
    Statements out(*this, stream);
    for (int i = 0; i < stack.getNumPoses(); ++i) {
        const Pose& pose = stack.getPose(i);
        const Vector<int>& shift = pose.getTranslation();
        stream << EOL;
        out.write(Keyword::Pose, quoted(pose.getName()));
        out.write(Keyword::PoseRotation, pose.getXRotation(), pose.getYRotation(),
                  pose.getZRotation());
        out.write(Keyword::PoseShift, shift[0], shift[1]);
        out.write(Keyword::PoseZoom, pose.getZoom());
        out.write(Keyword::AmbientLight, pose.getAmbientLight());
        out.write(Keyword::DiffuseLight, pose.getDiffuseLight());
        out.write(Keyword::SpecularLight, pose.getSpecularLight());
    }
}

template <class T>
void StackWriter::saveAsStack(const VoxelMatrix<T>& matrix,
                              const std::string& name,
                              const std::string& imagesFolder,
                              const std::string& stackFolder,
                              const PixelCalibration& calibration,
                              float spacing)
{
    Stack stack;
    for (int k = 0; k < matrix.getSize3(); ++k) {
        const std::string sliceName = StringTools::toString(k, 3, '0');
        const std::string file = imagesFolder + name + "_" + sliceName + ".tif";
        PixelMatrix<T> plane = matrix[k];
        plane.setPixelCalibration(calibration);
        Image0 image;
        plane.convertToImage(image, 8);
        ImageWriter().write(image, file, true);

        auto slice = std::make_unique<StackSlice>();
        slice->setName(sliceName);
        slice->setImageSource(ImageSourceFile(file));
        slice->setPixelCalibration(calibration);
        slice->setRelativePosition(spacing);
        slice->setStack(stack);
        stack.addSlice(*slice.release());
    }
    stack.setName(name);
    stack.setDefaultPixelCalibration(calibration);
    stack.setDefaultSliceSpacing(spacing);
    stack.setImagesPath(imagesFolder);
    const std::string path = stackFolder + name + ".sdf";
    if (!write(stack, path)) {
        raiseFile<FileWriteError>("void StackWriter::saveAsStack<T>(const VoxelMatrix<T>&, const "
                                  "string&, const string&, const string&, const "
                                  "PixelCalibration&, const float)",
                                  "The stack file can't be written", path);
    }
}

template void StackWriter::saveAsStack(const VoxelMatrix<int>&,
                                       const std::string&,
                                       const std::string&,
                                       const std::string&,
                                       const PixelCalibration&,
                                       float);
template void StackWriter::saveAsStack(const VoxelMatrix<float>&,
                                       const std::string&,
                                       const std::string&,
                                       const std::string&,
                                       const PixelCalibration&,
                                       float);
template void StackWriter::saveAsStack(const VoxelMatrix<double>&,
                                       const std::string&,
                                       const std::string&,
                                       const std::string&,
                                       const PixelCalibration&,
                                       float);
template void StackWriter::saveAsStack(const VoxelMatrix<long double>&,
                                       const std::string&,
                                       const std::string&,
                                       const std::string&,
                                       const PixelCalibration&,
                                       float);
