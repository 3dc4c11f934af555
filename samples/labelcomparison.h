#pragma once

#include "samples/leafoutline.h"

#include <iosfwd>
#include <string>

std::string structureName(Structure structure);
std::string className(ToothClass label);

/// Compares landmarks that were found with those that were drawn.
///
/// `labels` is the table "labels.tsv" of samples; `landmarks` that of `crenara landmarks`, of which
/// the sinuses and tips count. Each drawn landmark is compared with the nearest found one of its
/// structure, which has all labels that stand in this place: they agree if a tip or a secondary
/// sinus has its own label alone, and a primary sinus its own among others, since it may bound a
/// tooth of another class. Without `distal` the distal class counts as the primary one. Slices that
/// `landmarks` does not name are left out.
///
/// Tells each disagreement, each drawn landmark with none within `reach` pixels, each found one that
/// is the nearest of no drawn one, and the sums of each slice. Raises `FileReadError` and, for a
/// table without the columns or without a common slice, `FileFormatError`. Returns whether all is
/// well.
bool compareLabels(const std::string& labels,
                   const std::string& landmarks,
                   bool distal,
                   double reach,
                   std::ostream& out);
