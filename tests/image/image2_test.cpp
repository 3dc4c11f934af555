#include "image/pixels/image2.h"
#include "image/pixels/image2iterator.h"
#include "image/pixels/image2mapper.h"
#include "numerics/histogram.h"
#include "numerics/numbers.h"
#include "numerics/scalar.h"
#include "shape/vertices/boundingbox.h"
#include "support/errors.h"
#include "support/images.h"

#include <cstring>
#include <set>
#include <vector>

namespace {

/// An image whose sample at each place of a frame is the place plus a number told by the frame.
template <class T>
Image2 numbered(int size1, int size2, int size3, int samples, int channels, int timepoints)
{
    Image2 image(valueTypeOf<T>(), size1, size2, size3, samples, channels, timepoints);
    for (int c = 0; c < channels; ++c) {
        for (int t = 0; t < timepoints; ++t) {
            image.asVector<T>(c, t).setSequence(static_cast<T>(50 * c + 20 * t), T(1));
        }
    }
    return image;
}

template <class T>
class Image2OfType : public testing::Test
{};

using ValueTypes =
    testing::Types<unsigned char, unsigned short, short, int, unsigned int, float, double>;
TYPED_TEST_SUITE(Image2OfType, ValueTypes);

} // namespace

TYPED_TEST(Image2OfType, EveryElementLiesWhereTheLayoutPutsIt)
{
    using T = TypeParam;
    for (const auto& [size3, samples] :
         {std::pair(1, 1), std::pair(1, 3), std::pair(3, 1), std::pair(3, 3)}) {
        const Image2 image = numbered<T>(2, 4, size3, samples, 1, 1);
        for (int e = 0; e < 8 * size3; ++e) {
            const Vector<int> p =
                vectorOf<int>({e / 4 % 2, e % 4, e / 8}).copyUntil(image.dimension() - 1);
            ASSERT_EQ(image.getValue<T>(p), static_cast<T>(e * samples));
            Vector<int> decoded;
            image.mapper().decode(e, decoded);
            ASSERT_EQ(decoded, p);
        }
    }
    Image2 color = numbered<T>(2, 2, 1, 3, 1, 1);
    color.setGreenValue<T>(1, 0, T(99));
    EXPECT_EQ(color.asVector<T>()[7], T(99));
    EXPECT_EQ(color.getBlueValue<T>(1, 0), T(8));
    EXPECT_EQ(color.bytesPerElement(), 3 * sizeof(T));
}

TYPED_TEST(Image2OfType, ConversionIsThatOfTheLanguage)
{
    using T = TypeParam;
    const Image2 image = numbered<T>(3, 2, 2, 2, 2, 2);
    Image2 converted(image);
    converted.convertToType<double>();
    EXPECT_EQ(converted.getValueType(), ValueType::Double);
    EXPECT_EQ(converted.asVector<double>(1, 1)[23], 93.0);
    converted.convertToType<T>();
    EXPECT_TRUE(converted == image);
    Image2 bytes(ValueType::UnsignedChar, 3, 2, 2, 2, 1, 1);
    bytes.castAssignCurrentValues(image);
    EXPECT_EQ(bytes.asVector<unsigned char>()[23], 23);
    Image2 same(valueTypeOf<T>(), 3, 2, 2, 2, 1, 1);
    same.castAssignCurrentValues(bytes);
    EXPECT_EQ(std::memcmp(same.frame(0, 0), image.frame(0, 0), same.bytesPerFrame()), 0);
    same.fill<T>(T(3));
    EXPECT_EQ(static_cast<T>(Scalar(same.numbers().getMaximum())), T(3));
    same.clear();
    EXPECT_EQ(static_cast<T>(Scalar(same.numbers().getMinimum())), T(0));
}

TEST(Image2, CreationIsZeroFilledAndChecked)
{
    const Image2 image(ValueType::Short, 1000, 1000, 1, 1, 1, 1);
    EXPECT_EQ(image.dimension(), 2);
    EXPECT_EQ(image.getSize().getSize(), 2);
    EXPECT_EQ(image.asVector<short>()[999999], 0);
    EXPECT_EQ(image.bytes(), 2000000U);
    EXPECT_THROW(image.asVector<int>(), TypeError);
    EXPECT_THROW(Image2(ValueType::Int, -1, 2, 1, 1, 1, 1), SizeError);
    EXPECT_THROW(Image2(ValueType::Int, 65536, 65536, 1, 1, 1, 1), SizeError);
    EXPECT_THROW(Image2(ValueType::Int, vectorOf<int>({3}), 1, 1, 1), SizeError);
    EXPECT_EQ(Image2(ValueType::Int, vectorOf<int>({3, 4, 5}), 1, 2, 2).numElements(), 240U);
    const Image2 empty(ValueType::Int, 0, 4, 1, 1, 2, 2);
    EXPECT_EQ(empty.frame(1, 1), nullptr);
    EXPECT_THROW(empty.numbers(), SizeError);
    EXPECT_EQ(Image2().dimension(), 2);
    Image2 odd(static_cast<ValueType>(7), 2, 2, 1, 1, 1, 1);
    EXPECT_RAISES(FatalError, "void Image2::clear()", "unknown value type", odd.clear());
    EXPECT_RAISES(FatalError, "Numbers<Scalar> Image2::numbers() const", "unknown value type",
                  odd.numbers());
}

TEST(Image2, CopiesAreDeepAndMovesTakeTheBlocks)
{
    Image2 image = numbered<int>(2, 3, 2, 1, 2, 1);
    image.setSpatialCalibration(calibrationOf(0, 1, 7, 1));
    const unsigned char* const block = image.frame(1, 0);
    Image2 copy(image);
    EXPECT_TRUE(copy == image);
    EXPECT_EQ(copy.getSpatialCalibration().getSize2(), 7.0F);
    copy.setValue<int>(vectorOf<int>({1, 1, 1}), 1000);
    EXPECT_FALSE(copy == image);
    const Image2 moved(std::move(image));
    EXPECT_EQ(moved.frame(1, 0), block);
    EXPECT_EQ(image.getNumChannels(), 0);
    copy = moved;
    EXPECT_TRUE(copy == moved);
    EXPECT_TRUE(copy.isFrameSimilar(numbered<int>(2, 3, 2, 1, 1, 1)));
    EXPECT_FALSE(copy.isSimilar(numbered<int>(2, 3, 2, 1, 1, 1)));
    EXPECT_EQ(copy.boundingBox(false).getVertex2(), vectorOf<int>({2, 1, 1}));
    EXPECT_EQ(copy.boundingBox(true).getVertex2(), vectorOf<int>({1, 2, 1}));
}

TEST(Image2, PartsComeOutAndGoBackIn)
{
    const Image2 image = numbered<unsigned short>(2, 3, 2, 3, 2, 2);
    Image2 built(ValueType::UnsignedShort, 2, 3, 2, 3, 2, 2);
    for (int c = 0; c < 2; ++c) {
        for (int t = 0; t < 2; ++t) {
            const Image2 frame = image.channel(c).timepoint(t);
            for (int k = 0; k < 2; ++k) {
                built.setSlice(c, t, k, frame.plane(k));
            }
        }
    }
    EXPECT_TRUE(built == image);
    image.setCurrentChannelAndTimepoint(1, 1);
    built.setCurrentChannelAndTimepoint(1, 1);
    built.clear();
    for (int s = 0; s < 3; ++s) {
        const Image2 sample = image.currentSample(s);
        EXPECT_EQ(sample.samplesPerElement(), 1);
        EXPECT_EQ(sample.asVector<unsigned short>()[4], 70 + 12 + s);
        built.setColorChannel(static_cast<ColorChannel>(s), sample);
    }
    EXPECT_TRUE(built == image);
    Image2 current;
    current.assignCurrentImage(image);
    EXPECT_EQ(current.asVector<unsigned short>()[0], 70);
    EXPECT_TRUE(current == image.getCurrentImage());
}

TEST(Image2, PartsOutOfRangeAreRefused)
{
    Image2 image = numbered<short>(2, 2, 1, 3, 2, 2);
    const char* const sampleWhere = "Image2::setSample(const int,const Image2&) const";
    EXPECT_RAISES(ValueError, "void Image2::setCurrentChannelAndTimepoint(const int, const int)",
                  "Bad value of channel or timepoint", image.setCurrentChannel(2));
    EXPECT_RAISES(ValueError, "Image2 Image2::channel(const int) const", "invalid channel value",
                  image.channel(2));
    EXPECT_RAISES(ValueError, "Image2 Image2::timepoint(const int) const",
                  "invalid timepoint value", image.timepoint(-1));
    EXPECT_RAISES(ValueError, "Image2 Image2::plane(const int) const", "out-of-range plane index",
                  image.plane(1));
    EXPECT_RAISES(RangeError, "Image2 Image2::currentSample(const int) const",
                  "invalid sample value", image.currentSample(3));
    EXPECT_RAISES(RangeError, sampleWhere, "invalid sample value",
                  image.setCurrentSample(-1, image));
    EXPECT_RAISES(ValueError, sampleWhere, "too many samples per pixel/voxel in the source image",
                  image.setCurrentSample(0, image));
    EXPECT_RAISES(UsageError, "void Image2::assignCurrentValues(const Image2&)",
                  "The two images are not frame-similar",
                  image.assignCurrentValues(numbered<int>(2, 2, 1, 3, 2, 2)));
    EXPECT_THROW(image.setCurrentSample(0, numbered<short>(2, 3, 1, 1, 1, 1)), UsageError);
    EXPECT_THROW(image.setSlice(0, 0, 0, numbered<short>(3, 2, 1, 3, 1, 1)), UsageError);
    EXPECT_THROW(image.setSlice(0, 0, 1, image), ValueError);
}

TEST(Image2, MappersOfOtherDimensionsRaiseTheirSignature)
{
    const Image2 flat(ValueType::Int, 2, 2, 1, 3, 1, 1);
    const Image2 deep(ValueType::Int, 2, 2, 2, 1, 1, 1);
    EXPECT_RAISES(ProgramError, "int Image2::AbstractMapper2D::encode(int, int, int) const",
                  "3D access requested on a 2D image", flat.mapper().encode(0, 0, 0));
    EXPECT_RAISES(ProgramError, "bool Image2::AbstractMapper3D::contains(int, int) const",
                  "2D access requested on a 3D image", deep.mapper().contains(0, 0));
    EXPECT_TRUE(deep.mapper().contains(1, 1, 1));
    EXPECT_FALSE(deep.mapper().contains(1, 1, 2));
    EXPECT_FALSE(flat.mapper().contains(vectorOf<int>({-1, 0})));
    EXPECT_EQ(flat.mapper().encode(1, 0, ColorChannel::Blue), 8);
    Image2::Mapper2D mapper(2, 3);
    Image2::Mapper2D other(4, 5);
    mapper.swap(other);
    EXPECT_EQ(mapper.encode(1, 0), 5);
    Image2::ColorMapper2D color(2, 3, 2);
    EXPECT_THROW(mapper.swap(color), ProgramError);
}

TEST(Image2, BordersMarginsAndIteratorsAgreeWithCounting)
{
    for (const auto [n1, n2, n3] : {std::array{5, 4, 1}, std::array{1, 6, 1}, std::array{4, 1, 1},
                                    std::array{4, 5, 6}, std::array{3, 2, 2}}) {
        const Image2 image(ValueType::UnsignedChar, n1, n2, n3, 1, 1, 1);
        std::multiset<int> border;
        for (const auto& [first, last] : image.mapper().borderRuns()) {
            for (int e = first; e <= last; ++e) {
                border.insert(e);
            }
        }
        const std::unique_ptr<Image2::Iterator> iterator = image.newIterator();
        for (; !iterator->atEnd(); iterator->next()) {
            const int i = iterator->i();
            const int j = iterator->j();
            const int k = iterator->k();
            ASSERT_EQ(iterator->index(), (k * n1 + i) * n2 + j);
            int distance = std::min({i, n1 - 1 - i, j, n2 - 1 - j});
            if (n3 > 1) {
                distance = std::min({distance, k, n3 - 1 - k});
            }
            ASSERT_EQ(border.count(iterator->index()), distance == 0 ? 1U : 0U);
            for (int margin = 0; margin < 4; ++margin) {
                ASSERT_EQ(iterator->insideMargin(margin), distance < margin);
                ASSERT_EQ(image.mapper().insideMargin(iterator->index(), margin),
                          distance < margin);
            }
        }
        EXPECT_EQ(iterator->index(), n1 * n2 * n3);
    }
}

TEST(Image2, HistogramsCountEveryValueOfTheirRange)
{
    Image2 image = numbered<unsigned char>(16, 16, 1, 1, 1, 1);
    const Histogram<unsigned char> whole = image.histogram<unsigned char>(0, 255, 256);
    EXPECT_TRUE(whole.counts().isConstant());
    EXPECT_EQ(whole.counts()[0], 1);
    EXPECT_EQ(image.histogram<unsigned char>(0, 255, 4).counts()[3], 64);
    EXPECT_EQ(image.histogram<unsigned char>(0, 255, 100).binWidth(), 3);
    EXPECT_THROW(image.histogram<unsigned char>(0, 255, 0), ValueError);
    image.convertToType<float>();
    EXPECT_EQ(image.histogram<float>(0.0F, 256.0F, 8).counts()[7], 32);
}
