#pragma once

#include <iosfwd>
#include <string>

/// What the file of a photograph says beside its pixels: its resolution, and the camera that took
/// it. Reads JPEG, PNG and TIFF files, told by their content; anything else, and a file that is
/// damaged there, says nothing.
class PhotographRecord
{
public:
    explicit PhotographRecord(const std::string& photograph);

    /// Dots per inch across, 0 if the file states none.
    double dotsPerInch() const { return dotsPerInch_; }

    /// The maker of the camera, as the EXIF record names it; empty if it names none.
    const std::string& make() const { return make_; }

    /// Why the stated resolution is no scale, a clause to follow the file's name; empty if it may be
    /// one, or none is stated. A JPEG or PNG of 72 or 96 dots per inch was written by a program that
    /// knew of no resolution, and a camera can't know how far away its leaf was.
    std::string doubt() const;

private:
    void readJpeg(std::istream& file);
    void readPng(std::istream& file);
    void readTiff(std::istream& file);

    double dotsPerInch_ = 0.0;
    bool isTiff_ = false;
    std::string make_;
};
