#pragma once

class Image0;
class QImage;

/// A copy of the image for Qt's painters: grey and indexed images with 8 bits a pixel, colours with
/// three samples of 8. Of 16 bits the grey values are scaled as `Image0::make8bitsGrayscale` does;
/// the fourth sample of 32 bits is left out. An image without pixels gives a null image.
QImage toQImage(const Image0& image);

/// A copy of a picture as Qt reads it: 8 bits grey where all its pixels are grey, else 24 bits.
/// Transparent parts come out as they look on white; of samples of 16 bits the upper 8 stay. A
/// resolution is not taken over.
Image0 toImage0(const QImage& picture);
