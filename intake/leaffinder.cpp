#include "intake/leaffinder.h"

#include "intake/contrastmap.h"
#include "intake/objectjudge.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <numeric>

namespace {

constexpr int reducedSide = 1024;
/// Paper, a tray or a scanner's lid that fills this share of the picture may be the background.
constexpr double leastSheet = 0.2;

using Shadows = ContrastMap::Shadows;

/// A photograph in small, and the part of it that is looked at.
struct Reduced
{
    explicit Reduced(const Photograph& photograph)
        : factor(std::max(1,
                          (std::max(photograph.width(), photograph.height()) + reducedSide - 1) /
                              reducedSide))
    {
        // Whole boxes of pixels, so that no rounding depends on the machine.
        const cv::Size size(std::max(1, photograph.width() / factor),
                            std::max(1, photograph.height() / factor));
        const cv::Rect whole(0, 0, std::min(size.width * factor, photograph.width()),
                             std::min(size.height * factor, photograph.height()));
        cv::resize(photograph.pixels()(whole), rgb, size, 0.0, 0.0, cv::INTER_AREA);
        cv::cvtColor(rgb, lab, cv::COLOR_RGB2Lab);
    }

    int factor;
    cv::Mat rgb;
    cv::Mat lab;
};

struct Trial
{
    BackgroundSurface background;
    cv::Rect part;
    cv::Mat lines; ///< of the part
    std::vector<PictureObject> objects;
    std::vector<std::string> verdicts;
    bool shadowsCount = false;

    bool hasLeaf() const
    {
        return std::find(verdicts.begin(), verdicts.end(), "") != verdicts.end();
    }
};

Trial tryPart(const Reduced& picture, const cv::Rect& part, Shadows shadows)
{
    Trial trial;
    trial.shadowsCount = shadows == Shadows::Counted;
    trial.part = part;
    const cv::Mat lab = picture.lab(part);
    trial.background = BackgroundSurface(lab, part, picture.lab.size());
    cv::Mat contrast = ContrastMap::make(picture.rgb(part), trial.background, part.tl(),
                                         picture.rgb.size(), shadows);
    if (shadows == Shadows::Ignored) {
        const cv::Mat counted = ContrastMap::make(picture.rgb(part), trial.background, part.tl(),
                                                  picture.rgb.size(), Shadows::Counted);
        trial.lines = ContrastMap::thinLines(counted, trial.background.noise());
        counted.copyTo(contrast, trial.lines);
    }
    trial.objects = ObjectRegions::find(contrast, trial.background.noise());
    trial.verdicts = ObjectJudge::judge(trial.objects, lab);
    ObjectRegions::joinStalks(trial.objects, trial.verdicts);
    for (PictureObject& object : trial.objects) {
        object.box += part.tl();
        for (cv::Point& point : object.outline) {
            point += part.tl();
        }
    }
    return trial;
}

/// The inside of the largest rectangular thing, if it is large enough to be what the leaves lie on.
cv::Rect sheetOf(const Trial& trial, const cv::Size& size)
{
    for (std::size_t i = 0; i < trial.objects.size(); ++i) {
        const PictureObject& object = trial.objects[i];
        const double share = object.area / double(size.area());
        const double fill = object.area / double(object.box.area());
        if (trial.verdicts[i] == "straight edges" && share > leastSheet && fill > 0.75) {
            const int border = std::max(3, std::min(object.box.width, object.box.height) / 40);
            return {object.box.x + border, object.box.y + border, object.box.width - 2 * border,
                    object.box.height - 2 * border};
        }
    }
    return {};
}

Trial bestTrial(const Photograph& photograph, const Reduced& picture)
{
    const cv::Rect whole(cv::Point(), picture.rgb.size());
    // Without colours a shadow can't be told from a leaf.
    Trial trial =
        tryPart(picture, whole, photograph.isGrey() ? Shadows::Counted : Shadows::Ignored);
    if (trial.hasLeaf()) {
        return trial;
    }
    if (!trial.shadowsCount) {
        Trial other = tryPart(picture, whole, Shadows::Counted);
        if (other.hasLeaf()) {
            return other;
        }
    }
    const cv::Rect sheet = sheetOf(trial, picture.rgb.size());
    if (sheet.area() > 0) {
        Trial inner =
            tryPart(picture, sheet, photograph.isGrey() ? Shadows::Counted : Shadows::Ignored);
        if (inner.hasLeaf()) {
            return inner;
        }
    }
    return trial;
}

FoundObject toPhotograph(const PictureObject& object,
                         const std::string& verdict,
                         int factor,
                         const cv::Size& reduced,
                         const cv::Size& size)
{
    FoundObject found;
    found.isLeaf = verdict.empty();
    found.verdict = verdict;
    found.reducedBox = object.box;
    found.mask = object.mask;
    found.contrast = object.contrast;
    found.border = object.border;
    found.area = object.area * factor * factor;
    found.box = cv::Rect(object.box.x * factor, object.box.y * factor, object.box.width * factor,
                         object.box.height * factor);
    // The last rows and columns may be no whole pixel of the reduced picture.
    if (object.box.br().x == reduced.width) {
        found.box.width = size.width - found.box.x;
    }
    if (object.box.br().y == reduced.height) {
        found.box.height = size.height - found.box.y;
    }
    found.touchesEdge = object.box.x <= 0 || object.box.y <= 0 ||
                        object.box.br().x >= reduced.width || object.box.br().y >= reduced.height;
    for (const cv::Point& point : object.outline) {
        found.outline.push_back(point * factor + cv::Point(factor / 2, factor / 2));
    }
    return found;
}

} // namespace

cv::Mat FoundLeaves::contrastOf(const cv::Mat& rgb, cv::Point corner) const
{
    cv::Mat map = ContrastMap::make(rgb, background, corner, size,
                                    shadowsCount ? Shadows::Counted : Shadows::Ignored);
    if (thinLines.empty()) {
        return map;
    }
    const cv::Rect whole(cv::Point(), cv::Size(thinLines.cols * factor, thinLines.rows * factor));
    const cv::Rect inside = cv::Rect(corner, rgb.size()) & whole;
    if (inside.empty()) {
        return map;
    }
    const cv::Rect small(inside.x / factor, inside.y / factor,
                         (inside.br().x - 1) / factor - inside.x / factor + 1,
                         (inside.br().y - 1) / factor - inside.y / factor + 1);
    if (cv::countNonZero(thinLines(small)) == 0) {
        return map;
    }
    cv::Mat lines;
    cv::resize(thinLines(small), lines, small.size() * factor, 0.0, 0.0, cv::INTER_NEAREST);
    cv::dilate(lines, lines, cv::Mat::ones(3, 3, CV_8U));
    const cv::Rect taken(inside.tl() - small.tl() * factor, inside.size());
    const cv::Rect own(inside.tl() - corner, inside.size());
    const cv::Mat counted =
        ContrastMap::make(rgb(own), background, inside.tl(), size, Shadows::Counted);
    counted.copyTo(map(own), lines(taken));
    return map;
}

void FoundLeaves::order()
{
    leaves.clear();
    for (std::size_t i = 0; i < objects.size(); ++i) {
        if (objects[i].isLeaf) {
            leaves.push_back(static_cast<int>(i));
        }
    }
    const auto box = [this](int leaf) { return objects[std::size_t(leaf)].box; };
    const auto middle = [&](int leaf) { return box(leaf).y + box(leaf).height / 2; };
    std::sort(leaves.begin(), leaves.end(), [&](int one, int other) {
        return std::make_pair(middle(one), box(one).x) <
               std::make_pair(middle(other), box(other).x);
    });
    // A row ends at the first leaf whose middle lies below all of the row's first one.
    for (auto first = leaves.begin(); first != leaves.end();) {
        const int bottom = box(*first).br().y;
        auto last = first;
        while (last != leaves.end() && middle(*last) < bottom) {
            ++last;
        }
        std::sort(first, last, [&](int one, int other) { return box(one).x < box(other).x; });
        first = last;
    }
}

void FoundLeaves::setLeaf(int object, bool isLeaf)
{
    FoundObject& changed = objects.at(std::size_t(object));
    changed.isLeaf = isLeaf;
    changed.verdict = isLeaf ? "" : "by hand";
    order();
}

int FoundLeaves::addLeaf(const Photograph& photograph, const cv::Rect& part)
{
    const Reduced picture(photograph);
    const cv::Rect whole(cv::Point(), picture.rgb.size());
    cv::Rect inside(part.x / factor, part.y / factor, std::max(1, part.width / factor),
                    std::max(1, part.height / factor));
    inside &= whole;
    if (inside.empty()) {
        inside = cv::Rect(0, 0, 1, 1);
    }
    const cv::Mat contrast =
        ContrastMap::make(picture.rgb(inside), background, inside.tl(), whole.size(),
                          shadowsCount ? Shadows::Counted : Shadows::Ignored);
    std::vector<PictureObject> found = ObjectRegions::find(contrast, background.noise());
    PictureObject leaf;
    if (found.empty()) {
        leaf.box = inside;
        leaf.mask = cv::Mat(inside.size(), CV_8UC1, cv::Scalar(255));
        leaf.outline = {inside.tl(),
                        {inside.br().x - 1, inside.y},
                        inside.br() - cv::Point(1, 1),
                        {inside.x, inside.br().y - 1}};
        leaf.area = inside.area();
    } else {
        leaf = found.front();
        leaf.box += inside.tl();
        for (cv::Point& point : leaf.outline) {
            point += inside.tl();
        }
    }
    objects.push_back(toPhotograph(leaf, "", factor, whole.size(), size));
    order();
    return static_cast<int>(objects.size()) - 1;
}

FoundLeaves LeafFinder::find(const Photograph& photograph)
{
    FoundLeaves result;
    if (photograph.isEmpty()) {
        return result;
    }
    const Reduced picture(photograph);
    const Trial trial = bestTrial(photograph, picture);
    result.size = photograph.pixels().size();
    result.factor = picture.factor;
    result.sheet = cv::Rect(cv::Point(), result.size);
    if (trial.part.size() != picture.rgb.size()) {
        result.sheet = cv::Rect(trial.part.tl() * result.factor, trial.part.size() * result.factor);
    }
    if (!trial.lines.empty()) {
        result.thinLines = cv::Mat::zeros(picture.rgb.size(), CV_8UC1);
        trial.lines.copyTo(result.thinLines(trial.part));
    }
    result.background = trial.background;
    result.shadowsCount = trial.shadowsCount;
    for (std::size_t i = 0; i < trial.objects.size(); ++i) {
        result.objects.push_back(toPhotograph(trial.objects[i], trial.verdicts[i], picture.factor,
                                              picture.rgb.size(), result.size));
    }
    result.order();
    return result;
}
