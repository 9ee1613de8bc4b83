#include "startup/auto_run_files.h"

#include <cstdio>
#include <filesystem>

#include "runtime/file_io.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "startup/auto_run_fingerprint.h"
#include "trials/trial_data.h"

namespace veldra {

namespace {

bool starts_with_header(const std::string& text) {
    return text.starts_with(trial_data_as_csv_headers());
}

// Fields of one CSV line: delimiters outside quoted text, plus one.
std::size_t csv_field_count(std::string_view line) {
    std::size_t fields = 1;
    bool quoted = false;
    for (char c : line) {
        if (c == '"')
            quoted = !quoted;
        else if (c == ';' && !quoted)
            ++fields;
    }
    return fields;
}

// The first data line (1-based line number in the file) that is not a whole trial record, or 0.
std::size_t first_bad_line(const std::string& text, std::size_t begin, std::size_t end) {
    const std::string& header = trial_data_as_csv_headers();
    const std::size_t fields =
        csv_field_count(std::string_view(header).substr(0, header.size() - 1));
    std::size_t line_number = 2;
    for (std::size_t at = begin; at < end; ++line_number) {
        const std::size_t stop = text.find('\n', at);
        const std::string_view line(text.data() + at, stop - at);
        if (line.empty() || csv_field_count(line) != fields)
            return line_number;
        at = stop + 1;
    }
    return 0;
}

}  // namespace

bool auto_run_write(std::FILE* file, const std::string& name, const std::string& bytes) {
    const std::string error = write_all_and_flush(file, bytes);
    if (!error.empty())
        log_error("Failed to write \"" + name + "\": " + error + ".");
    return error.empty();
}

std::optional<std::size_t> auto_run_count_finished_runs(Files& files, const std::string& path,
                                                        std::size_t most) {
    const FileText text = files.read(path, MAX_TRIAL_CSV_FILE_BYTES);
    if (!text && text.error == FILE_MISSING_REASON)
        return 0;
    if (!text) {
        log_error("Cannot resume: \"" + path + "\" " + text.error + ".");
        return std::nullopt;
    }
    if (text.text->empty())
        return 0;
    if (!starts_with_header(*text.text)) {
        log_error("Cannot resume: \"" + path + "\" does not start with the trial CSV header.");
        return std::nullopt;
    }
    const std::size_t header_size = trial_data_as_csv_headers().size();
    const std::size_t complete_end = text.text->rfind('\n') + 1;
    if (const std::size_t bad = first_bad_line(*text.text, header_size, complete_end)) {
        log_error("Cannot resume: line " + std::to_string(bad) + " of \"" + path +
                  "\" is not a trial record.");
        return std::nullopt;
    }
    std::size_t runs = 0;
    for (std::size_t i = header_size; i < complete_end; ++i)
        runs += (*text.text)[i] == '\n';
    if (runs > most) {
        log_error("Cannot resume: \"" + path + "\" holds " + std::to_string(runs) +
                  " runs, but this run has only " + std::to_string(most) + ".");
        return std::nullopt;
    }
    std::error_code error;
    if (complete_end < text.text->size())
        std::filesystem::resize_file(path, complete_end, error);
    return runs;
}

bool auto_run_append_part(Files& files, std::FILE* output, const std::string& output_name,
                          const std::string& part) {
    const FileText text = files.read(part, MAX_TRIAL_CSV_FILE_BYTES);
    if (!text) {
        log_error("Part \"" + part + "\" " + text.error + ".");
        return false;
    }
    if (!starts_with_header(*text.text)) {
        log_error("Part \"" + part + "\" does not start with the trial CSV header.");
        return false;
    }
    const std::size_t header_size = trial_data_as_csv_headers().size();
    // Only whole lines: a part cut short by a kill ends at its last complete run.
    const std::size_t complete_end = text.text->rfind('\n') + 1;
    if (complete_end <= header_size)
        return true;
    return auto_run_write(output, output_name,
                          text.text->substr(header_size, complete_end - header_size));
}

std::optional<std::string> auto_run_output_clobbers(const std::string& output,
                                                    const std::vector<std::string>& inputs) {
    for (const std::string& input : inputs)
        if (same_file(output, input) || same_file(auto_run_fingerprint_path(output), input))
            return input;
    return std::nullopt;
}

}  // namespace veldra
