#include "cli/stagenotes.h"

#include "blade/process/landmarks.h"
#include "cli/vertexcode.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace {

const std::string marker = "crenara-stages";
const std::array<std::string, 3> stageWords = {"sinus", "tips", "hierarchy"};
const std::array<std::string, 3> kindWords = {"contour", "junctions", "sinuses"};

/// The models of a kind; what a stage finds stands in the first of them.
const std::vector<std::string>& modelsOf(int kind)
{
    static const std::array<std::vector<std::string>, 3> models = {{
        {Landmarks::contour},
        {Landmarks::petiole},
        {Landmarks::primarySinus, Landmarks::primaryDistalSinus, Landmarks::secondarySinus},
    }};
    return models[static_cast<std::size_t>(kind)];
}

/// Splits an annotation into the user's own text and the line of the notes.
std::pair<std::string, std::string> parted(const std::string& annotation)
{
    const std::size_t line = annotation.rfind('\n');
    const std::size_t begin = line == std::string::npos ? 0 : line + 1;
    if (annotation.compare(begin, marker.size(), marker) != 0) {
        return {annotation, ""};
    }
    return {annotation.substr(0, begin == 0 ? 0 : begin - 1), annotation.substr(begin)};
}

template <std::size_t N>
int placeOf(const std::array<std::string, N>& words, const std::string& word)
{
    const auto found = std::find(words.begin(), words.end(), word);
    return found == words.end() ? -1 : static_cast<int>(found - words.begin());
}

int nearestVertex(const Vertices<int>& vertices, const Vector<int>& point)
{
    int nearest = 0;
    long long least = -1;
    for (int i = 0; i < vertices.getSize(); ++i) {
        const long long dx = vertices[i][0] - point[0];
        const long long dy = vertices[i][1] - point[1];
        if (least < 0 || dx * dx + dy * dy < least) {
            least = dx * dx + dy * dy;
            nearest = i;
        }
    }
    return nearest;
}

} // namespace

StageNotes::StageNotes(LMXStack& stack, Stage stage, bool active)
    : stack_(stack)
    , stage_(stage)
{
    if (!active) {
        clear(stack);
        return;
    }
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        StackSlice& slice = stack.getSlice(i);
        Entries notes = read(slice);
        while (!notes.empty() && notes.back().stage >= stage) {
            bringBack(slice, notes.back());
            notes.pop_back();
        }
        notes_.push_back(std::move(notes));
        before_.emplace_back();
        for (const Kind kind : kindsOf(stage)) {
            if (const auto points = found(slice, kind)) {
                before_.back().push_back({stage, kind, checksum(slice, kind), *points});
            }
        }
    }
}

void StageNotes::finish()
{
    for (std::size_t i = 0; i < notes_.size(); ++i) {
        StackSlice& slice = stack_.getSlice(static_cast<int>(i));
        Entries& notes = notes_[i];
        for (Entry& entry : before_[i]) {
            const auto noted = std::find_if(notes.begin(), notes.end(), [&](const Entry& other) {
                return other.kind == entry.kind && other.left == entry.left;
            });
            if (stage_ == Stage::Hierarchy && entry.kind == Kind::Contour && noted != notes.end()) {
                keepContour(slice, entry.found);
                noted->left = checksum(slice, entry.kind);
                continue;
            }
            const std::string left = checksum(slice, entry.kind);
            if (left != entry.left) {
                entry.left = left;
                notes.push_back(entry);
            }
        }
        write(slice, notes);
    }
}

void StageNotes::clear(LMXStack& stack)
{
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        write(stack.getSlice(i), {});
    }
}

std::vector<StageNotes::Kind> StageNotes::kindsOf(Stage stage)
{
    switch (stage) {
    case Stage::Sinus:
        return {Kind::Contour, Kind::Junctions};
    case Stage::Tips:
        return {Kind::Junctions, Kind::Sinuses};
    default:
        return {Kind::Contour, Kind::Junctions, Kind::Sinuses};
    }
}

std::string StageNotes::checksum(StackSlice& slice, Kind kind)
{
    Vertices<int> all(2, 0, 0, 64);
    for (const std::string& model : modelsOf(static_cast<int>(kind))) {
        if (const ModelItem* item = landmarkOf(slice, model)) {
            const Vertices<int>& vertices = item->getVertices();
            for (int i = 0; i < vertices.getSize(); ++i) {
                all.append(vertices[i]);
            }
        }
    }
    return VertexCode::checksum(all);
}

/// Nothing where the landmark is missing, or some of it has another label already.
std::optional<Vertices<int>> StageNotes::found(StackSlice& slice, Kind kind)
{
    const std::vector<std::string>& models = modelsOf(static_cast<int>(kind));
    const ModelItem* item = landmarkOf(slice, models.front());
    const bool labelled =
        std::any_of(models.begin() + 1, models.end(),
                    [&](const std::string& model) { return landmarkOf(slice, model) != nullptr; });
    return item && item->getSize() > 0 && !labelled
               ? std::optional<Vertices<int>>(item->getVertices())
               : std::nullopt;
}

void StageNotes::bringBack(StackSlice& slice, const Entry& entry)
{
    const std::vector<std::string>& models = modelsOf(static_cast<int>(entry.kind));
    ModelItem* item = landmarkOf(slice, models.front());
    if (!item || checksum(slice, entry.kind) != entry.left) {
        return;
    }
    item->setVertices(entry.found);
    for (std::size_t k = 1; k < models.size(); ++k) {
        delete landmarkOf(slice, models[k]);
    }
}

/// Gives the slice back the contour as it was stored. It begins elsewhere only where the stage found
/// its beginning elsewhere: a junction was moved by hand.
void StageNotes::keepContour(StackSlice& slice, const Vertices<int>& contour)
{
    constexpr int rounding = 2;
    ModelItem* item = contourOf(slice);
    if (!item) {
        return;
    }
    Vertices<int> kept = contour;
    kept.detach();
    const int begin = nearestVertex(kept, item->getVertices()[0]);
    if (std::min(begin, kept.getSize() - begin) > rounding) {
        kept.setOrigin(begin);
    }
    item->setVertices(kept);
}

StageNotes::Entries StageNotes::read(const StackSlice& slice)
{
    Entries entries;
    std::istringstream words(parted(slice.getAnnotation()).second);
    std::string stage;
    std::string kind;
    std::string left;
    std::string code;
    words >> stage; // the marker
    while (words >> stage >> kind >> left >> code) {
        const int stagePlace = placeOf(stageWords, stage);
        const int kindPlace = placeOf(kindWords, kind);
        const auto vertices = VertexCode::decode(code);
        if (stagePlace < 0 || kindPlace < 0 || !vertices) {
            return {};
        }
        entries.push_back({Stage(stagePlace), Kind(kindPlace), left, *vertices});
    }
    return entries;
}

void StageNotes::write(StackSlice& slice, const Entries& entries)
{
    const std::string own = parted(slice.getAnnotation()).first;
    std::string line;
    for (const Entry& entry : entries) {
        line += " " + stageWords[static_cast<std::size_t>(entry.stage)] + " " +
                kindWords[static_cast<std::size_t>(entry.kind)] + " " + entry.left + " " +
                VertexCode::encode(entry.found);
    }
    slice.setAnnotation(line.empty() ? own : own + (own.empty() ? "" : "\n") + marker + line);
}
