#include "batch/auto_run_files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "batch/auto_run_fingerprint.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "trials/trial_data.h"

namespace veldra {
namespace {

// A data line with as many fields as the header: what resume counts as one finished run.
std::string record_line() {
    const std::string& header = trial_data_as_csv_headers();
    std::string line;
    for (char c : header.substr(0, header.size() - 1))
        if (c == ';')
            line += "0;";
    return line + "0\n";
}

// Resume and merge read an output and its fingerprint through the files handed in, so both
// are checked here without a disk.
TEST(AutoRunFilesInMemory, FingerprintRoundTripsAndFinishedRunsAreCounted) {
    MemoryFiles files;
    const std::string output = "memory_only_run.csv";
    const AutoRunFingerprint fingerprint{"0123456789abcdef", 10, {2, 6}};
    ASSERT_TRUE(auto_run_write_fingerprint(files, output, fingerprint));
    EXPECT_FALSE(std::filesystem::exists(auto_run_fingerprint_path(output)));
    std::string why;
    EXPECT_EQ(auto_run_read_fingerprint(files, output, why), fingerprint);

    files.files[auto_run_fingerprint_path(output)] = R"({"identity": "x", "runs": 1})";
    EXPECT_FALSE(auto_run_read_fingerprint(files, output, why));
    EXPECT_EQ(why, "\"memory_only_run.csv.fingerprint\" is not a fingerprint file");

    LogCapture capture;
    EXPECT_EQ(auto_run_count_finished_runs(files, output, 4), 0u);  // not written yet
    files.files[output] = trial_data_as_csv_headers() + record_line() + record_line();
    EXPECT_EQ(auto_run_count_finished_runs(files, output, 4), 2u);
    EXPECT_FALSE(auto_run_count_finished_runs(files, output, 1));
    EXPECT_TRUE(capture.contains("holds 2 runs, but this run has only 1."));
    files.files[output] = trial_data_as_csv_headers() + record_line() + "cut;short\n";
    EXPECT_FALSE(auto_run_count_finished_runs(files, output, 4));
    EXPECT_TRUE(
        capture.contains("Cannot resume: line 3 of \"memory_only_run.csv\" is not a "
                         "trial record."));
}

// A level named with a line break is written in quotes across two lines: resume and merge read
// it back as the one record it is.
TEST(AutoRunFilesInMemory, QuotedLineBreaksBelongToTheirRecord) {
    MemoryFiles files;
    const std::string output = "memory_only_quoted.csv";
    const std::string quoted = "\"level\n2\";" + record_line().substr(2);
    LogCapture capture;
    files.files[output] = trial_data_as_csv_headers() + record_line() + quoted + record_line();
    EXPECT_EQ(auto_run_count_finished_runs(files, output, 4), 3u) << capture.lines.size();
    // A record cut short inside its quoted cell is not counted; the one after a bad one names
    // the line it starts on.
    files.files[output] = trial_data_as_csv_headers() + quoted + quoted.substr(0, 9);
    EXPECT_EQ(auto_run_count_finished_runs(files, output, 4), 1u);
    files.files[output] = trial_data_as_csv_headers() + quoted + "cut;short\n";
    EXPECT_FALSE(auto_run_count_finished_runs(files, output, 4));
    EXPECT_TRUE(capture.contains("Cannot resume: line 4 of \"memory_only_quoted.csv\""));

    // Merging copies whole records only, quoted line breaks included.
    const std::string part = "memory_only_part.csv";
    files.files[part] = trial_data_as_csv_headers() + quoted + quoted.substr(0, 9);
    std::FILE* out = std::tmpfile();
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(auto_run_append_part(files, out, "merged", part));
    std::rewind(out);
    std::string merged(quoted.size() + 16, '\0');
    merged.resize(std::fread(merged.data(), 1, merged.size(), out));
    std::fclose(out);
    EXPECT_EQ(merged, quoted);
}

}  // namespace
}  // namespace veldra
