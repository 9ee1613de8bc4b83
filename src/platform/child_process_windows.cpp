// The Windows build cannot start a child yet: a child there would find its agreed reply
// descriptor (number 3) only through the C runtime's private inheritance block, which is not
// done. spawn() says so with ENOSYS, and the one caller (the parallel auto run) asks
// child_processes_supported() first and plays the run in its own process instead.
#include <windows.h>

#include <cerrno>
#include <utility>

#include "platform/child_process.h"
#include "runtime/utf16.h"

namespace veldra::platform {

bool child_processes_supported() {
    return false;
}

std::optional<ChildProcess> ChildProcess::spawn(const std::vector<std::string>&,
                                                const std::vector<std::string>&,
                                                const std::vector<InheritedDescriptor>&) {
    errno = ENOSYS;
    return std::nullopt;
}

ChildProcess::~ChildProcess() = default;

ChildProcess::ChildProcess(ChildProcess&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    pid_ = std::exchange(other.pid_, -1);
    return *this;
}

void ChildProcess::end_if_running() {}

int ChildProcess::wait() {
    return -1;
}

std::optional<int> ChildProcess::try_wait() {
    return -1;
}

bool ChildProcess::kill(int) {
    return false;
}

std::vector<std::string> current_environment() {
    std::vector<std::string> entries;
    wchar_t* block = GetEnvironmentStringsW();
    if (!block)
        return entries;
    // NAME=value entries one after the other, each ended by a 0, the block by another 0.
    for (const wchar_t* entry = block; *entry; entry += std::wstring_view(entry).size() + 1)
        entries.push_back(utf16_to_utf8(entry));
    FreeEnvironmentStringsW(block);
    return entries;
}

}  // namespace veldra::platform
