#include "interface/qimageconversion.h"

#include "image/pixels/image0.h"
#include "image/values/colormap.h"

#include <QImage>
#include <QPainter>
#include <QVector>

#include <cstring>

namespace {

QVector<QRgb> colorTable(const Colormap& colormap)
{
    QVector<QRgb> table;
    for (int i = 0; i < colormap.getSize(); ++i) {
        table.append(qRgb(colormap.getRed()[i], colormap.getGreen()[i], colormap.getBlue()[i]));
    }
    return table;
}

/// One byte a pixel. Indices beyond the colormap are black.
QImage fromBytes(const Image0& image)
{
    const bool indexed = image.isIndexed();
    QImage picture(image.getWidth(), image.getHeight(),
                   indexed ? QImage::Format_Indexed8 : QImage::Format_Grayscale8);
    if (indexed) {
        QVector<QRgb> table = colorTable(*image.getColormap());
        while (table.size() < 256) {
            table.append(qRgb(0, 0, 0));
        }
        picture.setColorTable(table);
    }
    for (int y = 0; y < image.getHeight(); ++y) {
        std::memcpy(picture.scanLine(y), image.getPixels()[y], image.bytesPerLine());
    }
    return picture;
}

QImage fromColours(const Image0& image)
{
    QImage picture(image.getWidth(), image.getHeight(), QImage::Format_RGB888);
    const int step = image.bytesPerPixel();
    for (int y = 0; y < image.getHeight(); ++y) {
        const unsigned char* from = image.getPixels()[y];
        unsigned char* to = picture.scanLine(y);
        for (int x = 0; x < image.getWidth(); ++x, from += step, to += 3) {
            std::memcpy(to, from, 3);
        }
    }
    return picture;
}

QImage onWhite(const QImage& picture)
{
    if (!picture.hasAlphaChannel()) {
        return picture;
    }
    QImage opaque(picture.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    // A picture larger than its stated resolution would be scaled by the painter otherwise.
    QImage source = picture;
    source.setDevicePixelRatio(1.0);
    QPainter(&opaque).drawImage(0, 0, source);
    return opaque;
}

} // namespace

QImage toQImage(const Image0& image)
{
    if (image.getWidth() < 1 || image.getHeight() < 1 || image.getData() == nullptr) {
        return QImage();
    }
    switch (image.getDepth()) {
    case 8:
        return fromBytes(image);
    case 16: {
        Image0 grey = image;
        grey.make8bitsGrayscale();
        return fromBytes(grey);
    }
    default:
        return fromColours(image);
    }
}

Image0 toImage0(const QImage& picture)
{
    const QImage opaque = onWhite(picture);
    const bool grey = opaque.isGrayscale();
    const QImage pixels =
        opaque.convertToFormat(grey ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    Image0 image(pixels.width(), pixels.height(), grey ? 8 : 24);
    for (int y = 0; y < pixels.height(); ++y) {
        std::memcpy(image.getPixels()[y], pixels.constScanLine(y), image.bytesPerLine());
    }
    return image;
}
