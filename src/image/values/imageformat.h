#pragma once

/// The file format that an image came from.
enum class ImageFormat {
    None = 0,
    Unknown = 1,
    Img = 2,
    Tiff = 3,
    BigTiff = 4,
    Lsm = 5,
    Hdf5 = 6,
    Czi = 7,
};

/// The name of a format as listings show it.
const char* imageFormatText(ImageFormat format);
