#include "host/results/picturefile.h"

#include "system/exception.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QScreen>
#include <QSvgGenerator>

namespace {

const char* const where = "void savePicture(const QString&, const QSize&, ...)";

QByteArray png(const QSize& size, const std::function<void(QPainter&)>& paint)
{
    constexpr double scale = 2.0;
    QImage image(size * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    QPainter painter(&image);
    paint(painter);
    painter.end();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data();
}

QByteArray svg(const QSize& size, const std::function<void(QPainter&)>& paint)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(), size));
    // Texts are laid out by the metrics of the screen.
    generator.setResolution(qRound(QGuiApplication::primaryScreen()->logicalDotsPerInch()));
    QPainter painter(&generator);
    paint(painter);
    painter.end();
    return buffer.data();
}

} // namespace

void savePicture(const QString& filename,
                 const QSize& size,
                 const std::function<void(QPainter&)>& paint)
{
    const QString suffix = QFileInfo(filename).suffix().toLower();
    if (suffix != "png" && suffix != "svg") {
        raise<UsageError>(where, "A picture is saved as .png or .svg");
    }
    const QByteArray bytes = suffix == "png" ? png(size, paint) : svg(size, paint);
    QSaveFile file(filename);
    if (bytes.isEmpty() || !file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() ||
        !file.commit()) {
        raiseFile<FileWriteError>(
            where, "The picture can't be written: " + file.errorString().toStdString(),
            filename.toStdString());
    }
}
