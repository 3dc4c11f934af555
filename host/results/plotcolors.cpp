#include "host/results/plotcolors.h"

#include <QPalette>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// Colours that differ for colour-blind eyes, too. Source: M. Okabe and K. Ito, Color Universal
/// Design, 2008; black stands for the text colour of the theme and is left out.
constexpr std::array<QRgb, 8> distinctColors = {0xff0072b2, 0xffe69f00, 0xff009e73, 0xffcc79a7,
                                                0xffd55e00, 0xff56b4e9, 0xff8c6d31, 0xff7f7f7f};

/// From dark blue over violet and red to orange: the lightness grows all the way.
constexpr std::array<QRgb, 6> darkToLight = {0xff1f1f8c, 0xff6a1fa0, 0xffa8308e,
                                             0xffd4506b, 0xfff07a42, 0xfff7a92b};

/// The same for a dark ground, which the first two of them would sink into.
constexpr std::array<QRgb, 6> onDark = {0xff6f8cff, 0xffa67cf0, 0xffd67bc8,
                                        0xfff08a8a, 0xfff7a95c, 0xfffadf6b};

QColor between(const QColor& a, const QColor& b, double share)
{
    const auto mix = [share](int x, int y) {
        return static_cast<int>(std::lround(x + (y - x) * share));
    };
    return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()));
}

} // namespace

PlotColors PlotColors::of(const QPalette& palette)
{
    PlotColors colors;
    colors.background = palette.color(QPalette::Base);
    colors.text = palette.color(QPalette::Text);
    colors.grid = between(colors.background, colors.text, 0.14);
    colors.highlight = colors.isDark() ? QColor(255, 110, 110) : QColor(208, 0, 0);
    return colors;
}

bool PlotColors::isDark() const
{
    return qGray(background.rgb()) < 128;
}

QColor PlotColors::distinct(int index, int count) const
{
    if (count <= static_cast<int>(distinctColors.size())) {
        return QColor(distinctColors[static_cast<std::size_t>(index)]);
    }
    // Hues a golden section apart never come close to each other soon.
    const double hue = std::fmod(0.58 + index * 0.6180339887498949, 1.0);
    const double value = (index % 2 ? 0.62 : 0.85) + (isDark() ? 0.14 : 0.0);
    return QColor::fromHsvF(hue, isDark() ? 0.55 : 0.8, value);
}

QColor PlotColors::ramp(double place) const
{
    const auto& stops = isDark() ? onDark : darkToLight;
    const double scaled = std::clamp(place, 0.0, 1.0) * (stops.size() - 1.0);
    const auto stop = std::min(static_cast<std::size_t>(scaled), stops.size() - 2);
    return between(QColor(stops[stop]), QColor(stops[stop + 1]),
                   scaled - static_cast<double>(stop));
}
