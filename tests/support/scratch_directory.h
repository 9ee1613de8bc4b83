#pragma once
// A temporary directory of the running test's own. CTest runs each test in its own process and
// several at once, so a directory shared by a fixture's tests would be removed by one test
// while another still writes to it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace veldra::testing {

class ScratchDirectory {
public:
    // Empty and ready when the constructor returns; removed with everything in it afterwards.
    explicit ScratchDirectory(const std::string& prefix) {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = prefix;
        if (info)
            name += std::string("_") + info->test_suite_name() + "_" + info->name();
        name += "_" + std::to_string(::getpid());
        for (char& c : name)
            if (c == '/' || c == '<' || c == '>' || c == ' ' || c == ',' || c == ':')
                c = '_';
        path_ = std::filesystem::temp_directory_path() / name;
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~ScratchDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }
    operator const std::filesystem::path&() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace veldra::testing
