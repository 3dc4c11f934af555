#pragma once

#include <string>

/// The TIFF file that is made of a photograph, or of a part of one, beside a stack. It states the
/// checksum of the photograph, by which it is known: no file of another one is ever taken for it, and
/// none is written over. Where the name is taken, the next one with a number is: "leaf.jpg.tif",
/// "leaf.jpg-2.tif".
///
///     for (Conversion conversion(photograph, folder);; conversion.next()) {
///         if (!conversion.isMade()) { ...write `path()` with `origin()`; return }
///         if (its pixels are those that would be written) { return }
///     }
class Conversion
{
public:
    /// `part` tells parts of one photograph from each other and comes into the name behind that of
    /// the photograph; empty for the whole. Raises `FileReadError` if the photograph can't be read.
    Conversion(const std::string& photograph,
               const std::string& folder,
               const std::string& part = "");

    const std::string& path() const { return path_; }

    /// For `ImageWriter::setOrigin`.
    const std::string& origin() const { return origin_; }

    /// The file is there, and was made of these bytes. Its pixels may have been changed since.
    bool isMade() const { return made_; }

    /// Passes over a file that was changed.
    void next();

    /// Why the file has a number, a sentence; empty where it has none.
    std::string note() const;

private:
    void findPlace();

    std::string photograph_;
    std::string stem_;
    std::string origin_;
    std::string path_;
    int number_ = 1;
    bool made_ = false;
};
