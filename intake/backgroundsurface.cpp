#include "intake/backgroundsurface.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double lightnessWeight = 1.0 / 9.0; // of its square
constexpr double lightnessUnit = 100.0 / 255.0;
constexpr double frameWidth = 0.03; // of the shorter side
constexpr double widestRadius = 14.0;
constexpr double narrowestRadius = 5.0;
constexpr int fitSamples = 60000;

cv::Vec3d toLab(const cv::Vec3b& pixel)
{
    return {pixel[0] * lightnessUnit, pixel[1] - 128.0, pixel[2] - 128.0};
}

/// The commonest colour of the frame: the fullest box of a histogram, its neighbours counted too, so
/// that a colour on the border of two boxes is not halved; then the mean of what is near it.
cv::Vec3d commonestFrameColour(const cv::Mat& lab)
{
    constexpr int bins = 32;
    constexpr int shift = 3;
    const int band =
        std::max(2, static_cast<int>(std::lround(frameWidth * std::min(lab.rows, lab.cols))));
    std::vector<int> counts(bins * bins * bins, 0);
    std::vector<cv::Vec3b> frame;
    for (int y = 0; y < lab.rows; ++y) {
        const auto* row = lab.ptr<cv::Vec3b>(y);
        const bool whole = y < band || y >= lab.rows - band;
        for (int x = 0; x < lab.cols; ++x) {
            if (!whole && x >= band && x < lab.cols - band) {
                x = lab.cols - band;
            }
            frame.push_back(row[x]);
            ++counts[std::size_t(((row[x][0] >> shift) * bins + (row[x][1] >> shift)) * bins +
                                 (row[x][2] >> shift))];
        }
    }
    const auto count = [&](int l, int a, int b) {
        const bool inside = l >= 0 && a >= 0 && b >= 0 && l < bins && a < bins && b < bins;
        return inside ? counts[std::size_t((l * bins + a) * bins + b)] : 0;
    };
    int most = -1;
    cv::Vec3i best;
    for (int l = 0; l < bins; ++l) {
        for (int a = 0; a < bins; ++a) {
            for (int b = 0; b < bins; ++b) {
                if (count(l, a, b) == 0) {
                    continue;
                }
                int sum = 0;
                for (int k = 0; k < 27; ++k) {
                    sum += count(l + k / 9 - 1, a + k / 3 % 3 - 1, b + k % 3 - 1);
                }
                if (sum > most) {
                    most = sum;
                    best = {l, a, b};
                }
            }
        }
    }
    constexpr int box = 1 << shift;
    cv::Vec3d sum;
    double number = 0.0;
    for (const cv::Vec3b& pixel : frame) {
        bool isNear = true;
        for (int c = 0; c < 3; ++c) {
            isNear = isNear && std::abs(pixel[c] - (best[c] * box + box / 2)) <= box + box / 2;
        }
        if (isNear) {
            sum += toLab(pixel);
            number += 1.0;
        }
    }
    return number > 0.0 ? sum / number : toLab(frame.front());
}

} // namespace

double squaredColourDistance(const cv::Vec3d& one, const cv::Vec3d& other)
{
    const cv::Vec3d gap = one - other;
    return gap[0] * gap[0] * lightnessWeight + gap[1] * gap[1] + gap[2] * gap[2];
}

BackgroundSurface::BackgroundSurface(const cv::Mat& lab,
                                     const cv::Rect& part,
                                     const cv::Size& whole)
    : part_(double(part.x) / whole.width,
            double(part.y) / whole.height,
            double(part.width) / whole.width,
            double(part.height) / whole.height)
{
    const cv::Vec3d start = commonestFrameColour(lab);
    for (std::size_t c = 0; c < 3; ++c) {
        surface_[c] = {start[int(c)], 0.0, 0.0, 0.0, 0.0, 0.0};
    }
    double radius = widestRadius;
    cv::Mat belongs = near(lab, radius);
    for (const int degree : {1, 2, 2, 2}) {
        fit(lab, belongs, degree);
        radius = std::clamp(4.0 * quantile(lab, belongs, 0.5), narrowestRadius, widestRadius);
        belongs = near(lab, radius);
    }
    fit(lab, belongs, 2);
    noise_ = quantile(lab, belongs, 0.99);
    share_ = cv::countNonZero(belongs) / double(belongs.total());
}

BackgroundSurface::Coefficients BackgroundSurface::termsAt(double u, double v)
{
    return {1.0, u, v, u * u, u * v, v * v};
}

/// From the whole picture's coordinate to that of the polynomial, -1 to 1.
double BackgroundSurface::across(double x) const
{
    return 2.0 * std::clamp((x - part_.x) / part_.width, 0.0, 1.0) - 1.0;
}

double BackgroundSurface::down(double y) const
{
    return 2.0 * std::clamp((y - part_.y) / part_.height, 0.0, 1.0) - 1.0;
}

cv::Vec3d BackgroundSurface::valueAt(double u, double v) const
{
    const Coefficients term = termsAt(u, v);
    cv::Vec3d colour;
    for (int c = 0; c < 3; ++c) {
        for (std::size_t k = 0; k < terms; ++k) {
            colour[c] += surface_[std::size_t(c)][k] * term[k];
        }
    }
    colour[0] = std::clamp(colour[0], 0.0, 100.0);
    return colour;
}

cv::Vec3d BackgroundSurface::colourAt(double x, double y) const
{
    return valueAt(across(x), down(y));
}

cv::Vec3b BackgroundSurface::rgbAt(double x, double y) const
{
    const cv::Vec3d colour = colourAt(x, y);
    cv::Mat lab(1, 1, CV_8UC3);
    lab.at<cv::Vec3b>(0, 0) = cv::Vec3b(cv::saturate_cast<uchar>(colour[0] / lightnessUnit),
                                        cv::saturate_cast<uchar>(colour[1] + 128.0),
                                        cv::saturate_cast<uchar>(colour[2] + 128.0));
    cv::Mat rgb;
    cv::cvtColor(lab, rgb, cv::COLOR_Lab2RGB);
    return rgb.at<cv::Vec3b>(0, 0);
}

void BackgroundSurface::row(
    double y, double first, double width, int count, cv::Vec3f* colours) const
{
    // Along a row the polynomial has three coefficients.
    const double v = down(y);
    for (int c = 0; c < 3; ++c) {
        const Coefficients& s = surface_[std::size_t(c)];
        const double constant = s[0] + s[2] * v + s[5] * v * v;
        const double linear = s[1] + s[4] * v;
        for (int k = 0; k < count; ++k) {
            const double u = across((first + k + 0.5) / width);
            const double value = constant + (linear + s[3] * u) * u;
            colours[k][c] = static_cast<float>(c == 0 ? std::clamp(value, 0.0, 100.0) : value);
        }
    }
}

cv::Mat BackgroundSurface::near(const cv::Mat& lab, double radius) const
{
    cv::Mat belongs(lab.size(), CV_8UC1);
    std::vector<cv::Vec3f> colours(std::size_t(lab.cols));
    for (int y = 0; y < lab.rows; ++y) {
        row(part_.y + part_.height * (y + 0.5) / lab.rows, part_.x / part_.width * lab.cols,
            lab.cols / part_.width, lab.cols, colours.data());
        const auto* pixels = lab.ptr<cv::Vec3b>(y);
        uchar* target = belongs.ptr(y);
        for (int x = 0; x < lab.cols; ++x) {
            const double squared =
                squaredColourDistance(toLab(pixels[x]), cv::Vec3d(colours[std::size_t(x)]));
            target[x] = squared < radius * radius ? 255 : 0;
        }
    }
    return belongs;
}

void BackgroundSurface::fit(const cv::Mat& lab, const cv::Mat& belongs, int degree)
{
    const int number = degree == 1 ? 3 : terms;
    const int step = std::max(1, static_cast<int>(std::sqrt(double(lab.total()) / fitSamples)));
    cv::Mat normal = cv::Mat::zeros(number, number, CV_64F);
    cv::Mat right = cv::Mat::zeros(number, 3, CV_64F);
    int used = 0;
    for (int y = step / 2; y < lab.rows; y += step) {
        for (int x = step / 2; x < lab.cols; x += step) {
            if (belongs.at<uchar>(y, x) == 0) {
                continue;
            }
            ++used;
            const Coefficients term =
                termsAt(2.0 * (x + 0.5) / lab.cols - 1.0, 2.0 * (y + 0.5) / lab.rows - 1.0);
            const cv::Vec3d colour = toLab(lab.at<cv::Vec3b>(y, x));
            for (int i = 0; i < number; ++i) {
                for (int j = 0; j < number; ++j) {
                    normal.at<double>(i, j) += term[std::size_t(i)] * term[std::size_t(j)];
                }
                for (int c = 0; c < 3; ++c) {
                    right.at<double>(i, c) += term[std::size_t(i)] * colour[c];
                }
            }
        }
    }
    if (used < 10 * number) {
        return; // too few to say more than the surface so far
    }
    // What the pixels leave open, far from all of them, is held flat.
    for (int i = 1; i < number; ++i) {
        normal.at<double>(i, i) += 1e-3 * used;
    }
    cv::Mat solution;
    cv::solve(normal, right, solution, cv::DECOMP_SVD);
    for (int c = 0; c < 3; ++c) {
        surface_[std::size_t(c)] = {};
        for (int i = 0; i < number; ++i) {
            surface_[std::size_t(c)][std::size_t(i)] = solution.at<double>(i, c);
        }
    }
}

double BackgroundSurface::quantile(const cv::Mat& lab, const cv::Mat& belongs, double part) const
{
    const int step = std::max(1, static_cast<int>(std::sqrt(double(lab.total()) / fitSamples)));
    std::vector<double> squares;
    for (int y = step / 2; y < lab.rows; y += step) {
        for (int x = step / 2; x < lab.cols; x += step) {
            if (belongs.at<uchar>(y, x) != 0) {
                squares.push_back(squaredColourDistance(
                    toLab(lab.at<cv::Vec3b>(y, x)),
                    valueAt(2.0 * (x + 0.5) / lab.cols - 1.0, 2.0 * (y + 0.5) / lab.rows - 1.0)));
            }
        }
    }
    if (squares.empty()) {
        return 0.0;
    }
    const auto place = squares.begin() + long(part * double(squares.size() - 1));
    std::nth_element(squares.begin(), place, squares.end());
    return std::sqrt(*place);
}
