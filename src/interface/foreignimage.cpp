#include "interface/foreignimage.h"

#include "image/files/photographreader.h"
#include "image/pixels/image0.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>

namespace {

const char* const where = "Image2 ForeignImage::read(const string&, string&)";

/// Calls `work(samples, count)` for each frame.
template <class T, class Work>
void forEachFrame(const Image2& image, Work work)
{
    const std::size_t count = image.bytesPerFrame() / sizeof(T);
    for (int c = 0; c < image.getNumChannels(); ++c) {
        for (int t = 0; t < image.getNumTimepoints(); ++t) {
            work(reinterpret_cast<const T*>(image.frame(c, t)), count, c, t);
        }
    }
}

using Bounds = std::pair<double, double>;

/// The whole range, or without the thousandth part of the values at each end where these would take
/// more than half of it. The values, a sample of all, are reordered.
Bounds evenBounds(const Bounds& whole, std::vector<double>& values)
{
    constexpr std::size_t part = 1000;
    if (values.empty()) {
        return whole;
    }
    const auto rank = [&values](std::size_t place) {
        const auto at = values.begin() + static_cast<std::ptrdiff_t>(place);
        std::nth_element(values.begin(), at, values.end());
        return *at;
    };
    const std::size_t cut = values.size() / part;
    const Bounds inner(rank(cut), rank(values.size() - 1 - cut));
    const double within = inner.second / 2 - inner.first / 2;
    return within > 0.0 && whole.second / 2 - whole.first / 2 > 2 * within ? inner : whole;
}

/// Of the finite values; 0 and 0 without any.
template <class T>
Bounds range(const Image2& image)
{
    constexpr std::size_t most = std::size_t(1) << 22;
    const std::size_t step = image.bytes() / sizeof(T) / most + 1;
    const double infinity = std::numeric_limits<double>::infinity();
    Bounds whole(infinity, -infinity);
    std::vector<double> values;
    forEachFrame<T>(image, [&](const T* samples, std::size_t count, int, int) {
        for (std::size_t s = 0; s < count; ++s) {
            const double value = static_cast<double>(samples[s]);
            if (std::isfinite(value)) {
                whole.first = std::min(whole.first, value);
                whole.second = std::max(whole.second, value);
                if (s % step == 0) {
                    values.push_back(value);
                }
            }
        }
    });
    return whole.first <= whole.second ? evenBounds(whole, values) : Bounds(0.0, 0.0);
}

/// The samples as bytes; what is no number is 0.
template <class T>
Image2 bytesOf(const Image2& image, std::pair<double, double> bounds)
{
    Image2 bytes(ValueType::UnsignedChar, image.getSize1(), image.getSize2(), image.getSize3(),
                 image.samplesPerElement(), image.getNumChannels(), image.getNumTimepoints());
    bytes.setSpatialCalibration(image.getSpatialCalibration());
    // Halves, since the difference of two large numbers may be none.
    const double half = bounds.second / 2 - bounds.first / 2;
    const double scale = half > 0.0 ? 127.5 / half : 0.0;
    forEachFrame<T>(image, [&](const T* samples, std::size_t count, int c, int t) {
        unsigned char* const to = bytes.frame(c, t);
        for (std::size_t s = 0; s < count; ++s) {
            const double value =
                (static_cast<double>(samples[s]) / 2 - bounds.first / 2) * 2 * scale;
            to[s] = static_cast<unsigned char>(value > 0.0 ? std::min(value + 0.5, 255.0) : 0.0);
        }
    });
    return bytes;
}

void invert(Image2& image)
{
    forEachFrame<unsigned char>(image, [&](const unsigned char*, std::size_t count, int c, int t) {
        unsigned char* const samples = image.frame(c, t);
        std::transform(samples, samples + count, samples,
                       [](unsigned char value) { return static_cast<unsigned char>(255 - value); });
    });
}

void requireSamples(const Image2& image, const std::string& path)
{
    const int samples = image.samplesPerElement();
    if (samples != 1 && samples != 3 && samples != 4) {
        raiseFile<FileFormatError>(
            where, "Cannot make slices of " + std::to_string(samples) + " samples per pixel", path);
    }
}

/// Whether the values of 16 bits take at least half of the range from 0 to their largest, outliers
/// left out: slices show that range.
bool isEven(const std::string& path)
{
    Image0 image;
    ImageReader().read(image, path);
    std::vector<double> values(image.dataLength() / 2);
    for (std::size_t p = 0; p < values.size(); ++p) {
        std::uint16_t sample = 0;
        std::memcpy(&sample, image.getData() + 2 * p, sizeof(sample));
        values[p] = sample;
    }
    if (values.empty()) {
        return true;
    }
    const auto [least, largest] = std::minmax_element(values.begin(), values.end());
    const Bounds whole(*least, *largest);
    const Bounds bounds = evenBounds(whole, values);
    return 2 * (bounds.second - bounds.first) >= whole.second;
}

} // namespace

bool ForeignImage::isShownAsItIs(const std::string& path, const std::vector<TiffPage>& pages)
{
    const TiffPage& first = pages.front();
    if (!first.isPlain()) {
        return false;
    }
    if (first.isPalette) {
        Image0 image;
        ImageReader().read(image, path);
        return !PhotographReader::isPhotograph(image);
    }
    return first.bits != 16 || isEven(path);
}

bool ForeignImage::areAlike(const std::vector<TiffPage>& pages)
{
    return std::all_of(pages.begin(), pages.end(),
                       [&](const TiffPage& page) { return page.isLike(pages.front()); });
}

std::string ForeignImage::makeBytes(Image2& image)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    withValueType(
        image.getValueType(),
        [&](auto sample) {
            using T = typename decltype(sample)::type;
            const Bounds bounds = range<T>(image);
            image = bytesOf<T>(image, bounds);
            text << "values from " << bounds.first << " to " << bounds.second
                 << " are written as 0 to 255";
        },
        [] { raise<FatalError>(where, "unknown value type"); });
    return text.str();
}

Image2 ForeignImage::read(const std::string& path, std::string& note)
{
    note.clear();
    switch (ImageReader().readImageFileFormat(path)) {
    case ImageFormat::Tiff:
    case ImageFormat::BigTiff:
        return readTiff(path, note);
    case ImageFormat::Hdf5:
        return readHdf5(path, note);
    default:
        Image2 image(path);
        if (image.getValueType() != ValueType::UnsignedChar) {
            note = makeBytes(image);
        }
        requireSamples(image, path);
        return image;
    }
}

Image2 ForeignImage::readTiff(const std::string& path, std::string& note)
{
    const std::vector<TiffPage> pages = PhotographReader().readPages(path);
    const TiffPage& first = pages.front();
    if (first.isNumeric()) {
        Image2 image;
        PhotographReader().readNumbers(image, path);
        requireSamples(image, path);
        note = makeBytes(image);
        if (first.isWhiteZero) {
            invert(image);
        }
        return image;
    }
    if (first.isPlain() && !first.isPalette) {
        Image2 image(path);
        requireSamples(image, path);
        return image;
    }
    return readAppearances(path, pages);
}

/// The first page alone where the pages are not alike.
Image2 ForeignImage::readAppearances(const std::string& path, const std::vector<TiffPage>& pages)
{
    const int count = areAlike(pages) ? static_cast<int>(pages.size()) : 1;
    std::vector<Image0> pictures(static_cast<std::size_t>(count));
    int depth = 8;
    for (int page = 0; page < count; ++page) {
        Image0& picture = pictures[static_cast<std::size_t>(page)];
        PhotographReader().readAppearance(picture, path, page);
        depth = std::max(depth, picture.getDepth());
    }
    const Image0& first = pictures.front();
    Image2 image(ValueType::UnsignedChar, first.getHeight(), first.getWidth(), count, depth / 8, 1,
                 1);
    unsigned char* to = image.frame(0, 0);
    for (Image0& picture : pictures) {
        if (picture.getDepth() < depth) {
            picture.make24bits();
        }
        to = std::copy_n(picture.getData(), picture.dataLength(), to);
    }
    const PixelCalibration& stated = pages.front().calibration;
    const bool isTurned = pages.front().orientation > 4;
    SpatialCalibration calibration;
    calibration.setLengthUnit(stated.getLengthUnit());
    calibration.setSize(isTurned ? stated.getPixelWidth() : stated.getPixelHeight(),
                        isTurned ? stated.getPixelHeight() : stated.getPixelWidth(), 1.0F);
    image.setSpatialCalibration(calibration);
    return image;
}

namespace {

/// The names that HDF5 files were read from come back at the end.
class HDF5Key
{
public:
    explicit HDF5Key(const std::string& name)
        : former_(ImageReader().getHDF5Keys())
    {
        ImageReader().setHDF5Key(name);
    }

    ~HDF5Key() { ImageReader().setHDF5Keys(former_); }

    HDF5Key(const HDF5Key&) = delete;
    HDF5Key& operator=(const HDF5Key&) = delete;

private:
    std::vector<std::string> former_;
};

/// The dataset that was named before, or the first.
const HDF5DataSet& chosen(const std::vector<HDF5DataSet>& list)
{
    const std::vector<std::string> keys = ImageReader().getHDF5Keys();
    const auto named = std::find_if(list.begin(), list.end(), [&](const HDF5DataSet& dataSet) {
        return !keys.empty() && dataSet.name == keys.front();
    });
    return named == list.end() ? list.front() : *named;
}

std::string namesOf(const std::vector<HDF5DataSet>& list)
{
    std::string names;
    for (const HDF5DataSet& dataSet : list) {
        names += (names.empty() ? "" : ", ") + dataSet.name;
    }
    return names;
}

/// The same elements with rows and columns as the file has them, of which the reader takes the fastest
/// dimension for the rows.
Image2 asStored(const Image2& image)
{
    Image2 result(image.getValueType(), image.getSize2(), image.getSize1(), image.getSize3(), 1, 1,
                  1);
    std::copy_n(image.frame(0, 0), image.bytes(), result.frame(0, 0));
    return result;
}

} // namespace

Image2 ForeignImage::readHdf5(const std::string& path, std::string& note)
{
    const std::vector<HDF5DataSet> list = ImageReader().readHDF5DataSets(path);
    if (list.empty()) {
        raiseFile<FileFormatError>(
            where, "The file has no dataset of two or three dimensions of numbers", path);
    }
    const HDF5DataSet& dataSet = chosen(list);
    const HDF5Key key(dataSet.name);
    Image2 image = asStored(Image2(path));
    if (dataSet.isByte) {
        image = bytesOf<int>(image, {0.0, 255.0});
    } else {
        note = makeBytes(image);
    }
    if (list.size() > 1) {
        note += (note.empty() ? "" : ", ") + std::string("the dataset ") + dataSet.name + " of " +
                namesOf(list) + " is taken";
    }
    return image;
}
