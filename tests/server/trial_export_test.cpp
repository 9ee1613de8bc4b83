#include "server/trial_export.h"

#include <gtest/gtest.h>

#include "runtime/file_io.h"
#include "server/api_endpoints.h"
#include "server/trial_record_sample.h"
#include "support/scratch_directory.h"
#include "util/text.h"

namespace veldra {
namespace {

using veldra::testing::record_json;
using veldra::testing::sample_trial_data;
using veldra::testing::ScratchDirectory;

TEST(TrialExportTest, ExportIsTheGamesCsvOfTheRecordsInArrivalOrder) {
    ScratchDirectory scratch("trial_export");
    TrialStore store((scratch.path() / "study.sqlite").string(), SqliteOpen::create);
    store.register_users({"p1", "p2"});
    const TrialData first = sample_trial_data("p2", "levels/b;c.txt", 4294967296.0, 12.75);
    const TrialData second = sample_trial_data("p1", "a.txt", 3, -1);
    ASSERT_EQ(answer_trial_submit(store, record_json(first)).status, 201);
    ASSERT_EQ(answer_trial_submit(store, record_json(second)).status, 201);
    ASSERT_EQ(answer_trial_submit(store, record_json(first)).status, 200);

    const std::string expected =
        trial_data_as_csv_headers() + trial_data_as_csv(first) + trial_data_as_csv(second);
    EXPECT_EQ(trial_records_as_csv(store), expected);

    const std::string path = (scratch.path() / "out.csv").string();
    ASSERT_EQ(export_trial_records(store, path), "");
    const FileText written = read_whole_file(path, 1 << 20);
    ASSERT_TRUE(written);
    EXPECT_EQ(*written.text, expected);
    // A line of the CSV has the header's 33 cells.
    const std::string line = trial_data_as_csv(second);
    EXPECT_EQ(string_split(line.substr(0, line.size() - 1), ';').size(), 33u);
}

TEST(TrialExportTest, AnEmptyStudyExportsTheHeaderOnly) {
    ScratchDirectory scratch("trial_export");
    TrialStore store((scratch.path() / "study.sqlite").string(), SqliteOpen::create);
    EXPECT_EQ(trial_records_as_csv(store), trial_data_as_csv_headers());
}

}  // namespace
}  // namespace veldra
