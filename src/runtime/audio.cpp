#include "runtime/audio.h"

#include <algorithm>
#include <cmath>

namespace veldra {

void SilentAudio::set_volume(double volume) {
    // NaN would otherwise survive the clamp and reach the mixer of a windowed backend.
    volume_ = std::isnan(volume) ? 0 : std::clamp(volume, 0.0, 1.0);
}

}  // namespace veldra
