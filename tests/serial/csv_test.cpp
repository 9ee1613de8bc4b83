#include "serial/csv.h"

#include <gtest/gtest.h>

#include "runtime/gc.h"
#include "runtime/log.h"

namespace veldra {
namespace {

class CsvTest : public ::testing::Test {
protected:
    GcScope collector;
    LogCapture log;
};

TEST_F(CsvTest, CellsOfEveryPlainKind) {
    const std::string csv = csv_from_rows({
        {"name", 1, 0.125, true, Value(), Value::instance(NO_INSTANCE), Value::unset()},
        {},
    });
    EXPECT_EQ(csv, "name;1;0.13;true;;-4;\n\n");
}

TEST_F(CsvTest, OnlyCellsThatNeedItAreQuoted) {
    const std::string csv = csv_from_rows({{
        "plain text, with comma",
        "level;one.txt",
        "say \"hi\"",
        "two\nlines",
        "carriage\rreturn",
        "",
    }});
    EXPECT_EQ(csv,
              "plain text, with comma;\"level;one.txt\";\"say \"\"hi\"\"\";\"two\nlines\";"
              "\"carriage\rreturn\";\n");
}

// What the writer writes, the record reader reads back as the same records.
TEST_F(CsvTest, RecordsAreReadBackAsWrittenQuotedLineBreaksIncluded) {
    const std::string first = csv_from_rows({{"a", "two\nlines", "say \"x;y\""}});
    const std::string second = csv_from_rows({{1, 2}});
    const std::string text = first + second + "cut;\"short\n";
    const std::vector<CsvRecord> records = csv_records(text);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].begin, 0u);
    EXPECT_EQ(records[0].end, first.size());
    EXPECT_EQ(records[0].cells, 3u);
    EXPECT_EQ(records[1].end, first.size() + second.size());
    EXPECT_EQ(records[1].cells, 2u);
    EXPECT_EQ(csv_records(text, first.size()).size(), 1u);
    EXPECT_TRUE(csv_records("no line break").empty());
}

TEST_F(CsvTest, QuotingFollowsTheChosenDelimiter) {
    EXPECT_EQ(csv_from_rows({{"a,b", "c;d"}}, ','), "\"a,b\",c;d\n");
}

TEST_F(CsvTest, NestedContainersAreRefused) {
    for (const Value& cell : {Value::array({1}), Value::make_struct()}) {
        log.lines.clear();
        EXPECT_EQ(csv_from_rows({{"ok"}, {1, cell}}), "");
        ASSERT_EQ(log.lines.size(), 1u);
        EXPECT_EQ(log.lines[0].level, LogLevel::error);
        EXPECT_EQ(log.lines[0].message,
                  "Array contains a nested struct or array. This is incompatible with CSV");
    }
}

TEST_F(CsvTest, MethodsAreRefused) {
    Value method = Value::method([](const Value&, std::span<const Value>) { return Value(); });
    EXPECT_EQ(csv_from_rows({{method}}), "");
    EXPECT_TRUE(log.contains("Functions/methods cannot be serialised"));
}

}  // namespace
}  // namespace veldra
