#pragma once

#include "samples/leafpicture.h"

#include <string>

/// Writes a picture as an uncompressed TIFF of 300 pixels an inch. Raises `FileWriteError`; a file
/// that was there stays whole.
void writeTiff(const Picture& picture, const std::string& filename);

/// Draws `count` leaves of the series `seed` into a folder, which is made if it isn't there: a TIFF
/// for each, and two tables. "junctions.tsv" gives the points where blade and stalk meet;
/// "truth.tsv" gives what was drawn, lengths and area in pixels. Raises `FileWriteError`.
void writeSamples(const std::string& folder, int count, long seed);
