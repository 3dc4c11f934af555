#pragma once

#include "samples/leafpicture.h"

#include <string>

/// Writes a picture as an uncompressed TIFF of so many pixels an inch, 0 for no resolution. Raises
/// `FileWriteError`; a file that was there stays whole.
void writeTiff(const Picture& picture, const std::string& filename, double resolution = 300.0);

/// Makes a folder unless it is there. Raises `FileWriteError`.
void makeFolder(const std::string& folder);

/// What leaves a series has.
enum class Series { AllKinds, Growing };

/// The height in pixels of the pictures of samples, unless another one is asked for.
constexpr int sampleHeight = 1300;

/// Draws `count` leaves of the series `seed`, on pictures `height` pixels high, into a folder, which is made if it isn't there: a TIFF
/// for each, and three tables. "junctions.tsv" gives the points where blade and stalk meet;
/// "truth.tsv" gives what was drawn, lengths and area in pixels; "labels.tsv" has a row for each
/// notch and each tip of a tooth, with what it is. Raises `FileWriteError`.
void writeSamples(
    const std::string& folder, int count, long seed, Series series, int height = sampleHeight);
