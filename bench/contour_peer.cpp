// The contour chain beside OpenCV's nearest one (Otsu, erosion, connected components, Sobel,
// watershed, contours), on one thread and the same noisy toothed leaves of 1 to 64 megapixels. Both
// run in turn, so that a busy machine slows both; the least of the rounds counts, in processor time
// of the thread. The aim is at most half of OpenCV's time up to 16 megapixels.
//
// usage: contour_peer [ROUNDS [MEGAPIXELS...]]

#include "blade/contour/extractcontour.h"
#include "support/leaf.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <stdexcept>
#include <vector>

namespace {

PixelMatrix<float> photograph(int side)
{
    leaf::Shape shape;
    const double scale = side / 1000.0;
    shape.middle = {500.0 * scale, 470.0 * scale};
    shape.length = 700.0 * scale;
    shape.width = 500.0 * scale;
    shape.teethPerSide = 12;
    shape.toothHeight = 30.0 * scale;
    shape.petioleLength = 110.0 * scale;
    shape.petioleWidth = 14.0 * scale;
    shape.angleDegrees = 20.0;
    return leaf::photograph(leaf::draw(shape), side, side, 170.0f, 50.0f, 14.0f);
}

cv::Mat toMat(const PixelMatrix<float>& image)
{
    cv::Mat mat(image.getSize1(), image.getSize2(), CV_32F);
    for (int i = 0; i < mat.rows; ++i) {
        std::copy_n(image[i].data(), mat.cols, mat.ptr<float>(i));
    }
    return mat;
}

/// Pixels of the largest component of a mask become 1, a frame inside the edge 2, all else 0.
cv::Mat markersOf(const cv::Mat& mask)
{
    cv::Mat labels;
    cv::Mat statistics;
    cv::Mat centroids;
    const int count = cv::connectedComponentsWithStats(mask, labels, statistics, centroids, 4);
    int largest = 1;
    for (int k = 2; k < count; ++k) {
        if (statistics.at<int>(k, cv::CC_STAT_AREA) >
            statistics.at<int>(largest, cv::CC_STAT_AREA)) {
            largest = k;
        }
    }
    cv::Mat markers = cv::Mat::zeros(mask.size(), CV_32S);
    markers.setTo(1, labels == largest);
    cv::rectangle(markers, {2, 2}, {mask.cols - 3, mask.rows - 3}, 2, 4);
    return markers;
}

std::vector<std::vector<cv::Point>> contoursByOpenCv(const cv::Mat& image)
{
    cv::Mat bytes;
    image.convertTo(bytes, CV_8U);
    cv::Mat mask;
    cv::threshold(bytes, mask, 0, 255, cv::THRESH_BINARY | cv::THRESH_OTSU);
    cv::erode(mask, mask, cv::getStructuringElement(cv::MORPH_RECT, {21, 21}));
    cv::Mat markers = markersOf(mask);
    cv::Mat dx;
    cv::Mat dy;
    cv::Sobel(bytes, dx, CV_32F, 1, 0, 5, 1.0 / 48.0);
    cv::Sobel(bytes, dy, CV_32F, 0, 1, 5, 1.0 / 48.0);
    cv::Mat norm;
    cv::magnitude(dx, dy, norm);
    norm.convertTo(bytes, CV_8U);
    cv::Mat colour;
    cv::cvtColor(bytes, colour, cv::COLOR_GRAY2BGR);
    cv::watershed(colour, markers);
    const cv::Mat leaf = markers == 1;
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(leaf, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_SIMPLE);
    return contours;
}

struct Seconds
{
    double processor = HUGE_VAL;
    double wall = HUGE_VAL;
};

/// Keeps the lesser of the times so far and those of one more call.
template <class Work>
void time(Seconds& least, Work work)
{
    timespec begin;
    timespec end;
    const auto clock = std::chrono::steady_clock::now();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &begin);
    work();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - clock;
    least.wall = std::min(least.wall, wall.count());
    least.processor =
        std::min(least.processor, static_cast<double>(end.tv_sec - begin.tv_sec) +
                                      1e-9 * static_cast<double>(end.tv_nsec - begin.tv_nsec));
}

double milliseconds(double seconds, double megapixels)
{
    return seconds * 1000.0 / megapixels;
}

void compare(int megapixels, int rounds)
{
    const int side = static_cast<int>(std::lround(1000.0 * std::sqrt(megapixels)));
    const PixelMatrix<float> image = photograph(side);
    const cv::Mat mat = toMat(image);
    const auto stack = leaf::emptyStack(1);
    ExtractContour process;
    process.setStack(*stack);
    process.setFidelity(100);
    Seconds ours;
    Seconds peer;
    for (int k = 0; k < rounds; ++k) {
        process.createModels();
        time(ours, [&] { process.process(image, 0); });
        std::size_t found = 0;
        time(peer, [&] { found = contoursByOpenCv(mat).size(); });
        if (found == 0 || leaf::vertices(*stack, "Contour", 0).empty()) {
            throw std::runtime_error("No leaf was found");
        }
    }
    std::printf("%3d megapixels: %6.1f ms a megapixel (wall %6.1f), OpenCV %6.1f (wall %6.1f), "
                "ratio %.2f (wall %.2f)\n",
                megapixels, milliseconds(ours.processor, megapixels),
                milliseconds(ours.wall, megapixels), milliseconds(peer.processor, megapixels),
                milliseconds(peer.wall, megapixels), ours.processor / peer.processor,
                ours.wall / peer.wall);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    cv::setNumThreads(1);
    const int rounds = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 5;
    std::vector<int> sizes;
    for (int k = 2; k < argc; ++k) {
        sizes.push_back(std::max(std::atoi(argv[k]), 1));
    }
    for (const int megapixels : sizes.empty() ? std::vector<int>{1, 4, 16, 64} : sizes) {
        compare(megapixels, rounds);
    }
}
