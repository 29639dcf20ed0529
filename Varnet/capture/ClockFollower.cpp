#include "Varnet/capture/ClockFollower.h"

#include <algorithm>

namespace varnet {

namespace {

constexpr double frameRate = 16'000;
constexpr double frequency = 1.5;        ///< of the critically damped loop, radians a second
constexpr double noise = 0.05;           ///< frames, 3 microseconds: what clean timestamps scatter by
constexpr double maximumSkew = 16;       ///< frames a second, 1,000 ppm: no hardware clock is worse
constexpr double maximumCorrection = 80; ///< frames a second, 0.5 %: nobody hears it

} // namespace

double ClockFollower::correction(double behind, double seconds) {
    const double error = behind - std::clamp(behind, -noise, noise);
    const double wanted = 2 * frequency * error + m_skew;
    const double limited = std::clamp(wanted, -maximumCorrection, maximumCorrection);
    // While it is limited it catches up with a small loss; that says nothing about the clocks.
    if (limited == wanted)
        m_skew = std::clamp(m_skew + frequency * frequency * error * seconds, -maximumSkew, maximumSkew);
    return limited / frameRate;
}

} // namespace varnet
