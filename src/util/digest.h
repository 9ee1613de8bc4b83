#pragma once
// FNV-1a, 64 bits: not for security, only to tell one set of inputs from another (an auto run's
// files, the level and configuration an input recording was made with).

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace veldra {

class Digest {
public:
    void add(std::string_view bytes) {
        mix(bytes);
        // The length too, so that moving bytes from one piece to the next changes the digest.
        mix("|" + std::to_string(bytes.size()) + "|");
    }
    std::string hex() const {
        char text[17];
        std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash_));
        return text;
    }

private:
    void mix(std::string_view bytes) {
        for (unsigned char c : bytes) {
            hash_ ^= c;
            hash_ *= 1099511628211ull;
        }
    }
    std::uint64_t hash_ = 14695981039346656037ull;
};

}  // namespace veldra
