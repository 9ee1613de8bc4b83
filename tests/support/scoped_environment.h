#pragma once
// Sets an environment variable for as long as it lives and then puts back what was there. The
// tests of one binary share a process when run outside CTest, so a variable one fixture leaves
// behind changes what a later test's program reads (its data folder, say).

#include <cstdlib>
#include <optional>
#include <string>

namespace veldra::testing {

// Windows' C runtime has no setenv; an empty value there removes the variable.
inline void set_environment(const std::string& name, const std::string* value) {
#ifdef _WIN32
    _putenv_s(name.c_str(), value ? value->c_str() : "");
#else
    if (value)
        ::setenv(name.c_str(), value->c_str(), 1);
    else
        ::unsetenv(name.c_str());
#endif
}

class ScopedEnvironment {
public:
    ScopedEnvironment(std::string name, const std::string& value) : name_(std::move(name)) {
        if (const char* old = std::getenv(name_.c_str()))
            old_ = old;
        set_environment(name_, &value);
    }
    ~ScopedEnvironment() { set_environment(name_, old_ ? &*old_ : nullptr); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string name_;
    std::optional<std::string> old_;
};

// The game's data folder as the tests' fixtures use it: the source tree.
inline ScopedEnvironment data_folder_is_source_tree() {
    return ScopedEnvironment("VeldraProjectDir", VELDRA_SOURCE_DIR);
}

}  // namespace veldra::testing
