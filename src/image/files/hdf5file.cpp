#include "image/files/hdf5file.h"

#include "system/exception.h"

#include <algorithm>
#include <limits>

namespace {

const char* const headerWhere = "void ImageReader::readHDF5Header(Image2&, H5File*)";

/// Callback of the walk over a group: adds the name of the link.
herr_t getHDF5Info(hid_t, const char* name, const H5L_info_t*, void* names)
{
    static_cast<std::vector<std::string>*>(names)->emplace_back(name);
    return 0;
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

/// Sizes of a dataset and of its chunks, 1 beyond its rank.
struct Chunking
{
    int rank = 0;
    hsize_t extent[3] = {1, 1, 1};
    hsize_t most[3] = {1, 1, 1};
    hsize_t chunk[3] = {1, 1, 1};

    /// Of other rank than the dataset (which HDF5 takes for memory without end), without elements, or
    /// larger than the dataset can grow.
    bool isBad(int chunkRank) const
    {
        bool bad = chunkRank != rank;
        for (int axis = 0; axis < 3; ++axis) {
            bad = bad || chunk[axis] == 0 || chunk[axis] > std::max(extent[axis], most[axis]);
        }
        return bad;
    }
};

/// Chunks that take no byte of the file, but a look each.
constexpr hsize_t mostUnwrittenChunks = hsize_t(1) << 20;

} // namespace

hdf5file::Silence::Silence()
{
    H5::Exception::getAutoPrint(print_, &data_);
    H5::Exception::dontPrint();
}

hdf5file::Silence::~Silence()
{
    H5::Exception::setAutoPrint(print_, data_);
}

std::vector<std::string> hdf5file::rootLinks(const H5::H5File& file)
{
    std::vector<std::string> names;
    const hid_t group = H5Gopen2(file.getId(), "/", H5P_DEFAULT);
    if (group >= 0) {
        H5Literate(group, H5_INDEX_NAME, H5_ITER_INC, nullptr, getHDF5Info, &names);
        H5Gclose(group);
    }
    return names;
}

H5::DataSet hdf5file::openDataSet(const H5::H5File& file, const std::vector<std::string>& keys)
{
    if (keys.empty()) {
        raiseFile<FileFormatError>(headerWhere, "The file has no dataset", file.getFileName());
    }
    return file.openDataSet(keys.front());
}

std::vector<int> hdf5file::extentOf(const H5::DataSet& dataSet, const std::string& filename)
{
    const H5::DataSpace space = dataSet.getSpace();
    const int rank = space.isSimple() ? space.getSimpleExtentNdims() : 0;
    if (rank != 2 && rank != 3) {
        raiseFile<FileFormatError>(
            headerWhere, "Cannot read a dataset of rank " + std::to_string(rank), filename);
    }
    hsize_t extent[3] = {1, 1, 1};
    space.getSimpleExtentDims(extent);
    std::vector<int> sizes;
    hsize_t elements = 1;
    for (int axis = 0; axis < rank; ++axis) {
        constexpr hsize_t largest = static_cast<hsize_t>(std::numeric_limits<int>::max());
        if (extent[axis] == 0 || extent[axis] > largest / elements) {
            raiseFile<FileFormatError>(headerWhere, "Cannot read a dataset of this size", filename);
        }
        elements *= extent[axis];
        sizes.push_back(static_cast<int>(extent[axis]));
    }
    return sizes;
}

void hdf5file::requireNumbers(const H5::DataSet& dataSet, const std::string& filename)
{
    const H5T_class_t type = dataSet.getTypeClass();
    // No machine has wider numbers; a damaged width leads HDF5 past its buffers.
    constexpr std::size_t widest = 16;
    if ((type != H5T_INTEGER && type != H5T_FLOAT) || dataSet.getDataType().getSize() > widest) {
        raiseFile<FileFormatError>(headerWhere, "Cannot read a dataset of other than numbers",
                                   filename);
    }
}

void hdf5file::requireWholeChunks(const H5::DataSet& dataSet, const H5::H5File& file)
{
    const H5::DSetCreatPropList properties = dataSet.getCreatePlist();
    if (properties.getLayout() != H5D_CHUNKED) {
        return;
    }
    const char* const where = "void ImageReader::readHDF5Data(Image2&, H5File*)";
    const std::string filename = file.getFileName();
    const H5::DataSpace space = dataSet.getSpace();
    Chunking sizes;
    sizes.rank = space.getSimpleExtentDims(sizes.extent, sizes.most);
    if (sizes.isBad(properties.getChunk(3, sizes.chunk))) {
        raiseFile<FileFormatError>(where, "The chunks of the dataset are too large", filename);
    }
    const hsize_t length = file.getFileSize();
    hsize_t chunkBytes = dataSet.getDataType().getSize();
    hsize_t chunks = 1;
    for (int axis = 0; axis < 3; ++axis) {
        chunks *= (sizes.extent[axis] - 1) / sizes.chunk[axis] + 1;
        if (chunks > length + mostUnwrittenChunks ||
            sizes.chunk[axis] > mostBytes(length) / chunkBytes) {
            raiseFile<FileFormatError>(
                where, "The file is too short for the chunks that it describes", filename);
        }
        chunkBytes *= sizes.chunk[axis];
    }
    const hsize_t(&extent)[3] = sizes.extent;
    const hsize_t(&step)[3] = sizes.chunk;
    hsize_t at[3];
    for (at[0] = 0; at[0] < extent[0]; at[0] += step[0]) {
        for (at[1] = 0; at[1] < extent[1]; at[1] += step[1]) {
            for (at[2] = 0; at[2] < extent[2]; at[2] += step[2]) {
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

unsigned long long hdf5file::mostBytes(unsigned long long length)
{
    constexpr unsigned long long expansion = 1040;
    constexpr unsigned long long harmless = 1ULL << 28;
    return std::max(harmless, expansion * length);
}
