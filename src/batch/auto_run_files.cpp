#include "batch/auto_run_files.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "batch/auto_run_fingerprint.h"
#include "runtime/file_io.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/utf8_path.h"
#include "serial/csv.h"
#include "trials/trial_data.h"

namespace veldra {

namespace {

bool starts_with_header(const std::string& text) {
    return text.starts_with(trial_data_as_csv_headers());
}

std::size_t header_cells() {
    return csv_records(trial_data_as_csv_headers()).front().cells;
}

// The first record (as its 1-based line number in the file) that is not a whole trial record,
// or 0. A record may span lines: a cell such as a level name can hold a quoted line break.
std::size_t first_bad_line(const std::string& text, const std::vector<CsvRecord>& records) {
    const std::size_t cells = header_cells();
    std::size_t line_number = 2;
    std::size_t counted_to = trial_data_as_csv_headers().size();
    for (const CsvRecord& record : records) {
        line_number += static_cast<std::size_t>(
            std::count(text.begin() + counted_to, text.begin() + record.begin, '\n'));
        counted_to = record.begin;
        if (record.end - record.begin == 1 || record.cells != cells)
            return line_number;
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
    const std::vector<CsvRecord> records =
        csv_records(*text.text, trial_data_as_csv_headers().size());
    const std::size_t complete_end =
        records.empty() ? trial_data_as_csv_headers().size() : records.back().end;
    if (const std::size_t bad = first_bad_line(*text.text, records)) {
        log_error("Cannot resume: line " + std::to_string(bad) + " of \"" + path +
                  "\" is not a trial record.");
        return std::nullopt;
    }
    const std::size_t runs = records.size();
    if (runs > most) {
        log_error("Cannot resume: \"" + path + "\" holds " + std::to_string(runs) +
                  " runs, but this run has only " + std::to_string(most) + ".");
        return std::nullopt;
    }
    std::error_code error;
    if (complete_end < text.text->size())
        std::filesystem::resize_file(utf8_path(path), complete_end, error);
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
    // Only whole records: a part cut short by a kill ends at its last complete run.
    const std::vector<CsvRecord> records = csv_records(*text.text, header_size);
    if (records.empty())
        return true;
    const std::size_t complete_end = records.back().end;
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
