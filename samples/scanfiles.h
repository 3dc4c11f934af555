#pragma once

#include "samples/scanplan.h"

#include <string>

/// Draws `count` scans of the series `seed` into a folder, which is made if it isn't there, as
/// scan-01.tif and so on, and each of their leaves alone on paper, with the same name as on the
/// scan, into its folder "alone", with the tables of single leaves. Beside the scans stand the same
/// tables with positions on the scan, in pixels: "scans.tsv" (size, pixel size in millimetres,
/// ruler, marker), "leaves.tsv" (the leaves in reading order, with the box around each),
/// "objects.tsv" (corners of what is no leaf), "junctions.tsv", "truth.tsv" and "labels.tsv".
/// Raises `FileWriteError`.
void writeScans(const std::string& folder, int count, long seed, const ScanOptions& options);
