#include "interface/photographrecord.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <functional>
#include <locale>
#include <sstream>

namespace {

constexpr int mostParts = 100000;
constexpr std::size_t mostExif = std::size_t(1) << 20;
constexpr double metresPerInch = 0.0254;

/// Bytes of a file, and numbers in them. What lies beyond the end is 0.
class Bytes
{
public:
    explicit Bytes(std::string bytes)
        : bytes_(std::move(bytes))
    {}

    /// The next `count` bytes of a file; fewer at its end.
    Bytes(std::istream& file, std::size_t count)
        : bytes_(count, '\0')
    {
        file.read(bytes_.data(), static_cast<std::streamsize>(count));
        bytes_.resize(static_cast<std::size_t>(file.gcount()));
    }

    std::size_t size() const { return bytes_.size(); }

    bool startsWith(const std::string& text) const
    {
        return bytes_.compare(0, text.size(), text) == 0;
    }

    std::string text(std::size_t from, std::size_t count) const
    {
        return from < bytes_.size() ? bytes_.substr(from, count) : std::string();
    }

    std::uint32_t number(std::size_t from, std::size_t count, bool bigEndian = true) const
    {
        std::uint32_t value = 0;
        for (std::size_t k = 0; k < count; ++k) {
            const std::size_t at = from + (bigEndian ? k : count - 1 - k);
            value = value << 8 | (at < bytes_.size() ? std::uint8_t(bytes_[at]) : 0U);
        }
        return value;
    }

private:
    std::string bytes_;
};

/// The first directory of a TIFF file, or of an EXIF record, which has the same form.
class TiffDirectory
{
public:
    /// Gives `count` bytes of the file or record from a position, fewer at its end.
    using Read = std::function<Bytes(std::size_t from, std::size_t count)>;

    explicit TiffDirectory(const Read& read)
        : read_(read)
    {
        const Bytes head = read(0, 8);
        bigEndian_ = head.startsWith("MM");
        if (bigEndian_ || head.startsWith("II")) {
            const std::size_t at = head.number(4, 4, bigEndian_);
            entries_ = read(at + 2, entrySize * read(at, 2).number(0, 2, bigEndian_));
        }
    }

    /// The text of the tag Make.
    std::string make() const
    {
        const std::size_t entry = find(0x010F, 2);
        const std::size_t count = std::min<std::size_t>(number(entry + 4, 4), mostText);
        const Bytes text =
            count > 4 ? read_(number(entry + 8, 4), count) : Bytes(entries_.text(entry + 8, count));
        return text.text(0, text.text(0, count).find('\0'));
    }

    /// Dots per inch across, from the tags XResolution and ResolutionUnit; 0 if it has none.
    double dotsPerInch() const
    {
        constexpr std::uint32_t centimetre = 3;
        const Bytes ratio = read_(number(find(0x011A, 5) + 8, 4), 8);
        const double parts = ratio.number(4, 4, bigEndian_);
        if (find(0x011A, 5) >= entries_.size() || parts == 0.0) {
            return 0.0;
        }
        const bool metric = number(find(0x0128, 3) + 8, 2) == centimetre;
        return ratio.number(0, 4, bigEndian_) / parts * (metric ? 100.0 * metresPerInch : 1.0);
    }

private:
    static constexpr std::size_t entrySize = 12;
    static constexpr std::size_t mostText = 1000;

    std::uint32_t number(std::size_t from, std::size_t count) const
    {
        return entries_.number(from, count, bigEndian_);
    }

    /// Where the entry of a tag of this type begins; the end if there is none.
    std::size_t find(std::uint32_t tag, std::uint32_t type) const
    {
        std::size_t entry = 0;
        while (entry + entrySize <= entries_.size() &&
               (number(entry, 2) != tag || number(entry + 2, 2) != type)) {
            entry += entrySize;
        }
        return entry + entrySize <= entries_.size() ? entry : entries_.size();
    }

    Read read_;
    Bytes entries_{std::string()};
    bool bigEndian_ = false;
};

std::string makeOf(const Bytes& exif)
{
    return TiffDirectory(
               [&](std::size_t from, std::size_t count) { return Bytes(exif.text(from, count)); })
        .make();
}

} // namespace

PhotographRecord::PhotographRecord(const std::string& photograph)
{
    std::ifstream file(photograph, std::ios::binary);
    const Bytes head(file, 8);
    file.clear();
    if (head.startsWith("\xFF\xD8")) {
        file.seekg(2);
        readJpeg(file);
    } else if (head.startsWith("\x89PNG")) {
        readPng(file);
    } else if (head.startsWith("II") || head.startsWith("MM")) {
        readTiff(file);
    }
}

void PhotographRecord::readJpeg(std::istream& file)
{
    constexpr std::uint32_t scan = 0xDA;
    for (int part = 0; part < mostParts; ++part) {
        const Bytes marker(file, 4);
        const std::uint32_t kind = marker.number(1, 1);
        const std::uint32_t length = marker.number(2, 2);
        if (!file || marker.number(0, 1) != 0xFF || kind == scan || length < 2) {
            return;
        }
        const Bytes segment(file, length - 2);
        if (kind == 0xE0 && segment.startsWith(std::string("JFIF\0", 5))) {
            const std::uint32_t unit = segment.number(7, 1);
            const double density = segment.number(8, 2);
            dotsPerInch_ = unit == 1 ? density : unit == 2 ? 100.0 * metresPerInch * density : 0.0;
        } else if (kind == 0xE1 && segment.startsWith(std::string("Exif\0\0", 6))) {
            make_ = makeOf(Bytes(segment.text(6, segment.size())));
        }
    }
}

void PhotographRecord::readPng(std::istream& file)
{
    for (int part = 0; part < mostParts; ++part) {
        const Bytes head(file, 8);
        const std::uint32_t length = head.number(0, 4);
        const std::string kind = head.text(4, 4);
        if (!file || kind == "IEND") {
            return;
        }
        const bool wanted = (kind == "pHYs" || kind == "eXIf") && length <= mostExif;
        const Bytes chunk(file, wanted ? length : 0);
        if (kind == "pHYs" && chunk.number(8, 1) == 1) {
            dotsPerInch_ = chunk.number(0, 4) * metresPerInch;
        } else if (kind == "eXIf") {
            make_ = makeOf(chunk);
        }
        file.seekg(static_cast<std::streamoff>(length) - static_cast<std::streamoff>(chunk.size()) +
                       4,
                   std::ios::cur);
    }
}

void PhotographRecord::readTiff(std::istream& file)
{
    isTiff_ = true;
    const TiffDirectory directory([&](std::size_t from, std::size_t count) {
        file.clear();
        file.seekg(static_cast<std::streamoff>(from));
        return Bytes(file, count);
    });
    make_ = directory.make();
    dotsPerInch_ = directory.dotsPerInch();
}

std::string PhotographRecord::doubt() const
{
    if (!(dotsPerInch_ > 0.0)) {
        return {};
    }
    std::ostringstream text;
    text.imbue(std::locale::classic());
    const auto isAbout = [&](double dots) { return std::abs(dotsPerInch_ - dots) < 1.0; };
    if (!make_.empty()) {
        text << "comes from a camera (" << make_ << "), whose dots per inch are no scale";
    } else if (!isTiff_ && (isAbout(72.0) || isAbout(96.0))) {
        text << "states " << std::lround(dotsPerInch_) << " dots per inch, which is no scale";
    }
    return text.str();
}
