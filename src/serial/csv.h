#pragma once
// Rows of values as CSV text, one line per row, each ending with "\n" so that lines written by
// separate calls (a header now, a record later) join into one file.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/value.h"

namespace veldra {

// Cells are joined by `delimiter`. A string is written as it stands unless it holds the
// delimiter, a double quote or a line break; then it is enclosed in double quotes with inner
// quotes doubled. Numbers (and instance ids) are written as number_to_string writes them,
// bools as "true"/"false", undefined and unset as an empty cell so the columns stay aligned.
// A struct or array cell ("Array contains a nested struct or array. This is incompatible with
// CSV") or a method cell ("Functions/methods cannot be serialised") is logged with log_error
// and the whole call gives "" (no partial lines).
std::string csv_from_rows(const std::vector<std::vector<Value>>& rows, char delimiter = ';');

// One complete record of CSV text as csv_from_rows writes it: [begin, end), the closing "\n"
// included, and its number of cells. A line break inside a quoted cell belongs to the record.
struct CsvRecord {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t cells = 0;
};

// The complete records of `text` in order, from `from` on. Text after the last line break that
// stands outside quotes (a record cut short) is no record.
std::vector<CsvRecord> csv_records(std::string_view text, std::size_t from = 0,
                                   char delimiter = ';');

}  // namespace veldra
