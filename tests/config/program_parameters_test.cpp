#include "config/program_parameters.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

TEST(ProgramParameters, KeyValueArgumentsSetKnownFieldsOnly) {
    auto params = get_program_parameters({"/path/veldra", "lang=de=x", "user_id=42", "bogus=1",
                                          "config", "=nothing", "log_output_file="});
    EXPECT_EQ(params.lang, "de");
    EXPECT_EQ(params.user_id, "42");
    EXPECT_EQ(params.log_output_file, "");  // given, but empty
    EXPECT_FALSE(params.config);            // no "=": ignored
    EXPECT_FALSE(params.auto_run_config);
}

TEST(ProgramParameters, LaterArgumentWinsAndNamesAreExact) {
    auto params = get_program_parameters({"prog", "lang=en", "lang=de", "LANG=fr", "-lang=it"});
    EXPECT_EQ(params.lang, "de");
}

TEST(ProgramParameters, TableCoversEveryFieldByName) {
    ProgramParameters params;
    for (const auto& info : program_parameter_table()) {
        ASSERT_NE(params.field(info.name), nullptr) << info.name;
        EXPECT_FALSE(info.help.empty());
    }
    EXPECT_EQ(params.field("nope"), nullptr);
}

}  // namespace
}  // namespace veldra
