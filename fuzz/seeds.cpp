// Writes the seeds of the fuzz entries, `fuzz_seeds FOLDER`: small files that hold something of
// everything that the formats have, made by the writers of the system where these can make them.

#include "blade/project/projectfile.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"
#include "image/pixels/voxelmatrix.h"
#include "image/sources/imagesourcevoxelmatrixfileplane.h"
#include "shape/meshes/quadmesh.h"
#include "shape/meshes/trimesh.h"
#include "stack/stackwriter.h"
#include "support/stacks.h"
#include "support/tiffs.h"
#include "system/dataset.h"

#include <H5Cpp.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <numeric>
#include <vector>

namespace {

std::string seedFolder(const std::string& root, const char* entry)
{
    const std::string folder = root + "/" + entry + "/";
    std::filesystem::create_directories(folder);
    return folder;
}

void write(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios_base::binary) << text;
}

unsigned char pattern(int row, int column)
{
    return static_cast<unsigned char>(40 * row + 7 * column);
}

void writePlane(const std::string& path, int depth, bool palette)
{
    ImageHeader header;
    header.setWidth(7);
    header.setHeight(5);
    header.setPlanes(1);
    header.setDepth(depth);
    header.setPixelCalibration(stacks::calibration(2.5f, 1.0f));
    if (palette) {
        Colormap colormap(256);
        colormap.makeGrayscale();
        header.setColormap(colormap);
    }
    Image0 image;
    image.setHeader(header);
    for (int row = 0; row < 5; ++row) {
        for (std::size_t byte = 0; byte < image.bytesPerLine(); ++byte) {
            image.getPixels()[row][byte] = pattern(row, static_cast<int>(byte));
        }
    }
    ImageWriter().write(image, path, true);
}

void writeVolumeImage(const std::string& path, ValueType type, bool compress)
{
    Image2 image;
    image.setGeometry(type, 3, 4, 2, 1, 2, 1);
    image.allocateData();
    for (int channel = 0; channel < 2; ++channel) {
        std::memset(image.frame(channel, 0), 17 + channel, image.bytesPerPlane() * 2);
    }
    ImageWriter().write(image, path, compress, true);
}

void writeForeignPlane(const std::string& path, const char* mode, int compression, int planar)
{
    TiffMaker maker(path, mode);
    maker.tags(9, 4, 8, 3, PHOTOMETRIC_RGB);
    TIFFSetField(maker.get(), TIFFTAG_COMPRESSION, compression);
    TIFFSetField(maker.get(), TIFFTAG_PLANARCONFIG, planar);
    TIFFSetField(maker.get(), TIFFTAG_ROWSPERSTRIP, 2);
    maker.rows(4, pattern, planar == PLANARCONFIG_SEPARATE ? 3 : 1);
}

void writeTiles(const std::string& path)
{
    TiffMaker maker(path);
    maker.tags(20, 17, 8, 1, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(maker.get(), TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(maker.get(), TIFFTAG_TILEWIDTH, 16);
    TIFFSetField(maker.get(), TIFFTAG_TILELENGTH, 16);
    for (std::uint32_t tile = 0; tile < 4; ++tile) {
        std::vector<unsigned char> pixels(16 * 16, static_cast<unsigned char>(50 * tile));
        TIFFWriteTile(maker.get(), pixels.data(), tile % 2 * 16, tile / 2 * 16, 0, 0);
    }
}

/// The smallest file of a microscope: one plane, its thumbnail, and the block of numbers.
void writeLsm(const std::string& path)
{
    static const TIFFFieldInfo info[] = {{34412, TIFF_VARIABLE2, TIFF_VARIABLE2, TIFF_BYTE,
                                          FIELD_CUSTOM, 1, 1, const_cast<char*>("InfoBlock")}};
    std::array<unsigned char, 80> block = {};
    const std::uint32_t numbers[] = {0x0400494C, 80, 3, 3, 1, 2, 1};
    const double voxel[] = {2e-6, 3e-6, 4e-6};
    std::memcpy(block.data(), numbers, sizeof(numbers));
    std::memcpy(block.data() + 40, voxel, sizeof(voxel));
    TiffMaker maker(path);
    for (int side : {3, 1}) {
        TIFFMergeFieldInfo(maker.get(), info, 1);
        maker.tags(side, side, 8, 2, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(maker.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
        TIFFSetField(maker.get(), TIFFTAG_SUBFILETYPE, side == 1 ? 1 : 0);
        if (side == 3) {
            TIFFSetField(maker.get(), 34412, static_cast<std::uint32_t>(block.size()),
                         block.data());
        }
        maker.rows(side, pattern, 2);
    }
}

void writeImages(const std::string& folder)
{
    writePlane(folder + "grey.tif", 8, false);
    writePlane(folder + "palette.tif", 8, true);
    writePlane(folder + "grey16.tif", 16, false);
    writePlane(folder + "colour.tif", 24, false);
    writeVolumeImage(folder + "channels.tif", ValueType::UnsignedShort, false);
    writeVolumeImage(folder + "compressed.tif", ValueType::Float, true);
    writeForeignPlane(folder + "packed.tif", "w", COMPRESSION_PACKBITS, PLANARCONFIG_CONTIG);
    writeForeignPlane(folder + "big.tif", "w8", COMPRESSION_LZW, PLANARCONFIG_CONTIG);
    writeForeignPlane(folder + "motorola.tif", "wb", COMPRESSION_NONE, PLANARCONFIG_CONTIG);
    writeTiles(folder + "tiles.tif");
    writeLsm(folder + "microscope.tif");
}

/// A dataset of rising numbers. Chunks of nought are none; `latest` takes the newest form of file.
template <class T>
void writeHdf5(const std::string& path,
               const std::vector<hsize_t>& extent,
               const H5::DataType& type,
               const std::vector<hsize_t>& chunk,
               bool latest)
{
    H5::FileAccPropList access;
    access.setLibverBounds(latest ? H5F_LIBVER_LATEST : H5F_LIBVER_EARLIEST, H5F_LIBVER_LATEST);
    H5::H5File file(path, H5F_ACC_TRUNC, H5::FileCreatPropList::DEFAULT, access);
    H5::DSetCreatPropList properties;
    if (!chunk.empty()) {
        properties.setChunk(static_cast<int>(chunk.size()), chunk.data());
        properties.setShuffle();
        properties.setDeflate(6);
        properties.setFletcher32();
    }
    const H5::DataSpace space(static_cast<int>(extent.size()), extent.data());
    std::vector<T> values(static_cast<std::size_t>(space.getSimpleExtentNpoints()));
    std::iota(values.begin(), values.end(), T(1));
    file.createDataSet("volume", type, space, properties).write(values.data(), type);
}

void writeHdf5s(const std::string& folder)
{
    writeHdf5<short>(folder + "plain.h5", {3, 4}, H5::PredType::NATIVE_SHORT, {}, false);
    writeHdf5<unsigned char>(folder + "latest.h5", {2, 3, 4}, H5::PredType::NATIVE_UCHAR, {}, true);
    writeHdf5<float>(folder + "chunks.h5", {3, 5, 4}, H5::PredType::NATIVE_FLOAT, {2, 2, 4}, false);
    writeHdf5<double>(folder + "latestchunks.h5", {5, 4}, H5::PredType::NATIVE_DOUBLE, {2, 4},
                      true);
}

void writeStacks(const std::string& folder)
{
    for (unsigned seed : {6U, 9U, 23U}) {
        StackWriter().write(*stacks::randomStack(seed, folder),
                            folder + std::to_string(seed) + ".sdf");
    }
    // The folder of the images, the other sources and the older spellings.
    write(folder + "sources.sdf", "FileFormatVersion 1.05;\nSTACK \"sources\";\nIMAGESDIR \"\";\n"
                                  "ASPRATIO 1;\nPIXWIDTH 0.5;\nRELDEPTH 2;\n"
                                  "SLICE \"leaf\" \"leaf.tif\";\nSliceSize1 9;\nSliceSize2 12;\n"
                                  "SLICE \"mosaic\" 1 2;\nIMAGE 1 1 leaf.tif;\n"
                                  "IMAGE 1 2 leaf.tif;\nDEPTH 3;\n"
                                  "StackSlice \"page\" \"leaf.tif\" 0;\n"
                                  "StackSlice \"plane\" \"volume.vm\" 2;\n"
                                  "M2DCLASS \"Contour\";\nM2DPRIMITIVE Polygon;\nM2DCOLOR 1 2 3;\n"
                                  "M2DITEM \"Contour\" \"leaf\";\nM2DDATA 1,2 3,4 5,6;\n"
                                  "MODEL \"Area\";\nPRIMITIVE Region;\n"
                                  "MODELITEM \"Area\" \"page\";\nMODELITEMDATA 1,2,3 2,2,4;\n");
}

template <class AnyShape>
void writeShape(AnyShape shape, const std::string& path)
{
    float value = -1.5f;
    for (auto walk = shape.vertexIterator(); walk.current() != nullptr; ++walk) {
        for (int i = 0; i < shape.getSpace(); ++i) {
            (*walk.current())[i] = value += 0.75f;
        }
    }
    shape.save(path, true);
}

void writeShapes(const std::string& folder)
{
    writeShape(Curve<float>(2, 4, 4, 0, false), folder + "closed.cv");
    writeShape(Curve<float>(3, 3, 3, 0, true), folder + "open.cv");
    writeShape(CurveStack<float>(3, 2, 3, 3, 0, false), folder + "closed.cs");
    writeShape(CurveStack<float>(2, 2, 2, 2, 0, true), folder + "open.cs");
    writeShape(QuadMesh<float>(3, 3, 4, 4, 0, false), folder + "closed.qm");
    writeShape(Vertices<float>(2, 5, 5, 0), folder + "points.vx");
    writeShape(VertexStack<float>(3, 2, 2, 2, 0), folder + "points.vs");
    writeShape(QuadMesh<float>(3, 2, 3, 3, 0, false).toTriMesh(false), folder + "plain.tm");
    TriMesh<float>::cube().save(folder + "cube.tm", true);
}

void writeTables(const std::string& folder)
{
    DataSet table;
    for (int row = 2; row >= 0; --row) {
        table.setValue("Leaf", row, std::string("leaf; '") + std::to_string(row));
        table.setValue("Teeth", row, 17 - row);
        table.setValue("Area", row, 12.25f / static_cast<float>(row));
    }
    table.save(folder + "measures.tsv", true);
    write(folder + "quoted.tsv", "\"a\"\t\"b c\"\r\n1\t\"x\"\r\n\r\n-2.5e3\tnan\t7\r\n");
}

void writeVolumes(const std::string& folder)
{
    VoxelMatrix<float> volume(2, 3, 2);
    VoxelCalibration calibration;
    calibration.setVoxelDepth(2.0f);
    volume.setVoxelCalibration(calibration);
    for (int k = 0; k < 2; ++k) {
        for (int i = 0; i < 2; ++i) {
            for (int j = 0; j < 3; ++j) {
                volume[k][i][j] = static_cast<float>(i * j - k);
            }
        }
    }
    volume.save(folder + "volume.vm", true);
    // The form without version and calibration: three sizes and the elements.
    write(folder + "plain.vm", std::string("\1\0\0\0\2\0\0\0\1\0\0\0\0\0\200?\0\0\0@", 20));
}

void writeProjects(const std::string& folder)
{
    ProjectConfig project;
    project.setProjectName(QString::fromUtf8("\xC3\xA9t\xC3\xA9; 'two'"));
    project.setProjectPath("/home/user/leaves of 2019");
    project.setSpecie("Arabidopsis thaliana");
    project.setVenationType(PALMATE);
    project.setKineticEnabled(true);
    project.setInflectionPoint(12.5f);
    ProjectFile::write(project, QString::fromStdString(folder + "project.crp"));
}

void writeJunctions(const std::string& folder)
{
    write(folder + "plain.tsv", "Slice_Name\tX1\tY1\tX2\tY2\nleaf 1\t10\t20\t30.5\t-4e1\n"
                                "leaf 2\t1\t2\t3\t4\n");
    write(folder + "quoted.tsv", "\xEF\xBB\xBF\"Y2\"\tnote\tX2\tY1\tX1\tSlice_Name\r\n"
                                 "4\t\t3\t2\t1\t\"l\xC3\xA9\"\r\n\r\n");
}

} // namespace

int main(int argc, char** argv)
try {
    if (argc != 2) {
        std::cerr << "usage: fuzz_seeds FOLDER\n";
        return 2;
    }
    const std::string root = std::filesystem::absolute(argv[1]).string();
    writeImages(seedFolder(root, "image"));
    writeHdf5s(seedFolder(root, "hdf5"));
    write(seedFolder(root, "img") + "raw.img", "0000" + std::string(8, 'h') + "pixels");
    writeStacks(seedFolder(root, "stack"));
    writeShapes(seedFolder(root, "shape"));
    writeTables(seedFolder(root, "table"));
    writeVolumes(seedFolder(root, "volume"));
    writeProjects(seedFolder(root, "project"));
    writeJunctions(seedFolder(root, "junctions"));
    return 0;

} catch (const Exception& error) {
    std::cerr << error;
    return 1;
}
