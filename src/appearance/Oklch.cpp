#include "appearance/Oklch.h"

#include "appearance/LinearLight.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

// Björn Ottosson, "A perceptual color space for image processing": from linear sRGB to the
// responses of the eye, from their cube roots to lightness and two opponent axes, and back.
constexpr Matrix kToResponses{{{0.4122214708, 0.5363325363, 0.0514459929},
                               {0.2119034982, 0.6806995451, 0.1073969566},
                               {0.0883024619, 0.2817188376, 0.6299787005}}};
constexpr Matrix kToAxes{{{0.2104542553, 0.7936177850, -0.0040720468},
                          {1.9779984951, -2.4285922050, 0.4505937099},
                          {0.0259040371, 0.7827717662, -0.8086757660}}};
constexpr Matrix kFromAxes{{{1, 0.3963377774, 0.2158037573},
                            {1, -0.1055613458, -0.0638541728},
                            {1, -0.0894841775, -1.2914855480}}};
constexpr Matrix kFromResponses{{{4.0767416621, -3.3077115913, 0.2309699292},
                                 {-1.2684380046, 2.6097574011, -0.3413193965},
                                 {-0.0041960863, -0.7034186147, 1.7076147010}}};

Triple product(const Matrix &matrix, const Triple &vector)
{
    Triple result{};
    for (size_t row = 0; row < result.size(); ++row) {
        for (size_t column = 0; column < vector.size(); ++column)
            result[row] += matrix[row][column] * vector[column];
    }
    return result;
}

Triple linear(const QColor &color)
{
    return {toLinear(color.redF()), toLinear(color.greenF()), toLinear(color.blueF())};
}

Triple linear(const Oklch &color)
{
    Triple responses = product(kFromAxes, {color.lightness, color.chroma * std::cos(color.hue),
                                           color.chroma * std::sin(color.hue)});
    for (double &response : responses)
        response = response * response * response;
    return product(kFromResponses, responses);
}

bool isShowable(const Triple &linearColor)
{
    constexpr double kSlack = 1e-4;
    return std::ranges::all_of(linearColor, [](double channel) {
        return channel >= -kSlack && channel <= 1 + kSlack;
    });
}

} // namespace

Oklch Oklch::from(const QColor &color)
{
    Triple responses = product(kToResponses, linear(color));
    for (double &response : responses)
        response = std::cbrt(response);
    const auto [lightness, a, b] = product(kToAxes, responses);
    return {lightness, std::hypot(a, b), std::atan2(b, a)};
}

QColor Oklch::toColor() const
{
    constexpr int kHalvings = 12;
    Oklch shown = *this;
    if (!isShowable(linear(shown))) {
        double most = chroma;
        shown.chroma = 0;
        for (int i = 0; i < kHalvings; ++i) {
            const double middle = (shown.chroma + most) / 2;
            if (isShowable(linear(Oklch{lightness, middle, hue})))
                shown.chroma = middle;
            else
                most = middle;
        }
    }
    const Triple channels = linear(shown);
    const auto byte = [](double channel) {
        return int(std::lround(fromLinear(std::clamp(channel, 0.0, 1.0)) * 255));
    };
    return {byte(channels[0]), byte(channels[1]), byte(channels[2])};
}
