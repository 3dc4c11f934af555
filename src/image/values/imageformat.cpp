#include "image/values/imageformat.h"

const char* imageFormatText(ImageFormat format)
{
    switch (format) {
    case ImageFormat::None:
        return "None";
    case ImageFormat::Unknown:
        break;
    case ImageFormat::Img:
        return "IMG";
    case ImageFormat::Tiff:
        return "Tiff";
    case ImageFormat::BigTiff:
        return "BigTiff";
    case ImageFormat::Lsm:
        return "LSM";
    case ImageFormat::Hdf5:
        return "HDF5";
    case ImageFormat::Czi:
        return "CZI";
    }
    return "Unknwon";
}
