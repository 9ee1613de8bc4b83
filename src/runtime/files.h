#pragma once
// File access as a service. The game reads and writes whole files only through a `Files` its
// caller hands in, so tests can give it files that never touch the disk and a platform without
// a plain file system (a browser's storage, a console's save area) can plug in its own backend.
// Where a name points (runtime/paths.h) is still decided on the disk; what is then read or
// written there goes through here.

#include <cstddef>
#include <map>
#include <string>

#include "runtime/file_io.h"

namespace veldra {

class Files {
public:
    virtual ~Files() = default;
    // Whole regular file of at most max_bytes; never blocks on a FIFO (see file_io.h).
    virtual FileText read(const std::string& path, std::size_t max_bytes) = 0;
    // Atomic replace; "" on success, else the reason.
    virtual std::string write(const std::string& path, const std::string& text) = 0;
    // A regular file is there.
    virtual bool exists(const std::string& path) = 0;
    // Makes `directory` and the folders above it, so that a write into it can succeed; "" on
    // success (or when it is already there), else the reason.
    virtual std::string create_directories(const std::string& directory) = 0;
};

// The real file system, through file_io.h.
class DiskFiles final : public Files {
public:
    FileText read(const std::string& path, std::size_t max_bytes) override;
    std::string write(const std::string& path, const std::string& text) override;
    bool exists(const std::string& path) override;
    std::string create_directories(const std::string& directory) override;
};

// For tests: files are whole paths, exactly as spelled, mapped to their contents. Reads fail as
// the disk's do for what readers tell apart (a missing file, one over the limit); there are no
// folders, so every directory can be "created" and every write succeeds.
class MemoryFiles final : public Files {
public:
    FileText read(const std::string& path, std::size_t max_bytes) override;
    std::string write(const std::string& path, const std::string& text) override;
    bool exists(const std::string& path) override;
    std::string create_directories(const std::string& directory) override;

    std::map<std::string, std::string> files;
};

}  // namespace veldra
