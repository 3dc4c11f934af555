#include "stack/stackio.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr float currentVersion = 1.05f;

using Texts = std::vector<std::string>;

std::map<StackIO::Keyword, Texts> makeKeywords()
{
    using K = StackIO::Keyword;
    return {
        {K::Annotation, {"Annotation"}},
        {K::BeginCap, {"BeginCap"}},
        {K::Brilliancy, {"BRILLIANCY"}},
        {K::CalibrationCurve, {"CALIBRATIONCURVE"}},
        {K::Color, {"COLOR", "M2DCOLOR"}},
        {K::EcoRendering, {"ECORENDERING"}},
        {K::EndCap, {"EndCap"}},
        {K::FileFormatVersion, {"FileFormatVersion"}},
        {K::FilledIn, {"FILLEDIN", "M2DFILLEDIN"}},
        {K::Fit, {"FIT"}},
        {K::Hidden3D, {"HIDDEN3D", "M2DHIDDEN3D"}},
        {K::Image, {"IMAGE"}},
        {K::ImagesPath, {"ImagesPath", "IMAGESPATH", "IMAGESDIR"}},
        {K::InvertZAxis, {"InvertZAxis"}},
        {K::AbsoluteImagesPathPolicy, {"AbsoluteImagesPathPolicy"}},
        {K::LastSegmentedSlice, {"LASTSEGMENTEDSLICE"}},
        {K::LastRegisteredSlice, {"LASTREGISTEREDSLICE"}},
        {K::LengthUnitScale, {"LengthUnitScale"}},
        {K::Model, {"MODEL", "M2DCLASS"}},
        {K::ModelItem, {"MODELITEM", "M2DITEM"}},
        {K::ModelItemData, {"MODELITEMDATA", "M2DDATA"}},
        {K::MeshNormalSmoothing, {"MeshNormalSmoothing"}},
        {K::PixAspect, {"PIXASPECT", "ASPRATIO", "ASPECT"}},
        {K::PixHeight, {"PIXHEIGHT"}},
        {K::PixWidth, {"PIXWIDTH"}},
        {K::PointSize, {"POINTSIZE", "M2DRADIUS"}},
        {K::Pose, {"POSE"}},
        {K::PoseRotation, {"POSEROTATION"}},
        {K::PoseShift, {"POSESHIFT"}},
        {K::PoseZoom, {"POSEZOOM"}},
        {K::AmbientLight, {"AMBIENTLIGHT"}},
        {K::DiffuseLight, {"DIFFUSELIGHT"}},
        {K::SpecularLight, {"SPECULARLIGHT"}},
        {K::Position, {"POSITION", "DEPTH"}},
        {K::Primitive, {"PRIMITIVE", "M2DPRIMITIVE"}},
        {K::RelPosition, {"RELPOSITION", "RELDEPTH"}},
        {K::RenderingMode, {"RENDERINGMODE"}},
        {K::Resampling, {"RESAMPLING"}},
        {K::Rotate, {"ROTATE"}},
        {K::Sample, {"SAMPLE"}},
        {K::SampleCoords, {"SAMPLECOORDS"}},
        {K::SampleValue, {"SAMPLEVALUE"}},
        {K::Shift, {"SHIFT"}},
        {K::Slice, {"SLICE"}},
        {K::SliceSize1, {"SliceSize1"}},
        {K::SliceSize2, {"SliceSize2"}},
        {K::Stack, {"STACK"}},
        {K::StackSlice, {"StackSlice"}},
        {K::StandardImage, {"STANDARDIMAGE"}},
        {K::Thickness, {"THICKNESS", "M2DTHICKNESS"}},
        {K::Transparency, {"TRANSPARENCY"}},
        {K::TriangulationTag, {"TriangulationTag"}},
        {K::MeshVertexSmoothing, {"MeshVertexSmoothing"}},
        {K::VertexSymbol, {"VERTEXSYMBOL"}},
    };
}

using Escape = std::pair<const char*, const char*>;

constexpr std::array<Escape, 3> escapes = {{{";", "__SC__"}, {"\n", "__NL__"}, {"\"", "__DQ__"}}};

} // namespace

int StackIO::numInstances_ = 0;

StackIO::Keywords& StackIO::keywords()
{
    static Keywords table;
    return table;
}

StackIO::StackIO()
    : fileFormatVersion(currentVersion)
{
    if (numInstances_ == 0) {
        keywords() = makeKeywords();
    }
    ++numInstances_;
}

StackIO::StackIO(const StackIO& other)
    : ProgressSubject(other)
    , log(other.log)
    , numFatalErrors(other.numFatalErrors)
    , fileFormatVersion(other.fileFormatVersion)
{
    ++numInstances_;
}

StackIO::~StackIO()
{
    --numInstances_;
    if (numInstances_ == 0) {
        keywords().clear();
    }
}

bool StackIO::ensureFileFormatVersion(float version) const
{
    constexpr double tolerance = 0.00001;
    return static_cast<double>(fileFormatVersion) + tolerance >= static_cast<double>(version);
}

StackIO::Keyword StackIO::getKeyword(const std::string& text) const
{
    for (const auto& [keyword, texts] : keywords()) {
        if (std::find(texts.begin(), texts.end(), text) != texts.end()) {
            return keyword;
        }
    }
    return Keyword::Unknown;
}

std::string StackIO::getString(Keyword keyword) const
{
    const auto found = keywords().find(keyword);
    return found == keywords().end() ? std::string() : found->second.front();
}

std::string StackIO::exportString(const std::string& text) const
{
    std::string exported = text;
    for (const auto& [plain, escaped] : escapes) {
        replace(exported, plain, escaped);
    }
    return exported;
}

std::string StackIO::importString(const std::string& text) const
{
    std::string imported = text;
    for (const auto& [plain, escaped] : escapes) {
        replace(imported, escaped, plain);
    }
    return imported;
}

void StackIO::replace(std::string& text, const std::string& from, const std::string& to)
{
    if (from.empty()) {
        return;
    }
    std::string replaced;
    std::size_t begin = 0;
    for (std::size_t found; (found = text.find(from, begin)) != std::string::npos;) {
        replaced.append(text, begin, found - begin).append(to);
        begin = found + from.size();
    }
    text = replaced.append(text, begin, std::string::npos);
}
