#pragma once
// How the game writes numbers and values as text: `string(value)`, CSV cells, log lines.

#include <string>

#include "runtime/value.h"

namespace veldra {

// Whole numbers without a decimal point ("-1", "4294967296"); others rounded half away from
// zero to at most two decimals, trailing zeros dropped ("0.5", "12.35" for 12.345). The
// rounding works on the shortest decimal form that reads back as the same double, so 1.005
// gives "1.01" as a reader of the source would expect. A result that rounds to zero is "0",
// never "-0"; NaN is "nan", infinities "inf" and "-inf". Independent of the C locale.
std::string number_to_string(double number);

// The text of any value: numbers as above, instance references by id, "true"/"false",
// "undefined" (unset too), strings as they are, "method". Arrays and structs are written in a
// readable JSON-like form in which strings are quoted and escaped: `[ 1,"a",[ ] ]`,
// `{ name : "Ann", age : 30 }`, `{ }`. A struct met again inside itself is written as
// `<cycle>`.
std::string to_string(const Value& value);

}  // namespace veldra
