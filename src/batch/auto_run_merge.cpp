// Joining the parts of a sharded run into the file one process would have written.
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "batch/auto_run_files.h"
#include "batch/auto_run_fingerprint.h"
#include "runtime/file_io.h"
#include "runtime/log.h"
#include "trials/trial_data.h"

namespace veldra {

namespace {

// The fingerprint of the whole merged file, when the parts are consecutive and complete pieces
// of one run; nullopt (logged) otherwise.
std::optional<AutoRunFingerprint> check_parts(Files& files, const std::vector<std::string>& parts) {
    std::optional<AutoRunFingerprint> whole;
    for (const std::string& part : parts) {
        std::string why;
        const auto fingerprint = auto_run_read_fingerprint(files, part, why);
        if (!fingerprint) {
            log_error("Cannot merge \"" + part + "\": " + why +
                      ". Every part needs the fingerprint file its run wrote beside it.");
            return std::nullopt;
        }
        if (!whole) {
            whole = *fingerprint;
        } else if (fingerprint->identity != whole->identity || fingerprint->runs != whole->runs) {
            log_error("Cannot merge \"" + part + "\": it belongs to another run than \"" +
                      parts.front() + "\" (another seed, configuration, auto-run file or level).");
            return std::nullopt;
        } else if (fingerprint->range.first != whole->range.last) {
            log_error("Cannot merge \"" + part + "\": it holds runs " +
                      std::to_string(fingerprint->range.first + 1) + " to " +
                      std::to_string(fingerprint->range.last) +
                      ", but the parts before it end at run " + std::to_string(whole->range.last) +
                      ". Give the parts in order, none missing.");
            return std::nullopt;
        } else {
            whole->range.last = fingerprint->range.last;
        }
        const std::size_t expected = fingerprint->range.last - fingerprint->range.first;
        const auto held = auto_run_count_finished_runs(files, part, expected);
        if (!held)
            return std::nullopt;
        if (*held != expected) {
            log_error("Cannot merge \"" + part + "\": it holds " + std::to_string(*held) +
                      " of its " + std::to_string(expected) +
                      " runs. Finish it first (the same command with auto_run_resume=1).");
            return std::nullopt;
        }
    }
    return whole;
}

}  // namespace

bool auto_run_merge_parts(Files& files, const std::vector<std::string>& parts,
                          const std::string& output) {
    for (const std::string& part : parts)
        if (auto_run_output_clobbers(output, {part})) {
            log_error("Cannot merge: the output \"" + output + "\" is the part \"" + part +
                      "\" itself, which would be emptied before it is read.");
            return false;
        }
    const auto whole = check_parts(files, parts);
    if (!whole)
        return false;
    // The existing output stays untouched until the merged file is complete.
    const std::string temporary = output + ".merging";
    std::string why;
    std::FILE* out = open_file(temporary, "wb", why);
    if (!out) {
        log_error("Failed to open file for writing.");
        log_error("Output \"" + temporary + "\" cannot be written: " + why + ".");
        return false;
    }
    bool ok = auto_run_write(out, temporary, trial_data_as_csv_headers());
    for (std::size_t i = 0; ok && i < parts.size(); ++i)
        ok = auto_run_append_part(files, out, temporary, parts[i]);
    if (std::fclose(out) != 0 && ok) {
        log_error("Failed to write \"" + temporary + "\": " + system_error_text(errno) + ".");
        ok = false;
    }
    if (ok && std::rename(temporary.c_str(), output.c_str()) != 0) {
        log_error("Failed to write \"" + output + "\": " + system_error_text(errno) + ".");
        ok = false;
    }
    if (!ok) {
        std::remove(temporary.c_str());
        return false;
    }
    return auto_run_write_fingerprint(files, output, *whole);
}

}  // namespace veldra
