// Part of `ImageReader`: HDF5, one dataset of two or three dimensions. The library crashes, hangs
// or takes any amount of memory on some damaged files, so that a child process calls it.

#include "image/files/childreader.h"
#include "image/files/imagereader.h"
#include "image/pixels/image2.h"
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

/// Refuses chunks that HDF5 would trust: too large, more than the file can hold, or stored plain and
/// too short, so that it would read past their end.
void requireWholeChunks(const H5::DataSet& dataSet, const H5::H5File& file)
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
        if (chunks > length || sizes.chunk[axis] > length * expansion / chunkBytes) {
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
    requireWholeChunks(dataSet, *file);
    const H5::DataSpace space = dataSet.getSpace();
    const H5::PredType& type = image.getValueType() == ValueType::Int ? H5::PredType::NATIVE_INT
                                                                      : H5::PredType::NATIVE_FLOAT;
    dataSet.read(image.frame(0, 0), type, space, space);
}

namespace {

const char* const fileWhere = "void ImageReader::readHDF5Image(Image2&, const string&, const bool)";

/// What the child that reads has to say, each followed by its contents.
enum class Message : char { Header, Data, FormatError, ReadError };

struct Header
{
    ValueType type;
    int size[3];
};

void sendText(const ChildReader::Sender& sender, const std::string& text)
{
    const std::size_t length = text.size();
    sender.send(&length, sizeof(length));
    sender.send(text.data(), length);
}

void sendError(const ChildReader::Sender& sender, Message kind, const FileError& error)
{
    sender.send(&kind, sizeof(kind));
    sendText(sender, error.getWhere());
    sendText(sender, error.getWhat());
}

/// Raises what the child has told; a child that ended without a word has met a fault of the library.
[[noreturn]] void raiseTold(const ChildReader& child, Message kind, const std::string& path)
{
    std::string texts[2];
    for (std::string& text : texts) {
        std::size_t length = 0;
        constexpr std::size_t longest = 10000;
        if (kind < Message::FormatError || !child.receive(&length, sizeof(length)) ||
            length > longest) {
            raiseFile<FileReadError>(fileWhere, "The HDF5 library fails on this file", path);
        }
        text.resize(length);
        child.receive(text.data(), length);
    }
    if (kind == Message::FormatError) {
        raiseFile<FileFormatError>(texts[0], texts[1], path);
    }
    raiseFile<FileReadError>(texts[0], texts[1], path);
}

/// Takes the announcement of a message; raises the error if it is not the one expected.
void expect(const ChildReader& child, Message expected, const std::string& path)
{
    Message kind = Message::Header;
    if (!child.receive(&kind, sizeof(kind)) || kind != expected) {
        raiseTold(child, kind, path);
    }
}

void requireFits(const Image2& image, const std::string& path)
{
    std::error_code unknown;
    const auto length = std::filesystem::file_size(path, unknown);
    if (unknown || image.bytes() / expansion > length) {
        raiseFile<FileFormatError>(fileWhere,
                                   "The file is too short for the image that it describes", path);
    }
}

} // namespace

/// The child's part of reading.
void ImageReader::sendHDF5(const ChildReader::Sender& sender, const std::string& path, bool load)
{
    constexpr std::size_t allowance = std::size_t(1) << 28;
    constexpr unsigned int patience = 10;
    constexpr std::size_t bytesPerSecond = std::size_t(1) << 22;
    sender.limit(allowance, patience);
    const SilentHDF5 silence;
    try {
        H5::H5File file(path, H5F_ACC_RDONLY);
        Image2 image;
        readHDF5Header(image, &file);
        Message kind = Message::Header;
        const Header header = {image.getValueType(),
                               {image.getSize1(), image.getSize2(), image.getSize3()}};
        sender.send(&kind, sizeof(kind));
        sender.send(&header, sizeof(header));
        if (!load) {
            return;
        }
        requireFits(image, path);
        sender.limit(allowance + 3 * image.bytes(),
                     patience + static_cast<unsigned int>(image.bytes() / bytesPerSecond));
        image.allocateData();
        readHDF5Data(image, &file);
        kind = Message::Data;
        sender.send(&kind, sizeof(kind));
        sender.send(image.frame(0, 0), image.bytes());
    } catch (const FileFormatError& error) {
        sendError(sender, Message::FormatError, error);
    } catch (const FileReadError& error) {
        sendError(sender, Message::ReadError, error);
    } catch (const H5::Exception& error) {
        FileReadError told;
        told.setWhere(fileWhere);
        told.setWhat("Cannot read HDF5: " + error.getDetailMsg());
        sendError(sender, Message::ReadError, told);
    }
}

void ImageReader::readHDF5Image(Image2& image, const std::string& path, bool load)
{
    const ChildReader child(
        [&](const ChildReader::Sender& sender) { sendHDF5(sender, path, load); });
    expect(child, Message::Header, path);
    Header header = {};
    if (!child.receive(&header, sizeof(header))) {
        raiseTold(child, Message::Header, path);
    }
    image.setGeometry(header.type, header.size[0], header.size[1], header.size[2], 1, 1, 1);
    if (load) {
        expect(child, Message::Data, path);
        requireFits(image, path);
        image.allocateData();
        if (!child.receive(image.frame(0, 0), image.bytes())) {
            raiseTold(child, Message::Data, path);
        }
    }
}
