#include "interface/photographimport.h"

#include "image/files/imagereader.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "interface/conversion.h"
#include "interface/photographrecord.h"
#include "interface/qimageconversion.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <QImage>
#include <QImageReader>
#include <QString>

#include <cstring>
#include <string>

namespace {

const char* const where = "string PhotographImport::convert(const string&, const string&, string&)";

/// Keeps what Qt's image readers say of a damaged file, which they read to its end all the same.
/// libjpeg tells of missing data by a warning and makes up the rest.
class DecoderWarnings
{
public:
    DecoderWarnings()
        : outer_(qInstallMessageHandler(take))
    {
        damage_.clear();
    }

    ~DecoderWarnings() { qInstallMessageHandler(outer_); }

    DecoderWarnings(const DecoderWarnings&) = delete;
    DecoderWarnings& operator=(const DecoderWarnings&) = delete;

    const QString& damage() const { return damage_; }

private:
    static void take(QtMsgType, const QMessageLogContext&, const QString& text)
    {
        if (damage_.isEmpty() && (text.startsWith("Premature end") || text.contains("Corrupt"))) {
            damage_ = text;
        }
    }

    static QString damage_;
    QtMessageHandler outer_;
};

QString DecoderWarnings::damage_;

QImage decode(const std::string& photograph)
{
    QImageReader reader;
    reader.setDecideFormatFromContent(true);
    reader.setAutoDetectImageFormat(true);
    reader.setAutoTransform(true);
    reader.setFileName(QString::fromStdString(photograph));
    const QByteArray format = reader.format();
    if (!reader.device() || !reader.device()->isOpen()) {
        raiseFile<FileReadError>(
            where, "Cannot open the photograph: no such file, or no permission", photograph);
    }
    if (format != "png" && format != "jpeg") {
        raiseFile<FileFormatError>(where, "The photograph is neither TIFF, PNG nor JPEG",
                                   photograph);
    }
    const DecoderWarnings warnings;
    const QImage picture = reader.read();
    if (picture.isNull()) {
        raiseFile<FileFormatError>(
            where, "Cannot read the photograph: " + reader.errorString().toStdString(), photograph);
    }
    if (!warnings.damage().isEmpty()) {
        raiseFile<FileFormatError>(
            where, "The photograph is damaged: " + warnings.damage().toStdString(), photograph);
    }
    return picture;
}

/// In centimetres if the picture states its resolution and that may be a scale. One that it does not
/// state is that of a picture made from nothing.
PixelCalibration statedCalibration(const QImage& picture, const std::string& photograph)
{
    PixelCalibration calibration;
    const QImage fresh(1, 1, picture.format());
    const int across = picture.dotsPerMeterX();
    const int down = picture.dotsPerMeterY();
    if (across <= 0 || down <= 0 ||
        (across == fresh.dotsPerMeterX() && down == fresh.dotsPerMeterY()) ||
        !PhotographRecord(photograph).doubt().empty()) {
        return calibration;
    }
    LengthUnit centimetre;
    centimetre.setScale(-2);
    calibration.setLengthUnit(centimetre);
    calibration.setPixelWidth(100.0F / static_cast<float>(across));
    calibration.setPixelHeight(100.0F / static_cast<float>(down));
    calibration.compute();
    return calibration;
}

bool samePixels(const Image0& a, const Image0& b)
{
    return a.getWidth() == b.getWidth() && a.getHeight() == b.getHeight() &&
           a.getDepth() == b.getDepth() &&
           std::memcmp(a.getData(), b.getData(), a.dataLength()) == 0;
}

/// The file can be read and has these pixels.
bool holds(const std::string& path, const Image0& image)
{
    try {
        Image0 present;
        ImageReader().read(present, path);
        return samePixels(image, present);
    } catch (const FileError&) {
        return false;
    }
}

} // namespace

bool PhotographImport::isTiff(const std::string& path)
{
    const QString suffix = QString::fromStdString(FileInfo::suffixName(path)).toLower();
    return suffix == "tif" || suffix == "tiff";
}

Image0 PhotographImport::read(const std::string& photograph)
{
    const QImage picture = decode(photograph);
    Image0 image = toImage0(picture);
    ImageHeader header = image.getHeader();
    header.setPixelCalibration(statedCalibration(picture, photograph));
    image.setHeader(header);
    return image;
}

std::string PhotographImport::convert(const std::string& photograph,
                                      const std::string& folder,
                                      std::string& note)
{
    const Image0 image = read(photograph);
    Conversion conversion(photograph, folder);
    while (conversion.isMade() && !holds(conversion.path(), image)) {
        conversion.next();
    }
    note = conversion.note();
    if (!conversion.isMade()) {
        ImageWriter writer;
        writer.setOrigin(conversion.origin());
        writer.writeCompressed(image, conversion.path(), false);
    }
    return conversion.path();
}
