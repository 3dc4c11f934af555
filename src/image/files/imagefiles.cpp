// Part of `Image0`, `Image2` and `PixelMatrix`: the members that read and write files.

#include "image/files/imagereader.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"
#include "image/pixels/image2mapper.h"
#include "image/pixels/pixelmatrix.h"

void Image0::readFile(const std::string& name, const std::string& directory)
{
    ImageReader().read(*this, directory + name);
}

void Image0::writeFile(const std::string& name, const std::string& directory, bool overwrite) const
{
    ImageWriter().write(*this, directory.empty() ? name : directory + "/" + name, overwrite);
}

Image2::Image2(const std::string& path)
{
    ImageReader().read(*this, path, true);
}

void Image2::saveAsTiff(const std::string& path, bool compress, bool overwrite)
{
    ImageWriter().write(*this, path, compress, overwrite);
    if (compress) {
        fileCompression_ = "lzw";
    }
}

template <class T>
void PixelMatrix<T>::saveAsImage(const std::string& path, bool overwrite) const
{
    Image0 image;
    convertToImage(image, 8);
    ImageWriter().write(image, path, overwrite);
}

template void PixelMatrix<bool>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<char>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<unsigned char>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<short>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<unsigned short>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<int>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<unsigned int>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<float>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<double>::saveAsImage(const std::string&, bool) const;
template void PixelMatrix<long double>::saveAsImage(const std::string&, bool) const;
