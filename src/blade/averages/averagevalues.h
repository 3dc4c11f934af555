#pragma once

#include "numerics/vector.h"

#include <string>

/// A text file with numbers of a user's own for the averages, one a line: the limits of bins or the
/// targets of sliding averages. Empty lines count for nothing.
///
/// Each of the two raises `FileReadError` for a file that can't be read, and `FileFormatError` with
/// the number of the line for one that holds something else than such numbers.

/// At least two finite numbers, each above the one before.
Vector<float> readBinLimits(const std::string& filename);

/// At least one finite number, in any order.
Vector<float> readAverageTargets(const std::string& filename);
