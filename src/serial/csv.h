#pragma once
// Rows of values as CSV text, one line per row, each ending with "\n" so that lines written by
// separate calls (a header now, a record later) join into one file.

#include <string>
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

}  // namespace veldra
