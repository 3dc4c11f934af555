// Part of `VoxelMatrix`: its files, and its planes as pages of a TIFF file.

#include "image/files/imagereader.h"
#include "image/files/tifffile.h"
#include "image/pixels/image0.h"
#include "image/pixels/voxelmatrix.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <locale>
#include <memory>
#include <sstream>

namespace {

constexpr int currentVersion = 1;

using Word = std::array<char, 4>;

Word wordOf(std::int32_t value)
{
    const std::uint32_t bits = static_cast<std::uint32_t>(value);
    return {static_cast<char>(bits & 0xff), static_cast<char>(bits >> 8 & 0xff),
            static_cast<char>(bits >> 16 & 0xff), static_cast<char>(bits >> 24 & 0xff)};
}

void writeInteger(std::ostream& stream, std::int32_t value)
{
    const Word word = wordOf(value);
    stream.write(word.data(), word.size());
}

void writeFloat(std::ostream& stream, float value)
{
    std::int32_t bits;
    std::memcpy(&bits, &value, sizeof(bits));
    writeInteger(stream, bits);
}

/// 0 beyond the end of the file, where the stream has failed.
std::int32_t readInteger(std::istream& stream)
{
    Word word = {};
    stream.read(word.data(), word.size());
    std::uint32_t bits = 0;
    for (int i = 3; i >= 0; --i) {
        bits = bits << 8 | static_cast<unsigned char>(word[static_cast<std::size_t>(i)]);
    }
    return static_cast<std::int32_t>(bits);
}

float readFloat(std::istream& stream)
{
    const std::int32_t bits = readInteger(stream);
    float value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

bool hasTiffSuffix(const std::string& path)
{
    std::string suffix = FileInfo::suffixName(path);
    for (char& c : suffix) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return suffix == "tif" || suffix == "tiff";
}

std::uint64_t bytesFromHere(std::ifstream& stream)
{
    const std::streamoff here = stream.tellg();
    stream.seekg(0, std::ios::end);
    const std::streamoff end = stream.tellg();
    stream.seekg(here);
    return here >= 0 && end >= here ? static_cast<std::uint64_t>(end - here) : 0;
}

/// Whether `a * b * c` elements of `size` bytes fit into `available` bytes. Rows and planes without
/// elements need memory too, so that an empty matrix is held against a limit of its own.
bool fits(int a, int b, int c, std::size_t size, std::uint64_t available)
{
    const bool isEmpty = a == 0 || b == 0 || c == 0;
    std::uint64_t room = isEmpty ? 1 << 12 : available / size;
    for (int factor : {a, b, c}) {
        room /= static_cast<std::uint64_t>(std::max(factor, 1));
    }
    return room >= 1;
}

/// A replacement for the file, whose failure to open has a message of its own.
std::unique_ptr<FileReplacement>
replacementFor(const std::string& where, const std::string& path, bool overwrite)
{
    if (!overwrite && FileInfo::fileExists(path)) {
        raiseFile<FileWriteError>(where, "File already exists", path);
    }
    try {
        return std::make_unique<FileReplacement>(where, path);
    } catch (FileWriteError& error) {
        error.setWhat("Cannot open file for writing");
        throw;
    }
}

} // namespace

/// What stands in front of the elements.
template <class T>
struct VoxelMatrix<T>::Header
{
    int size1;
    int size2;
    int size3;
    VoxelCalibration calibration;
};

/// After `loadHeader` there is nothing to save.
template <class T>
void VoxelMatrix<T>::requirePlanes(const char* where) const
{
    if (!hasPlanes()) {
        raise<UsageError>(where, "The elements of this matrix were not loaded");
    }
}

template <class T>
void VoxelMatrix<T>::save(const std::string& path, bool overwrite) const
{
    const char* const where = "void VoxelMatrix<T>::save(...) const";
    std::string filename(path);
    FileInfo::ensureSuffix(filename, "vm");
    requirePlanes(where);
    const auto replacement = replacementFor(where, filename, overwrite);
    std::ofstream stream(replacement->temporaryName(), std::ios::binary);
    if (!stream) {
        raiseFile<FileWriteError>(where, "Cannot open file for writing", filename);
    }
    saveUnderFormat1(stream);
    stream.close();
    replacement->commit(!stream.fail());
}

template <class T>
void VoxelMatrix<T>::saveUnderFormat1(std::ofstream& stream) const
{
    for (std::int32_t word : {0, 0, 0, currentVersion, dataTypeId(), size1, size2, size3}) {
        writeInteger(stream, word);
    }
    writeInteger(stream, calibration.getLengthUnit().getScale());
    for (int i = 0; i < 3; ++i) {
        writeFloat(stream, calibration.getVoxelSize()[i]);
    }
    const std::streamsize bytes = static_cast<std::streamsize>(sizeof(T)) * size2;
    for (const PixelMatrix<T>& plane : planes) {
        for (int i = 0; i < size1; ++i) {
            stream.write(reinterpret_cast<const char*>(plane[i].data()), bytes);
        }
    }
}

template <class T>
void VoxelMatrix<T>::load(const std::string& path)
{
    read(path, true, "void VoxelMatrix<T>::load(const string&)");
}

template <class T>
void VoxelMatrix<T>::loadHeader(const std::string& path)
{
    read(path, false, "void VoxelMatrix<T>::loadHeader(const string&)");
}

template <class T>
void VoxelMatrix<T>::read(const std::string& path, bool withElements, const char* where)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream || stream.peek() == std::ifstream::traits_type::eof()) {
        if (!stream.is_open() || !stream.eof()) {
            raiseFile<FileReadError>(where, "Cannot open file for reading", path);
        }
        raiseFile<FileFormatError>(where, "The file is empty", path);
    }
    if (hasTiffSuffix(path)) {
        readTiff(path, withElements);
        return;
    }
    const Header header = readHeader(stream, path, where);
    takeSizes(header.size1, header.size2, header.size3, withElements);
    calibration = header.calibration;
    if (withElements) {
        readRows(stream, path, where);
    }
}

template <class T>
void VoxelMatrix<T>::takeSizes(int rows, int columns, int depth, bool withElements)
{
    if (withElements) {
        setSize(rows, columns, depth);
        return;
    }
    planes.clear();
    size1 = rows;
    size2 = columns;
    size3 = depth;
}

template <class T>
typename VoxelMatrix<T>::Header
VoxelMatrix<T>::readHeader(std::ifstream& stream, const std::string& path, const char* where) const
{
    Header header = {};
    header.size1 = readInteger(stream);
    header.size2 = readInteger(stream);
    header.size3 = readInteger(stream);
    if (header.size1 == 0 && header.size2 == 0 && header.size3 == 0) {
        const int version = readInteger(stream);
        // What another version holds behind this number is not known.
        if (stream && version != currentVersion) {
            raiseFile<FileFormatError>(where, "Unknown version of the file format", path);
        }
        if (readInteger(stream) != dataTypeId() && stream) {
            raise<TypeError>("void VoxelMatrix<T>::load(ifstream&)",
                             "Type mismatch between template instantiation and file contents");
        }
        header.size1 = readInteger(stream);
        header.size2 = readInteger(stream);
        header.size3 = readInteger(stream);
        LengthUnit unit;
        unit.setScale(readInteger(stream));
        header.calibration.setLengthUnit(unit);
        Vector<float> voxelSize(3);
        for (int i = 0; i < 3; ++i) {
            voxelSize[i] = readFloat(stream);
            if (!std::isfinite(voxelSize[i])) {
                raiseFile<FileFormatError>(where, "The voxel size is not finite", path);
            }
        }
        header.calibration.setVoxelSize(voxelSize);
    }
    if (!stream) {
        raiseFile<FileFormatError>(where, "The file ends within its header", path);
    }
    if (header.size1 < 0 || header.size2 < 0 || header.size3 < 0) {
        raiseFile<FileFormatError>(where, "The matrix has a negative size", path);
    }
    const std::uint64_t available = bytesFromHere(stream);
    if (!fits(header.size1, header.size2, header.size3, sizeof(T), available)) {
        raiseFile<FileFormatError>(where, "The file is shorter than its header says", path);
    }
    return header;
}

template <class T>
void VoxelMatrix<T>::readRows(std::ifstream& stream, const std::string& path, const char* where)
{
    const std::streamsize bytes = static_cast<std::streamsize>(sizeof(T)) * size2;
    for (PixelMatrix<T>& plane : planes) {
        for (int i = 0; i < size1; ++i) {
            if (!stream.read(reinterpret_cast<char*>(plane[i].data()), bytes)) {
                raiseFile<FileReadError>(where, "The file can't be read to its end", path);
            }
        }
    }
}

template <class T>
std::string VoxelMatrix<T>::tiffDescription() const
{
    const LengthUnit& unit = calibration.getLengthUnit();
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << "ImageJ=1.47v\nimages=" << size3 << "\nslices=" << size3
         << "\nunit=" << (unit.getScale() == -6 ? "micron" : unit.symbol())
         << "\nspacing=" << std::fixed << std::setprecision(6) << calibration.getVoxelDepth()
         << "\nloop=false";
    return text.str();
}

template <class T>
void VoxelMatrix<T>::saveAsTiff(const std::string& path, bool compress, bool overwrite) const
{
    const char* const where = "void VoxelMatrix<T>::saveAsTiff(...) const";
    requirePlanes(where);
    const auto replacement = replacementFor(where, path, overwrite);
    TiffFile file(replacement->temporaryName(), "w");
    if (file.get() == nullptr) {
        raiseFile<FileWriteError>(where, "Cannot open file for writing", path);
    }
    const std::string description = tiffDescription();
    for (int k = 0; k < size3; ++k) {
        writeTiffPage(file.get(), k, description, compress);
    }
    file.close();
    replacement->commit(TiffMessages::firstError().empty());
}

/// Failures are among the errors of libtiff.
template <class T>
void VoxelMatrix<T>::writeTiffPage(tiff* tif,
                                   int k,
                                   const std::string& description,
                                   bool compress) const
{
    const Vector<float>& voxelSize = calibration.getVoxelSize();
    TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, size2);
    TIFFSetField(tif, TIFFTAG_IMAGELENGTH, size1);
    TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tif, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tif, TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE);
    TIFFSetField(tif, TIFFTAG_PAGENUMBER, k, size3);
    TIFFSetField(tif, TIFFTAG_IMAGEDESCRIPTION, description.c_str());
    TIFFSetField(tif, TIFFTAG_XRESOLUTION, 1.0F / voxelSize[1]);
    TIFFSetField(tif, TIFFTAG_YRESOLUTION, 1.0F / voxelSize[0]);
    TIFFSetField(tif, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    if (compress) {
        TIFFSetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
        TIFFSetField(tif, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    }
    Image0 image;
    (*this)[k].convertToImage(image, 8);
    for (int i = 0; i < size1; ++i) {
        TIFFWriteScanline(tif, image.getPixels()[i], static_cast<std::uint32_t>(i), 0);
    }
    TIFFWriteDirectory(tif);
}

#define INSTANTIATE_VOXEL_MATRIX_FILE(T)                                                           \
    template void VoxelMatrix<T>::requirePlanes(const char*) const;                                \
    template void VoxelMatrix<T>::save(const std::string&, bool) const;                            \
    template void VoxelMatrix<T>::saveUnderFormat1(std::ofstream&) const;                          \
    template void VoxelMatrix<T>::load(const std::string&);                                        \
    template void VoxelMatrix<T>::loadHeader(const std::string&);                                  \
    template void VoxelMatrix<T>::read(const std::string&, bool, const char*);                     \
    template VoxelMatrix<T>::Header VoxelMatrix<T>::readHeader(std::ifstream&, const std::string&, \
                                                               const char*) const;                 \
    template void VoxelMatrix<T>::readRows(std::ifstream&, const std::string&, const char*);       \
    template void VoxelMatrix<T>::takeSizes(int, int, int, bool);                                  \
    template void VoxelMatrix<T>::saveAsTiff(const std::string&, bool, bool) const;                \
    template std::string VoxelMatrix<T>::tiffDescription() const;                                  \
    template void VoxelMatrix<T>::writeTiffPage(tiff*, int, const std::string&, bool) const;

INSTANTIATE_VOXEL_MATRIX_FILE(char)
INSTANTIATE_VOXEL_MATRIX_FILE(unsigned char)
INSTANTIATE_VOXEL_MATRIX_FILE(short)
INSTANTIATE_VOXEL_MATRIX_FILE(unsigned short)
INSTANTIATE_VOXEL_MATRIX_FILE(int)
INSTANTIATE_VOXEL_MATRIX_FILE(unsigned int)
INSTANTIATE_VOXEL_MATRIX_FILE(float)
INSTANTIATE_VOXEL_MATRIX_FILE(double)
INSTANTIATE_VOXEL_MATRIX_FILE(long double)
