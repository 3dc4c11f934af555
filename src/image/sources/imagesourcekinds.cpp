#include "image/sources/imagesourcekinds.h"

std::vector<std::string> filesOf(const ImageSource& source)
{
    std::vector<std::string> files;
    const auto addCells = [&](const ImageSourceFileMosaic& mosaic) {
        for (int i = 0; i < mosaic.getRows(); ++i) {
            for (int j = 0; j < mosaic.getCols(); ++j) {
                if (!mosaic.getFilename(i, j).empty()) {
                    files.push_back(mosaic.getFilename(i, j));
                }
            }
        }
    };
    withKind(source, "vector<string> filesOf(const ImageSource&)",
             Kinds{[&](const ImageSourceFile& file) { files.push_back(file.getFilename()); },
                   addCells, [](const ImageSourceVoxelMatrixPlane&) {},
                   [&](const ImageSourceVoxelMatrixFilePlane& plane) {
                       files.push_back(plane.getVoxelMatrixFilename());
                   },
                   [&](const ImageSourceTiffStackPlane& page) {
                       files.push_back(page.getTiffStackFilename());
                   },
                   [&](const ImageSourceLSMStackPlane& plane) {
                       files.push_back(plane.getLsmStackFilename());
                   }});
    return files;
}
