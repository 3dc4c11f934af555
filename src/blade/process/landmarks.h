#pragma once

#include <string>

class ModelItem;
class StackSlice;

/// The names of the landmark models. All that reads or writes landmarks finds them by these.
namespace Landmarks {

inline constexpr const char* contour = "Contour";
inline constexpr const char* petiole = "Petiole";
inline constexpr const char* apex = "Apex";
inline constexpr const char* primarySinus = "Primary Sinus";
inline constexpr const char* primaryPeak = "Primary Peak";
inline constexpr const char* secondarySinus = "Secondary Sinus";
inline constexpr const char* secondaryPeak = "Secondary Peak";
inline constexpr const char* primaryDistalSinus = "Primary Distal Sinus";
inline constexpr const char* primaryDistalPeak = "Primary Distal Peak";

} // namespace Landmarks

/// The item that holds a landmark of the slice: of several of the model the last one; null if there
/// is none.
ModelItem* landmarkOf(StackSlice& slice, const std::string& model);
const ModelItem* landmarkOf(const StackSlice& slice, const std::string& model);

/// The contour of the slice; null without one, or if it has no vertices.
ModelItem* contourOf(StackSlice& slice);
const ModelItem* contourOf(const StackSlice& slice);
