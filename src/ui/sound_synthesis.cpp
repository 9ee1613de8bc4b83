#include "ui/sound_synthesis.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace veldra::ui {

namespace {

constexpr double TAU = 2 * std::numbers::pi;

// Deterministic white noise in [-1, 1]: the same sound on every machine and every run.
class Noise {
public:
    explicit Noise(std::uint32_t seed) : state_(seed) {}
    double next() {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return static_cast<double>(state_) / 2147483647.5 - 1.0;
    }

private:
    std::uint32_t state_;
};

// One sound being written: a float buffer that voices add into, finished into 16-bit samples.
class Canvas {
public:
    Canvas(double seconds, int rate)
        : rate_(rate), samples_(static_cast<std::size_t>(seconds * rate), 0.0) {}

    int rate() const { return rate_; }
    std::size_t size() const { return samples_.size(); }
    double seconds_at(std::size_t i) const { return static_cast<double>(i) / rate_; }
    void add(std::size_t i, double value) { samples_[i] += value; }

    // A sine note from `start` seconds sliding exponentially from `f0` to `f1` Hz over `length`,
    // with a quick attack and an exponential decay of time constant `decay`.
    void tone(double start, double length, double f0, double f1, double decay, double gain) {
        double phase = 0;
        const auto first = static_cast<std::size_t>(start * rate_);
        const auto count = static_cast<std::size_t>(length * rate_);
        for (std::size_t n = 0; n < count && first + n < size(); ++n) {
            const double t = static_cast<double>(n) / rate_;
            const double freq = f0 * std::pow(f1 / f0, t / length);
            phase += TAU * freq / rate_;
            const double attack = std::min(1.0, t / 0.004);
            add(first + n, gain * attack * std::exp(-t / decay) * std::sin(phase));
        }
    }

    // Noise through a one-pole low-pass whose cutoff follows `cutoff(t)`, under `envelope(t)`;
    // `high_pass` keeps only what the low-pass removed, for hissy sounds.
    template <class Cutoff, class Envelope>
    void noise(std::uint32_t seed, Cutoff cutoff, Envelope envelope, double gain, bool high_pass) {
        Noise source(seed);
        double low = 0;
        for (std::size_t i = 0; i < size(); ++i) {
            const double t = seconds_at(i);
            const double alpha = 1 - std::exp(-TAU * cutoff(t) / rate_);
            const double x = source.next();
            low += alpha * (x - low);
            add(i, gain * envelope(t) * (high_pass ? x - low : low));
        }
    }

    // Normalises to the common peak and fades both ends to silence, then converts.
    std::vector<std::int16_t> finish() {
        const double fade_in = 0.003 * rate_;
        const double fade_out = 0.012 * rate_;
        const double n = static_cast<double>(size());
        for (std::size_t i = 0; i < size(); ++i) {
            const double k = static_cast<double>(i);
            samples_[i] *= std::min({1.0, k / fade_in, (n - 1 - k) / fade_out});
        }
        double peak = 0;
        for (double s : samples_)
            peak = std::max(peak, std::abs(s));
        const double scale = peak > 0 ? SOUND_PEAK * 32767.0 / peak : 0;
        std::vector<std::int16_t> out(size());
        for (std::size_t i = 0; i < size(); ++i)
            out[i] = static_cast<std::int16_t>(std::lround(samples_[i] * scale));
        return out;
    }

private:
    int rate_;
    std::vector<double> samples_;
};

// A rise and fall peaking at `peak_at` seconds, zero at 0 and at `length`.
auto swell(double peak_at, double length) {
    return [=](double t) {
        if (t <= 0 || t >= length)
            return 0.0;
        return t < peak_at ? std::sin(0.5 * std::numbers::pi * t / peak_at)
                           : std::cos(0.5 * std::numbers::pi * (t - peak_at) / (length - peak_at));
    };
}

void click(Canvas& c) {
    c.tone(0, 0.05, 1400, 1100, 0.012, 1.0);
    c.tone(0, 0.05, 2800, 2200, 0.006, 0.3);
}

void whoosh(Canvas& c) {
    c.noise(11, [](double t) { return 300 + 2400 * std::sin(std::numbers::pi * t / 0.26); },
            swell(0.09, 0.26), 1.0, false);
}

void thump(Canvas& c) {
    c.tone(0, 0.2, 160, 55, 0.06, 1.0);
    c.noise(23, [](double) { return 900.0; }, [](double t) { return std::exp(-t / 0.015); }, 0.8,
            false);
}

void swish(Canvas& c) {
    c.noise(37, [](double t) { return 2500 + 3000 * t / 0.2; }, swell(0.05, 0.2), 1.0, true);
}

void bite(Canvas& c) {
    c.tone(0, 0.06, 620, 480, 0.02, 0.8);
    c.tone(0.07, 0.06, 900, 700, 0.02, 0.8);
    c.noise(53, [](double) { return 3000.0; },
            [](double t) { return std::exp(-t / 0.01) + 0.8 * std::exp(-std::abs(t - 0.07) / 0.01); },
            0.5, true);
}

void chime(Canvas& c) {
    c.tone(0, 0.5, 880, 880, 0.15, 0.6);
    c.tone(0, 0.5, 1760, 1760, 0.08, 0.15);
    c.tone(0.09, 0.5, 1318.5, 1318.5, 0.16, 0.6);
    c.tone(0.09, 0.5, 2637, 2637, 0.08, 0.15);
}

void descent(Canvas& c) {
    c.tone(0, 0.7, 440, 110, 0.35, 1.0);
    c.tone(0, 0.7, 660, 165, 0.2, 0.25);
}

void fanfare(Canvas& c) {
    const double notes[] = {523.25, 659.25, 783.99, 1046.5};
    for (int i = 0; i < 4; ++i) {
        const double start = 0.12 * i;
        const double length = i == 3 ? 0.75 - start : 0.3;
        c.tone(start, length, notes[i], notes[i], i == 3 ? 0.14 : 0.08, 0.6);
        c.tone(start, length, 2 * notes[i], 2 * notes[i], 0.05, 0.12);
    }
}

}  // namespace

std::vector<std::int16_t> synthesize_sound(Sound sound, int sample_rate) {
    if (sample_rate < 1000)
        return {};
    struct Recipe {
        double seconds;
        void (*make)(Canvas&);
    };
    static constexpr Recipe RECIPES[] = {
        {0.06, click}, {0.26, whoosh}, {0.2, thump},   {0.2, swish},
        {0.15, bite},  {0.6, chime},   {0.7, descent}, {0.75, fanfare},
    };
    static_assert(std::size(RECIPES) == static_cast<std::size_t>(Sound::count));
    const auto index = static_cast<std::size_t>(sound);
    if (index >= std::size(RECIPES))
        return {};
    Canvas canvas(RECIPES[index].seconds, sample_rate);
    RECIPES[index].make(canvas);
    return canvas.finish();
}

}  // namespace veldra::ui
