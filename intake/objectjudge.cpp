#include "intake/objectjudge.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace {

constexpr double degrees = 180.0 / CV_PI;
constexpr double longLine = 0.08;     // of the diagonal of the rectangle around the object
constexpr double sameDirection = 5.0; // degrees
constexpr double greyChroma = 8.0;
constexpr double foreignFrom = 165.0; // degrees of hue in the plane of a and b, by way of 180
constexpr double foreignTo = -35.0;
constexpr double leastLeaf = 0.05;     // area to that of the largest leaf
constexpr double faintContrast = 0.35; // to that of the largest leaf
constexpr double faintAnyway = 14.0;

cv::Vec3d toLab(const cv::Vec3b& pixel)
{
    return {pixel[0] * (100.0 / 255.0), pixel[1] - 128.0, pixel[2] - 128.0};
}

/// Share of the outline in long straight lines whose directions make one cross.
double straightShare(const std::vector<cv::Point>& outline, double diagonal)
{
    const double perimeter = std::max(1.0, cv::arcLength(outline, true));
    std::vector<cv::Point> corners;
    cv::approxPolyDP(outline, corners, std::max(1.5, 0.004 * perimeter), true);

    struct Line
    {
        double angle; // 0 to 90 degrees
        double length;
    };

    std::vector<Line> lines;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const cv::Point along = corners[(i + 1) % corners.size()] - corners[i];
        const double length = std::hypot(along.x, along.y);
        if (length >= longLine * diagonal) {
            lines.push_back(
                {std::fmod(std::atan2(along.y, along.x) * degrees + 360.0, 90.0), length});
        }
    }
    double most = 0.0;
    for (const Line& first : lines) {
        double sum = 0.0;
        for (const Line& line : lines) {
            const double gap = std::fabs(line.angle - first.angle);
            sum += std::min(gap, 90.0 - gap) < sameDirection ? line.length : 0.0;
        }
        most = std::max(most, sum);
    }
    return most / perimeter;
}

void lookAtColours(ObjectLook& look, const PictureObject& object, const cv::Mat& lab)
{
    std::vector<cv::Vec3d> colours;
    cv::Vec3d sum;
    double grey = 0.0;
    double foreign = 0.0;
    for (int y = 0; y < object.box.height; ++y) {
        const uchar* inside = object.mask.ptr(y);
        const auto* pixels = lab.ptr<cv::Vec3b>(object.box.y + y) + object.box.x;
        for (int x = 0; x < object.box.width; ++x) {
            if (inside[x] == 0) {
                continue;
            }
            const cv::Vec3d colour = toLab(pixels[x]);
            colours.push_back(colour);
            sum += colour;
            const double hue = std::atan2(colour[2], colour[1]) * degrees;
            if (std::hypot(colour[1], colour[2]) < greyChroma) {
                grey += 1.0;
            } else if (hue < foreignTo || hue > foreignFrom) {
                foreign += 1.0;
            }
        }
    }
    const double number = std::max(1.0, double(colours.size()));
    look.colour = sum / number;
    look.grey = grey / number;
    look.foreign = foreign / number;
    for (const cv::Vec3d& colour : colours) {
        look.spread += cv::norm(colour - look.colour) / number;
    }
}

/// The object that most deserves to be the leaf: the largest, but rather one that lies free.
std::size_t mainLeaf(const std::vector<PictureObject>& objects,
                     const std::vector<ObjectLook>& looks,
                     const std::vector<std::string>& verdicts)
{
    std::size_t best = objects.size();
    double most = 0.0;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        if (!verdicts[i].empty()) {
            continue;
        }
        const double free = looks[i].sides == 0 ? 1.0 : looks[i].sides == 1 ? 0.5 : 0.2;
        const double coloured = 1.0 - 0.8 * std::max(looks[i].grey, looks[i].foreign);
        const double clear = std::min(1.0, looks[i].contrast / faintAnyway);
        const double merit = objects[i].area * free * coloured * clear;
        if (merit > most) {
            most = merit;
            best = i;
        }
    }
    return best;
}

/// Why an object is no leaf beside the main one; empty if it is.
std::string verdictBeside(const ObjectLook& look, const ObjectLook& main)
{
    const double difference = cv::norm(look.colour - main.colour);
    if (look.size < leastLeaf * main.size) {
        return "small";
    }
    if (look.contrast < faintContrast * main.contrast && look.contrast < faintAnyway) {
        return "shadow";
    }
    if (look.grey > 0.6 && main.grey < 0.3) {
        return "grey";
    }
    if (look.foreign > 0.4 && main.foreign < 0.2) {
        return "colour";
    }
    if (look.roundness > 0.92 && difference > 15.0) {
        return "round";
    }
    if (main.sides == 0 && (look.alongSide || (look.sides > 0 && difference > 25.0))) {
        return "edge";
    }
    return "";
}

cv::Rect widened(const cv::Rect& box, int by)
{
    return {box.x - by, box.y - by, box.width + 2 * by, box.height + 2 * by};
}

} // namespace

ObjectLook ObjectLook::of(const PictureObject& object, const cv::Mat& lab)
{
    ObjectLook look;
    look.contrast = object.contrast;
    look.size = object.area / double(lab.total());
    const cv::Size2f around = cv::minAreaRect(object.outline).size;
    // Outlines run through the middles of pixels.
    const double length = std::max(around.width, around.height) + 1.0;
    const double width = std::min(around.width, around.height) + 1.0;
    const double own = cv::contourArea(object.outline) + cv::arcLength(object.outline, true) / 2.0;
    look.fill = own / (length * width);
    look.elongation = length / width;
    cv::Point2f centre;
    float radius = 0.0F;
    cv::minEnclosingCircle(object.outline, centre, radius);
    look.roundness = own / (CV_PI * (radius + 0.5) * (radius + 0.5));
    look.straight = straightShare(object.outline, std::hypot(length, width));
    const cv::Rect& box = object.box;
    look.sides = int(box.x <= 1) + int(box.y <= 1) + int(box.br().x >= lab.cols - 1) +
                 int(box.br().y >= lab.rows - 1);
    const bool flat = box.width > 3 * box.height;
    const bool high = box.height > 3 * box.width;
    look.alongSide = (flat && (box.y <= 1 || box.br().y >= lab.rows - 1)) ||
                     (high && (box.x <= 1 || box.br().x >= lab.cols - 1));
    lookAtColours(look, object, lab);
    return look;
}

double ObjectLook::artificiality() const
{
    double sum = 0.5 + std::clamp((straight - 0.5) / 0.1, -2.0, 3.0);
    sum += fill > 0.82 ? 1.0 : 0.0;
    sum += std::clamp((spread - 27.0) / 3.0, 0.0, 2.0);
    sum += std::clamp((foreign - 0.1) / 0.1, 0.0, 1.0) * (1.0 - grey);
    sum += sides >= 2 ? 1.0 : 0.0;
    // A blade of grass has two long edges that are all but parallel; its ends are pointed.
    const bool plain = spread < 20.0 && foreign < 0.1;
    sum -= plain && elongation > 5.0 && fill < 0.76 ? 4.0 : 0.0;
    return sum;
}

std::vector<std::string> ObjectJudge::judge(const std::vector<PictureObject>& objects,
                                            const cv::Mat& lab)
{
    std::vector<ObjectLook> looks;
    std::vector<std::string> verdicts;
    for (const PictureObject& object : objects) {
        looks.push_back(ObjectLook::of(object, lab));
        verdicts.push_back(looks.back().artificiality() > 0.0 ? "straight edges" : "");
    }
    const std::size_t main = mainLeaf(objects, looks, verdicts);
    for (std::size_t i = 0; i < objects.size(); ++i) {
        if (verdicts[i].empty() && i != main) {
            verdicts[i] = verdictBeside(looks[i], looks[main]);
        }
    }
    // Marks on a card, and its patches, lie within it or right beside it.
    const int gap = std::max(2, std::max(lab.cols, lab.rows) / 100);
    for (std::size_t i = 0; i < objects.size(); ++i) {
        for (std::size_t j = 0; j < objects.size() && verdicts[i].empty(); ++j) {
            const bool card = verdicts[j] == "straight edges" && looks[j].size > looks[i].size;
            const cv::Rect common = widened(objects[j].box, gap) & objects[i].box;
            if (i != main && card && common.area() > 0.8 * objects[i].box.area()) {
                verdicts[i] = "part of a card";
            }
        }
    }
    return verdicts;
}
