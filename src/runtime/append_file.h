#pragma once
// A file this run made itself and only ever appends to: the records of a session, a recording.
// It is created exclusively, so it never replaces a file that was there before, whoever wrote
// it (another session started in the same second, the level being played), and every append
// is on disk before it returns, so a crash or a kill at any moment leaves only whole pieces.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace veldra {

class AppendFile {
public:
    // Creates `path`, which must not exist yet; nullopt with the reason in `error` otherwise.
    static std::optional<AppendFile> create_new(const std::string& path, std::string& error);
    // Creates `stem` + `extension` in `folder` ("" is the working directory), or, when that name
    // is taken, `stem`-2 + `extension`, `stem`-3 ...: the first name nobody holds.
    static std::optional<AppendFile> create_with_free_name(const std::filesystem::path& folder,
                                                           const std::string& stem,
                                                           const std::string& extension,
                                                           std::string& error);

    AppendFile(AppendFile&& other) noexcept;
    AppendFile& operator=(AppendFile&& other) noexcept;
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;
    ~AppendFile();

    // Writes all of `bytes` after what is there and syncs them to disk; "" on success, else the
    // reason. A failed append is taken back whole, so the file still ends where it ended.
    std::string append(std::string_view bytes);

    const std::string& path() const { return path_; }

private:
    AppendFile(int fd, std::string path) : fd_(fd), path_(std::move(path)) {}

    int fd_ = -1;
    std::string path_;
    long long size_ = 0;  // bytes appended so far: where a failed append is cut back to
};

}  // namespace veldra
