#pragma once

#include <tiffio.h>

#include <optional>
#include <string>

/// The text of a TIFF page, in which ImageJ and these writers note what TIFF has no tag for, as
/// lines of a key, "=" and a value.
class TiffDescription
{
public:
    /// The text of the present directory; empty when it has none.
    explicit TiffDescription(TIFF* tif);

    explicit TiffDescription(const std::string& text)
        : text_(text)
    {}

    bool isEmpty() const { return text_.empty(); }

    bool contains(const std::string& part) const { return text_.find(part) != std::string::npos; }

    /// The whole number right behind `key`, "=" included in the key. Nothing when the key is not
    /// there; -1 when no number follows.
    std::optional<int> integerAfter(const std::string& key) const;

    /// The finite number right behind `key`; nothing when there is none.
    std::optional<float> numberAfter(const std::string& key) const;

private:
    std::string text_;
};
