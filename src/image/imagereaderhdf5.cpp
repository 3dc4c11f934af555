// HDF5: one dataset of two or three dimensions.

#include "image/image2.h"
#include "image/imagereader.h"
#include "system/exception.h"

#include <H5Cpp.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <vector>

namespace {

/// HDF5 prints its error stack by itself; not while this lives.
class SilentHDF5
{
public:
    SilentHDF5()
    {
        H5::Exception::getAutoPrint(print_, &data_);
        H5::Exception::dontPrint();
    }

    ~SilentHDF5() { H5::Exception::setAutoPrint(print_, data_); }

    SilentHDF5(const SilentHDF5&) = delete;
    SilentHDF5& operator=(const SilentHDF5&) = delete;

private:
    H5E_auto2_t print_ = nullptr;
    void* data_ = nullptr;
};

/// How many bytes of data a byte of the file can stand for at most, with deflate.
constexpr unsigned long long expansion = 1040;

/// Callback of the walk over a group: adds the name of the link.
herr_t getHDF5Info(hid_t, const char* name, const H5L_info_t*, void* names)
{
    static_cast<std::vector<std::string>*>(names)->emplace_back(name);
    return 0;
}

std::vector<std::string> rootLinks(const H5::H5File& file)
{
    std::vector<std::string> names;
    const hid_t group = H5Gopen2(file.getId(), "/", H5P_DEFAULT);
    if (group >= 0) {
        H5Literate(group, H5_INDEX_NAME, H5_ITER_INC, nullptr, getHDF5Info, &names);
        H5Gclose(group);
    }
    return names;
}

/// The dataset that the first key names, or the first link of the file.
H5::DataSet openDataSet(const H5::H5File& file, const std::vector<std::string>& keys)
{
    const std::vector<std::string> names = keys.empty() ? rootLinks(file) : keys;
    if (names.empty()) {
        raiseFile<FileFormatError>("void ImageReader::readHDF5Header(Image2&, H5File*)",
                                   "The file has no dataset", file.getFileName());
    }
    return file.openDataSet(names.front());
}

std::vector<int> dimensions(const H5::DataSet& dataSet, const std::string& filename)
{
    const char* const where = "void ImageReader::readHDF5Header(Image2&, H5File*)";
    const H5::DataSpace space = dataSet.getSpace();
    const int rank = space.isSimple() ? space.getSimpleExtentNdims() : 0;
    if (rank != 2 && rank != 3) {
        raiseFile<FileFormatError>(where, "Cannot read a dataset of rank " + std::to_string(rank),
                                   filename);
    }
    hsize_t extent[3] = {1, 1, 1};
    space.getSimpleExtentDims(extent);
    std::vector<int> sizes;
    hsize_t elements = 1;
    for (int axis = 0; axis < rank; ++axis) {
        constexpr hsize_t largest = static_cast<hsize_t>(std::numeric_limits<int>::max());
        if (extent[axis] == 0 || extent[axis] > largest / elements) {
            raiseFile<FileFormatError>(where, "Cannot read a dataset of this size", filename);
        }
        elements *= extent[axis];
        sizes.push_back(static_cast<int>(extent[axis]));
    }
    return sizes;
}

/// Whether a chunk with these filters left out is stored as it is, but for a checksum.
bool isStoredPlain(const H5::DSetCreatPropList& properties, unsigned int leftOut)
{
    for (int f = 0; f < properties.getNfilters(); ++f) {
        unsigned int flags = 0;
        std::size_t valueCount = 0;
        unsigned int config = 0;
        const H5Z_filter_t filter =
            properties.getFilter(f, flags, valueCount, nullptr, 0, nullptr, config);
        const bool sameLength = filter == H5Z_FILTER_SHUFFLE || filter == H5Z_FILTER_FLETCHER32;
        if (!sameLength && (leftOut >> f & 1U) == 0) {
            return false;
        }
    }
    return true;
}

/// Refuses chunks that are stored plain and too short: HDF5 would read past their end.
void requireWholeChunks(const H5::DataSet& dataSet, const std::string& filename)
{
    const H5::DSetCreatPropList properties = dataSet.getCreatePlist();
    if (properties.getLayout() != H5D_CHUNKED) {
        return;
    }
    const H5::DataSpace space = dataSet.getSpace();
    const int rank = space.getSimpleExtentNdims();
    hsize_t extent[3] = {1, 1, 1};
    hsize_t most[3] = {1, 1, 1};
    hsize_t chunk[3] = {1, 1, 1};
    space.getSimpleExtentDims(extent, most);
    properties.getChunk(rank, chunk);
    const H5::DataType type = dataSet.getDataType();
    const char* const where = "void ImageReader::readHDF5Data(Image2&, H5File*)";
    for (int axis = 0; axis < rank; ++axis) {
        if (chunk[axis] == 0 || chunk[axis] > std::max<hsize_t>(extent[axis], most[axis])) {
            raiseFile<FileFormatError>(where, "The chunks of the dataset are too large", filename);
        }
    }
    const hsize_t chunkBytes = chunk[0] * chunk[1] * chunk[2] * type.getSize();
    hsize_t at[3];
    for (at[0] = 0; at[0] < extent[0]; at[0] += chunk[0]) {
        for (at[1] = 0; at[1] < extent[1]; at[1] += chunk[1]) {
            for (at[2] = 0; at[2] < extent[2]; at[2] += chunk[2]) {
                unsigned int leftOut = 0;
                haddr_t address = HADDR_UNDEF;
                hsize_t size = 0;
                const herr_t found =
                    H5Dget_chunk_info_by_coord(dataSet.getId(), at, &leftOut, &address, &size);
                if (found < 0 || (address != HADDR_UNDEF && size < chunkBytes &&
                                  isStoredPlain(properties, leftOut))) {
                    raiseFile<FileReadError>(where, "A chunk of the dataset is damaged", filename);
                }
            }
        }
    }
}

} // namespace

void ImageReader::readHDF5Header(Image2& image, H5::H5File* file)
{
    const H5::DataSet dataSet = openDataSet(*file, _keys());
    const std::string filename = file->getFileName();
    const std::vector<int> sizes = dimensions(dataSet, filename);
    const H5T_class_t type = dataSet.getTypeClass();
    // No machine has wider numbers; a damaged width leads HDF5 past its buffers.
    constexpr std::size_t widest = 16;
    if ((type != H5T_INTEGER && type != H5T_FLOAT) || dataSet.getDataType().getSize() > widest) {
        raiseFile<FileFormatError>("void ImageReader::readHDF5Header(Image2&, H5File*)",
                                   "Cannot read a dataset of other than numbers", filename);
    }
    // The fastest dimension of the file is the first of the image.
    image.setGeometry(type == H5T_INTEGER ? ValueType::Int : ValueType::Float, sizes.back(),
                      sizes[sizes.size() - 2], sizes.size() == 3 ? sizes[0] : 1, 1, 1, 1);
}

void ImageReader::readHDF5Data(Image2& image, H5::H5File* file)
{
    const H5::DataSet dataSet = openDataSet(*file, _keys());
    requireWholeChunks(dataSet, file->getFileName());
    const H5::DataSpace space = dataSet.getSpace();
    const H5::PredType& type = image.getValueType() == ValueType::Int ? H5::PredType::NATIVE_INT
                                                                      : H5::PredType::NATIVE_FLOAT;
    dataSet.read(image.frame(0, 0), type, space, space);
}

void ImageReader::readHDF5Image(Image2& image, const std::string& path, bool load)
{
    const char* const where = "void ImageReader::readHDF5Image(Image2&, const string&, const bool)";
    const SilentHDF5 silence;
    try {
        H5::H5File file(path, H5F_ACC_RDONLY);
        readHDF5Header(image, &file);
        if (load) {
            std::error_code unknown;
            const auto length = std::filesystem::file_size(path, unknown);
            if (unknown || image.bytes() / expansion > length) {
                raiseFile<FileFormatError>(
                    where, "The file is too short for the image that it describes", path);
            }
            image.allocateData();
            readHDF5Data(image, &file);
        }
    } catch (const H5::Exception& error) {
        raiseFile<FileReadError>(where, "Cannot read HDF5: " + error.getDetailMsg(), path);
    }
}
