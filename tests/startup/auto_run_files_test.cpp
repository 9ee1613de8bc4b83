#include "startup/auto_run_files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "runtime/files.h"
#include "runtime/log.h"
#include "startup/auto_run_fingerprint.h"
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

}  // namespace
}  // namespace veldra
