#include "net/outbox.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <system_error>

#include <nlohmann/json.hpp>

#include "runtime/append_file.h"
#include "runtime/utf8_path.h"
#include "util/digest.h"

namespace veldra {

namespace {

constexpr const char* EXTENSION = ".json";
constexpr std::uintmax_t MAX_RECORD_BYTES = 1 << 20;  // a record is a few KiB

std::string key_digest(const OutboxKey& key) {
    char seed[32];
    std::snprintf(seed, sizeof seed, "%.17g", key.seed);
    Digest digest;
    digest.add(key.user_id);
    digest.add(key.level_file);
    digest.add(seed);
    return digest.hex();
}

// Microseconds since 1970, zero-padded, so that names sort in the order records were put.
std::string stamp_now() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    char text[24];
    std::snprintf(
        text, sizeof text, "%017lld",
        static_cast<long long>(std::chrono::duration_cast<std::chrono::microseconds>(now).count()));
    return text;
}

bool is_record_file(const std::filesystem::directory_entry& entry) {
    std::error_code ec;
    return entry.is_regular_file(ec) && entry.path().extension() == EXTENSION;
}

// The waiting file of `digest`, when there is one.
std::optional<std::filesystem::path> file_of_digest(const std::filesystem::path& folder,
                                                    const std::string& digest) {
    std::error_code ec;
    const std::string suffix = "-" + digest + EXTENSION;
    for (std::filesystem::directory_iterator it(folder, ec), end; !ec && it != end;
         it.increment(ec)) {
        const std::string name = path_utf8(it->path().filename());
        if (name.size() > suffix.size() && name.ends_with(suffix) && is_record_file(*it))
            return it->path();
    }
    return std::nullopt;
}

std::optional<OutboxEntry> read_entry(const std::filesystem::path& path, std::string& problem) {
    std::error_code ec;
    const std::uintmax_t size = std::filesystem::file_size(path, ec);
    if (ec || size > MAX_RECORD_BYTES) {
        problem = ec ? ec.message() : "larger than a record can be";
        return std::nullopt;
    }
    std::ifstream in(path, std::ios::binary);
    std::string body((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in.good() && !in.eof()) {
        problem = "cannot be read";
        return std::nullopt;
    }
    const nlohmann::json record = nlohmann::json::parse(body, nullptr, false);
    if (!record.is_object() || !record.contains("user_id") || !record["user_id"].is_string()) {
        problem = "is not a trial record";
        return std::nullopt;
    }
    return OutboxEntry{.path = path, .user_id = record["user_id"], .body = std::move(body)};
}

}  // namespace

std::optional<OutboxEntry> Outbox::put(const OutboxKey& key, const std::string& body,
                                       std::string& error) {
    std::error_code ec;
    std::filesystem::create_directories(folder_, ec);
    if (ec) {
        error = "\"" + path_utf8(folder_) + "\": " + ec.message();
        return std::nullopt;
    }
    const std::string digest = key_digest(key);
    if (const auto existing = file_of_digest(folder_, digest))
        return OutboxEntry{.path = *existing, .user_id = key.user_id, .body = body};
    // Written under a name `waiting` does not list, then renamed: a record is in the outbox
    // whole or not at all, whenever the program stops.
    const std::filesystem::path path = folder_ / (stamp_now() + "-" + digest + EXTENSION);
    std::filesystem::path part = path;
    part += ".part";
    std::optional<AppendFile> file = AppendFile::create_new(path_utf8(part), error);
    if (!file)
        return std::nullopt;
    error = file->append(body);
    file.reset();
    if (error.empty())
        std::filesystem::rename(part, path, ec);
    if (!error.empty() || ec) {
        if (error.empty())
            error = "\"" + path_utf8(path) + "\": " + ec.message();
        std::filesystem::remove(part, ec);
        return std::nullopt;
    }
    return OutboxEntry{.path = path, .user_id = key.user_id, .body = body};
}

std::vector<OutboxEntry> Outbox::waiting(const std::optional<std::string>& user_id,
                                         std::vector<std::string>* problems) const {
    std::vector<std::filesystem::path> paths;
    std::error_code ec;
    for (std::filesystem::directory_iterator it(folder_, ec), end; !ec && it != end;
         it.increment(ec)) {
        if (is_record_file(*it))
            paths.push_back(it->path());
    }
    std::sort(paths.begin(), paths.end());
    std::vector<OutboxEntry> out;
    for (const std::filesystem::path& path : paths) {
        std::string problem;
        std::optional<OutboxEntry> entry = read_entry(path, problem);
        if (!entry) {
            if (problems)
                problems->push_back("\"" + path_utf8(path) + "\" " + problem);
            continue;
        }
        if (!user_id || entry->user_id == *user_id)
            out.push_back(std::move(*entry));
    }
    return out;
}

std::string Outbox::confirm(const OutboxEntry& entry) {
    std::error_code ec;
    if (!std::filesystem::remove(entry.path, ec) && ec)
        return "\"" + path_utf8(entry.path) + "\": " + ec.message();
    return "";
}

std::filesystem::path outbox_folder(const std::filesystem::path& log_folder) {
    return log_folder / "outbox";
}

}  // namespace veldra
