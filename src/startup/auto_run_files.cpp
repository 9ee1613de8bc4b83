#include "startup/auto_run_files.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "runtime/log.h"
#include "trials/trial_data.h"

namespace veldra {

namespace {

std::optional<std::string> read_all(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

bool starts_with_header(const std::string& text) {
    return text.starts_with(trial_data_as_csv_headers());
}

}  // namespace

std::optional<std::size_t> auto_run_count_finished_runs(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        return 0;
    auto text = read_all(path);
    if (!text) {
        log_error("Cannot resume: \"" + path + "\" cannot be read.");
        return std::nullopt;
    }
    if (text->empty())
        return 0;
    if (!starts_with_header(*text)) {
        log_error("Cannot resume: \"" + path + "\" does not start with the trial CSV header.");
        return std::nullopt;
    }
    const std::size_t complete_end = text->rfind('\n') + 1;
    if (complete_end < text->size())
        std::filesystem::resize_file(path, complete_end, error);
    const std::size_t header_size = trial_data_as_csv_headers().size();
    std::size_t runs = 0;
    for (std::size_t i = header_size; i < complete_end; ++i)
        runs += (*text)[i] == '\n';
    return runs;
}

bool auto_run_append_part(std::FILE* output, const std::string& part) {
    auto text = read_all(part);
    if (!text) {
        log_error("Part \"" + part + "\" cannot be read.");
        return false;
    }
    if (!starts_with_header(*text)) {
        log_error("Part \"" + part + "\" does not start with the trial CSV header.");
        return false;
    }
    const std::size_t header_size = trial_data_as_csv_headers().size();
    // Only whole lines: a part cut short by a kill ends at its last complete run.
    const std::size_t complete_end = text->rfind('\n') + 1;
    if (complete_end > header_size)
        std::fwrite(text->data() + header_size, 1, complete_end - header_size, output);
    return std::fflush(output) == 0;
}

bool auto_run_merge_parts(const std::vector<std::string>& parts, const std::string& output) {
    std::FILE* out = std::fopen(output.c_str(), "wb");
    if (!out) {
        log_error("Failed to open file for writing.");
        log_error("Output \"" + output + "\" cannot be written.");
        return false;
    }
    const std::string header = trial_data_as_csv_headers();
    std::fwrite(header.data(), 1, header.size(), out);
    bool ok = true;
    for (const std::string& part : parts) {
        ok = auto_run_append_part(out, part);
        if (!ok)
            break;
    }
    ok = std::fclose(out) == 0 && ok;
    return ok;
}

}  // namespace veldra
