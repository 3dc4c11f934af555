#pragma once

#include "image/pixels/image2.h"

#include <utility>
#include <vector>

/// The index arithmetic of an image's shape: what is inside, where an element lies in its frame.
/// Forms with another number of coordinates than the image has raise `ProgramError`.
class Image2::AbstractMapper
{
public:
    /// First and last index of a stretch of elements.
    using Runs = std::vector<std::pair<int, int>>;

    AbstractMapper(int size1, int size2);
    virtual ~AbstractMapper();

    virtual bool contains(int i, int j) const = 0;
    virtual bool contains(int i, int j, int k) const = 0;

    /// A position of as many coordinates as the image has dimensions, as in `encode` and `decode`.
    virtual bool contains(const Vector<int>& position) const = 0;

    /// Whether the element, counted without its samples, lies within `margin` elements of the border.
    virtual bool insideMargin(int index, int margin) const = 0;

    /// Stretches of elements, counted without samples, that cover the border, in index order. No
    /// element comes twice, also in an image of one row or one column.
    virtual Runs borderRuns() const = 0;

    /// Position of an element's first sample in the frame.
    virtual int encode(int i, int j) const = 0;
    virtual int encode(int i, int j, int k) const = 0;
    virtual int encode(const Vector<int>& position) const = 0;

    /// Position of one sample; images of one sample ignore the channel.
    virtual int encode(int i, int j, ColorChannel channel) const = 0;
    virtual int encode(int i, int j, int k, ColorChannel channel) const = 0;
    virtual int encode(const Vector<int>& position, ColorChannel channel) const = 0;

    /// Indices of an element, counted without samples.
    virtual void decode(int index, int& i, int& j) const = 0;
    virtual void decode(int index, int& i, int& j, int& k) const = 0;
    virtual void decode(int index, Vector<int>& position) const = 0;

    /// Exchanges the shapes of two mappers of one class; `ProgramError` for another class.
    virtual void swap(Image2::AbstractMapper& other) = 0;

protected:
    AbstractMapper(const AbstractMapper&) = default;
    AbstractMapper& operator=(const AbstractMapper&) = default;

    int size1_;
    int size2_;
};

/// What the mappers of an image of one plane share.
class Image2::AbstractMapper2D : public Image2::AbstractMapper
{
public:
    using AbstractMapper::AbstractMapper;

    bool contains(int i, int j) const override;
    bool contains(int i, int j, int k) const override;
    bool contains(const Vector<int>& position) const override;
    bool insideMargin(int index, int margin) const override;
    Runs borderRuns() const override;
    int encode(int i, int j) const override = 0;
    int encode(int i, int j, int k) const override;
    int encode(const Vector<int>& position) const override;
    int encode(int i, int j, ColorChannel channel) const override = 0;
    int encode(int i, int j, int k, ColorChannel channel) const override;
    int encode(const Vector<int>& position, ColorChannel channel) const override;
    void decode(int index, int& i, int& j) const override;
    void decode(int index, int& i, int& j, int& k) const override;
    void decode(int index, Vector<int>& position) const override;
};

/// What the mappers of an image of several planes share.
class Image2::AbstractMapper3D : public Image2::AbstractMapper
{
public:
    AbstractMapper3D(int size1, int size2, int size3);

    bool contains(int i, int j) const override;
    bool contains(int i, int j, int k) const override;
    bool contains(const Vector<int>& position) const override;
    bool insideMargin(int index, int margin) const override;
    Runs borderRuns() const override;
    int encode(int i, int j) const override;
    int encode(int i, int j, int k) const override = 0;
    int encode(const Vector<int>& position) const override;
    int encode(int i, int j, ColorChannel channel) const override;
    int encode(int i, int j, int k, ColorChannel channel) const override = 0;
    int encode(const Vector<int>& position, ColorChannel channel) const override;
    void decode(int index, int& i, int& j) const override;
    void decode(int index, int& i, int& j, int& k) const override;
    void decode(int index, Vector<int>& position) const override;

protected:
    int size3_;
};

/// One plane, one sample.
class Image2::Mapper2D : public Image2::AbstractMapper2D
{
public:
    using AbstractMapper2D::AbstractMapper2D;
    using AbstractMapper2D::encode;

    int encode(int i, int j) const override { return i * size2_ + j; }

    int encode(int i, int j, ColorChannel) const override { return encode(i, j); }

    void swap(Image2::AbstractMapper& other) override;
};

/// One plane, several samples.
class Image2::ColorMapper2D : public Image2::AbstractMapper2D
{
public:
    using AbstractMapper2D::encode;

    ColorMapper2D(int size1, int size2, int samples);

    int encode(int i, int j) const override { return (i * size2_ + j) * samples_; }

    int encode(int i, int j, ColorChannel channel) const override
    {
        return encode(i, j) + static_cast<int>(channel);
    }

    void swap(Image2::AbstractMapper& other) override;

private:
    int samples_;
};

/// Several planes, one sample.
class Image2::Mapper3D : public Image2::AbstractMapper3D
{
public:
    using AbstractMapper3D::AbstractMapper3D;
    using AbstractMapper3D::encode;

    int encode(int i, int j, int k) const override { return (k * size1_ + i) * size2_ + j; }

    int encode(int i, int j, int k, ColorChannel) const override { return encode(i, j, k); }

    void swap(Image2::AbstractMapper& other) override;
};

/// Several planes, several samples.
class Image2::ColorMapper3D : public Image2::AbstractMapper3D
{
public:
    using AbstractMapper3D::encode;

    ColorMapper3D(int size1, int size2, int size3, int samples);

    int encode(int i, int j, int k) const override
    {
        return ((k * size1_ + i) * size2_ + j) * samples_;
    }

    int encode(int i, int j, int k, ColorChannel channel) const override
    {
        return encode(i, j, k) + static_cast<int>(channel);
    }

    void swap(Image2::AbstractMapper& other) override;

private:
    int samples_;
};
