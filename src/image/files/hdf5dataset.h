#pragma once

#include <string>

/// A dataset of an HDF5 file that can be read: two or three dimensions of numbers.
struct HDF5DataSet
{
    std::string name; ///< of its link in the root group
    int rank = 0;
    bool isByte = false; ///< the elements are unsigned with 8 bits
};
