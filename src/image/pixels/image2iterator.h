#pragma once

#include "image/pixels/image2.h"

#include <vector>

/// Walks the elements of an image in index order, starting at the first. The caller stops when
/// `index()` reaches `numElements()`.
class Image2::Iterator
{
public:
    virtual ~Iterator();

    virtual void next() = 0;

    /// Whether the element lies within `margin` elements of the border.
    virtual bool insideMargin(int margin) const = 0;

    const Image2& image() const { return *image_; }

    int numElements() const { return numElements_; }

    bool atEnd() const { return index_ >= numElements_; }

    /// Linear index, counted without samples.
    int index() const { return index_; }

    int i() const { return i_; }

    int j() const { return j_; }

    int k() const { return k_; }

protected:
    explicit Iterator(const Image2& image);

    const Image2* image_;
    int size1_;
    int size2_;
    int size3_;
    int numElements_;
    std::vector<int> distances1_; ///< along each axis: elements to the nearer end, 1 at the end
    std::vector<int> distances2_;
    std::vector<int> distances3_;
    int index_ = 0;
    int i_ = 0;
    int j_ = 0;
    int k_ = 0;
};

/// The iterator of an image of one plane.
class Image2::MappedIterator2D : public Image2::Iterator
{
public:
    explicit MappedIterator2D(const Image2& image);
    void next() override;
    bool insideMargin(int margin) const override;
};

/// The iterator of an image of several planes.
class Image2::MappedIterator3D : public Image2::Iterator
{
public:
    explicit MappedIterator3D(const Image2& image);
    void next() override;
    bool insideMargin(int margin) const override;
};
