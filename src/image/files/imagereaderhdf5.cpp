// Part of `ImageReader`: HDF5, one dataset of two or three dimensions. The library crashes, hangs
// or takes any amount of memory on some damaged files, so that a child process calls it.

#include "image/files/childreader.h"
#include "image/files/hdf5dataset.h"
#include "image/files/hdf5file.h"
#include "image/files/imagereader.h"
#include "image/pixels/image2.h"
#include "system/exception.h"

#include <H5Cpp.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <vector>

void ImageReader::readHDF5Header(Image2& image, H5::H5File* file)
{
    std::vector<std::string>& keys = _keys();
    if (keys.empty()) {
        keys = hdf5file::rootLinks(*file);
    }
    const H5::DataSet dataSet = hdf5file::openDataSet(*file, keys);
    const std::string filename = file->getFileName();
    const std::vector<int> extent = hdf5file::extentOf(dataSet, filename);
    hdf5file::requireNumbers(dataSet, filename);
    const bool isInteger = dataSet.getTypeClass() == H5T_INTEGER;
    // The fastest dimension of the file is the first of the image.
    image.setGeometry(isInteger ? ValueType::Int : ValueType::Float, extent.back(),
                      extent[extent.size() - 2], extent.size() == 3 ? extent[0] : 1, 1, 1, 1);
}

void ImageReader::readHDF5Data(Image2& image, H5::H5File* file)
{
    const H5::DataSet dataSet = hdf5file::openDataSet(*file, _keys());
    hdf5file::requireWholeChunks(dataSet, *file);
    const H5::DataSpace space = dataSet.getSpace();
    const H5::PredType& type = image.getValueType() == ValueType::Int ? H5::PredType::NATIVE_INT
                                                                      : H5::PredType::NATIVE_FLOAT;
    dataSet.read(image.frame(0, 0), type, space, space);
}

namespace {

using std::chrono::seconds;

const char* const fileWhere = "void ImageReader::readHDF5Image(Image2&, const string&, const bool)";

/// What the child that reads has to say, each followed by its contents.
enum class Message : char { Header, Data, DataSets, FormatError, ReadError };

struct Header
{
    ValueType type;
    int size[3];
    std::size_t storedBytes; ///< of an element in the file
    std::size_t keys;        ///< how many names follow, where none was given
};

constexpr std::size_t allowance = std::size_t(1) << 28;
constexpr unsigned int patience = 10; ///< of the processor
constexpr seconds wallPatience(60);

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

[[noreturn]] void raiseFailure(const ChildReader& child, const std::string& path)
{
    raiseFile<FileReadError>(fileWhere,
                             child.isLate() ? "The HDF5 library takes too long on this file"
                                            : "The HDF5 library fails on this file",
                             path);
}

template <class T>
T receive(const ChildReader& child, const std::string& path)
{
    T value = {};
    if (!child.receive(&value, sizeof(value))) {
        raiseFailure(child, path);
    }
    return value;
}

std::string receiveText(const ChildReader& child, const std::string& path)
{
    constexpr std::size_t longest = 100000;
    const auto length = receive<std::size_t>(child, path);
    std::string text(std::min(length, longest), '\0');
    if (length > longest || !child.receive(text.data(), length)) {
        raiseFailure(child, path);
    }
    return text;
}

/// Takes the announcement of a message; raises the error that is told in its place. A child that ended
/// without a word has met a fault of the library.
void expect(const ChildReader& child, Message expected, const std::string& path)
{
    const Message kind = receive<Message>(child, path);
    if (kind == Message::FormatError || kind == Message::ReadError) {
        const std::string where = receiveText(child, path);
        const std::string what = receiveText(child, path);
        if (kind == Message::FormatError) {
            raiseFile<FileFormatError>(where, what, path);
        }
        raiseFile<FileReadError>(where, what, path);
    }
    if (kind != expected) {
        raiseFailure(child, path);
    }
}

/// The elements as the file stores them are held against its length.
void requireFits(const Image2& image, std::size_t storedBytes, const std::string& path)
{
    std::error_code unknown;
    const auto length = std::filesystem::file_size(path, unknown);
    const std::size_t elements = image.bytes() / image.bytesPerSample();
    if (unknown || elements > hdf5file::mostBytes(length) / storedBytes) {
        raiseFile<FileFormatError>(fileWhere,
                                   "The file is too short for the image that it describes", path);
    }
}

/// Does the child's work on the file; what it raises is sent.
template <class Work>
void sendFrom(const ChildReader::Sender& sender, const std::string& path, Work work)
{
    sender.limit(allowance, patience);
    const hdf5file::Silence silence;
    try {
        H5::H5File file(path, H5F_ACC_RDONLY);
        work(file);
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

} // namespace

/// The child's part of reading.
void ImageReader::sendHDF5(const ChildReader::Sender& sender, const std::string& path, bool load)
{
    sendFrom(sender, path, [&](H5::H5File& file) {
        const bool named = !_keys().empty();
        Image2 image;
        readHDF5Header(image, &file);
        const std::size_t storedBytes =
            hdf5file::openDataSet(file, _keys()).getDataType().getSize();
        Message kind = Message::Header;
        const Header header = {image.getValueType(),
                               {image.getSize1(), image.getSize2(), image.getSize3()},
                               storedBytes,
                               named ? 0 : _keys().size()};
        sender.send(&kind, sizeof(kind));
        sender.send(&header, sizeof(header));
        for (std::size_t k = 0; k < header.keys; ++k) {
            sendText(sender, _keys()[k]);
        }
        if (!load) {
            return;
        }
        requireFits(image, storedBytes, path);
        constexpr std::size_t bytesPerSecond = std::size_t(1) << 22;
        sender.limit(allowance + 3 * image.bytes(),
                     patience + static_cast<unsigned int>(image.bytes() / bytesPerSecond));
        image.allocateData();
        readHDF5Data(image, &file);
        kind = Message::Data;
        sender.send(&kind, sizeof(kind));
        sender.send(image.frame(0, 0), image.bytes());
    });
}

void ImageReader::readHDF5Image(Image2& image, const std::string& path, bool load)
{
    ChildReader child([&](const ChildReader::Sender& sender) { sendHDF5(sender, path, load); },
                      wallPatience);
    expect(child, Message::Header, path);
    const auto header = receive<Header>(child, path);
    // The names found in a first file stay for the next ones.
    std::vector<std::string> found;
    while (found.size() < header.keys) {
        found.push_back(receiveText(child, path));
    }
    if (!found.empty()) {
        _keys() = found;
    }
    image.setGeometry(header.type, header.size[0], header.size[1], header.size[2], 1, 1, 1);
    if (load) {
        constexpr std::size_t slowestBytesPerSecond = std::size_t(1) << 20;
        child.extend(wallPatience + seconds(image.bytes() / slowestBytesPerSecond));
        expect(child, Message::Data, path);
        requireFits(image, header.storedBytes, path);
        image.allocateData();
        if (!child.receive(image.frame(0, 0), image.bytes())) {
            raiseFailure(child, path);
        }
    }
}

namespace {

/// The datasets among the links of the root group that can be read.
std::vector<HDF5DataSet> readableDataSets(const H5::H5File& file)
{
    std::vector<HDF5DataSet> list;
    for (const std::string& name : hdf5file::rootLinks(file)) {
        try {
            const H5::DataSet dataSet = hdf5file::openDataSet(file, {name});
            const std::vector<int> extent = hdf5file::extentOf(dataSet, file.getFileName());
            hdf5file::requireNumbers(dataSet, file.getFileName());
            const bool isByte = dataSet.getTypeClass() == H5T_INTEGER &&
                                dataSet.getDataType().getSize() == 1 &&
                                dataSet.getIntType().getSign() == H5T_SGN_NONE;
            list.push_back({name, static_cast<int>(extent.size()), isByte});
        } catch (const FileFormatError&) {
            continue; // of other contents
        } catch (const H5::Exception&) {
            continue; // a group, or a link that leads nowhere
        }
    }
    return list;
}

} // namespace

std::vector<HDF5DataSet> ImageReader::readHDF5DataSets(const std::string& path)
{
    const auto work = [&](const ChildReader::Sender& sender) {
        sendFrom(sender, path, [&](H5::H5File& file) {
            const std::vector<HDF5DataSet> list = readableDataSets(file);
            const Message kind = Message::DataSets;
            const std::size_t count = list.size();
            sender.send(&kind, sizeof(kind));
            sender.send(&count, sizeof(count));
            for (const HDF5DataSet& dataSet : list) {
                sendText(sender, dataSet.name);
                sender.send(&dataSet.rank, sizeof(dataSet.rank));
                sender.send(&dataSet.isByte, sizeof(dataSet.isByte));
            }
        });
    };
    const ChildReader child(work, wallPatience);
    expect(child, Message::DataSets, path);
    std::vector<HDF5DataSet> list;
    for (auto count = receive<std::size_t>(child, path); count > 0; --count) {
        HDF5DataSet dataSet;
        dataSet.name = receiveText(child, path);
        dataSet.rank = receive<int>(child, path);
        dataSet.isByte = receive<bool>(child, path);
        list.push_back(dataSet);
    }
    return list;
}
