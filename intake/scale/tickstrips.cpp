#include "intake/scale/tickstrips.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace {

constexpr int blockSide = 8;
constexpr int angleCount = 180;
/// The squares of a colour card alone give dozens.
constexpr std::size_t mostStrips = 80;
constexpr int mostLines = 200;
constexpr int leastBlocks = 8;
/// Blocks without lines that a strip may bridge.
constexpr double mostGap = 7.0;

/// A block in which grey values change along one direction.
struct LinedBlock
{
    cv::Point2d at;     ///< in blocks
    double angle = 0.0; ///< of the change, in degrees, 0 to 180
};

/// Sums of the products of the gradient's parts in each block.
void sumGradients(const cv::Mat& grey, cv::Mat& xx, cv::Mat& yy, cv::Mat& xy)
{
    const cv::Size blocks(grey.cols / blockSide, grey.rows / blockSide);
    for (cv::Mat* sum : {&xx, &yy, &xy}) {
        *sum = cv::Mat::zeros(blocks, CV_32F);
    }
    cv::Mat gx;
    cv::Mat gy;
    for (int row = 0; row < blocks.height; ++row) {
        const cv::Mat band = grey.rowRange(row * blockSide, (row + 1) * blockSide);
        cv::Sobel(band, gx, CV_16S, 1, 0);
        cv::Sobel(band, gy, CV_16S, 0, 1);
        for (int y = 0; y < blockSide; ++y) {
            const short* a = gx.ptr<short>(y);
            const short* b = gy.ptr<short>(y);
            for (int column = 0; column < blocks.width; ++column) {
                int sumXX = 0;
                int sumYY = 0;
                int sumXY = 0;
                for (int x = column * blockSide; x < (column + 1) * blockSide; ++x) {
                    sumXX += a[x] * a[x];
                    sumYY += b[x] * b[x];
                    sumXY += a[x] * b[x];
                }
                xx.at<float>(row, column) += static_cast<float>(sumXX);
                yy.at<float>(row, column) += static_cast<float>(sumYY);
                xy.at<float>(row, column) += static_cast<float>(sumXY);
            }
        }
    }
}

std::vector<LinedBlock> linedBlocks(const cv::Mat& grey)
{
    cv::Mat xx;
    cv::Mat yy;
    cv::Mat xy;
    sumGradients(grey, xx, yy, xy);
    for (cv::Mat* sum : {&xx, &yy, &xy}) {
        cv::blur(*sum, *sum, cv::Size(3, 3));
    }
    // The derivative is 8 times the change a pixel; what changes by less than 4 levels a pixel in
    // the mean is paper and noise.
    constexpr float least = 2.0F * 64.0F * blockSide * blockSide * 16.0F / 2.0F;
    std::vector<LinedBlock> blocks;
    for (int row = 0; row < xx.rows; ++row) {
        for (int column = 0; column < xx.cols; ++column) {
            const float sum = xx.at<float>(row, column) + yy.at<float>(row, column);
            const float difference = xx.at<float>(row, column) - yy.at<float>(row, column);
            const float mixed = 2.0F * xy.at<float>(row, column);
            if (sum < least || std::hypot(difference, mixed) < 0.55F * sum) {
                continue;
            }
            double angle = 0.5 * std::atan2(mixed, difference) * 180.0 / CV_PI;
            angle += angle < 0.0 ? 180.0 : 0.0;
            blocks.push_back({{column + 0.5, row + 0.5}, angle});
        }
    }
    return blocks;
}

cv::Point2d direction(double degrees)
{
    return {std::cos(degrees * CV_PI / 180.0), std::sin(degrees * CV_PI / 180.0)};
}

double along(const cv::Point2d& at, const cv::Point2d& axis)
{
    return at.x * axis.x + at.y * axis.y;
}

double across(const cv::Point2d& at, const cv::Point2d& axis)
{
    return at.y * axis.x - at.x * axis.y;
}

double angleBetween(double a, double b)
{
    const double turn = std::abs(a - b);
    return std::min(turn, 180.0 - turn);
}

/// Votes of blocks for lines, by direction and distance from the origin.
class LineVotes
{
public:
    LineVotes(int columns, int rows)
        : offset_(static_cast<int>(std::hypot(columns, rows)) + 2)
        , votes_(cv::Mat::zeros(angleCount, 2 * offset_ + 1, CV_32S))
    {}

    void add(const LinedBlock& block, int weight)
    {
        for (int turn = -2; turn <= 2; ++turn) {
            const int angle = (cvRound(block.angle) + turn + angleCount) % angleCount;
            votes_.at<int>(angle, cvRound(across(block.at, direction(angle))) + offset_) += weight;
        }
    }

    /// The line with most votes.
    int best(double& angle, double& distance) const
    {
        double most = 0.0;
        cv::Point at;
        cv::minMaxLoc(votes_, nullptr, &most, nullptr, &at);
        angle = at.y;
        distance = at.x - offset_;
        return static_cast<int>(most);
    }

private:
    int offset_;
    cv::Mat votes_;
};

/// The middle line of some blocks, in pixels.
TickStrip stripThrough(const std::vector<LinedBlock>& blocks, double angle)
{
    std::vector<cv::Point2f> points;
    for (const LinedBlock& block : blocks) {
        points.push_back(block.at);
    }
    cv::Vec4f line;
    cv::fitLine(points, line, cv::DIST_HUBER, 0.0, 0.01, 0.01);
    cv::Point2d axis(line[0], line[1]);
    const cv::Point2d expected = direction(angle);
    axis = along(axis, expected) < 0.0 ? -axis : axis;
    // A few blocks side by side tell the direction less well than the lines in them.
    if (along(axis, expected) < std::cos(3.0 * CV_PI / 180.0)) {
        axis = expected;
    }
    const cv::Point2d middle(line[2], line[3]);
    double least = 1e9;
    double most = -1e9;
    for (const LinedBlock& block : blocks) {
        const double at = along(block.at - middle, axis);
        least = std::min(least, at);
        most = std::max(most, at);
    }
    const double side = blockSide;
    return {(middle + axis * (least - 1.0)) * side, (middle + axis * (most + 1.0)) * side};
}

} // namespace

std::vector<TickStrip> findTickStrips(const cv::Mat& grey)
{
    std::vector<TickStrip> strips;
    if (grey.cols < 4 * blockSide || grey.rows < 4 * blockSide) {
        return strips;
    }
    std::vector<LinedBlock> blocks = linedBlocks(grey);
    LineVotes votes(grey.cols / blockSide, grey.rows / blockSide);
    for (const LinedBlock& block : blocks) {
        votes.add(block, 1);
    }
    for (int round = 0; round < mostLines && strips.size() < mostStrips; ++round) {
        double angle = 0.0;
        double distance = 0.0;
        if (votes.best(angle, distance) < leastBlocks) {
            break;
        }
        const cv::Point2d axis = direction(angle);
        const auto isMember = [&](const LinedBlock& block) {
            return angleBetween(block.angle, angle) <= 6.0 &&
                   std::abs(across(block.at, axis) - distance) <= 1.6;
        };
        const auto end = std::stable_partition(blocks.begin(), blocks.end(),
                                               [&](const LinedBlock& b) { return !isMember(b); });
        std::vector<LinedBlock> members(end, blocks.end());
        for (const LinedBlock& block : members) {
            votes.add(block, -1);
        }
        blocks.erase(end, blocks.end());
        if (members.empty()) {
            break;
        }
        std::sort(members.begin(), members.end(), [&](const LinedBlock& a, const LinedBlock& b) {
            return along(a.at, axis) < along(b.at, axis);
        });
        std::vector<LinedBlock> run;
        for (std::size_t k = 0; k <= members.size(); ++k) {
            const bool ends =
                k == members.size() ||
                (!run.empty() && along(members[k].at - run.back().at, axis) > mostGap);
            if (ends) {
                const double reach =
                    run.empty() ? 0.0 : along(run.back().at - run.front().at, axis);
                if (static_cast<int>(run.size()) >= leastBlocks && reach >= 5.0) {
                    strips.push_back(stripThrough(run, angle));
                }
                run.clear();
            }
            if (k < members.size()) {
                run.push_back(members[k]);
            }
        }
    }
    return strips;
}

cv::Mat straightened(const cv::Mat& grey, const TickStrip& strip, int rows, double rowStep)
{
    const cv::Point2d axis = (strip.to - strip.from) * (1.0 / strip.length());
    const cv::Point2d down(-axis.y, axis.x);
    const cv::Point2d corner = strip.from - down * (rows * rowStep);
    const cv::Matx23d map(axis.x * 0.5, down.x * rowStep, corner.x, //
                          axis.y * 0.5, down.y * rowStep, corner.y);
    cv::Mat part;
    cv::warpAffine(grey, part, map, cv::Size(static_cast<int>(2.0 * strip.length()), 2 * rows + 1),
                   cv::INTER_LINEAR | cv::WARP_INVERSE_MAP, cv::BORDER_REPLICATE);
    part.convertTo(part, CV_32F);
    return part;
}
