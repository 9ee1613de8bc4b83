#pragma once
// JSON to and from Value. Objects become structs with their fields in file order and back;
// null becomes undefined and undefined (or unset) becomes null; instance references are
// written as their ids.

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "runtime/value.h"

namespace veldra {

// Never fails for a document nlohmann accepted, except one nested deeper than 512 levels,
// which gives undefined.
Value json_to_value(const nlohmann::ordered_json& json);

// Whole numbers within +-2^53 are written as integers ("3", not "3.0"), so ids and counts read
// back exactly; NaN and infinities become null. A value that cannot be written (a method:
// "Functions/methods cannot be serialised"; a struct that holds itself; nesting deeper than 512)
// is logged with log_error and gives a discarded json (`result.is_discarded()`).
nlohmann::ordered_json value_to_json(const Value& value);

// Arrays and objects nested deeper than this are refused by every JSON reader: no file the
// game reads needs more than a handful of levels, and deeper ones only exhaust the stack.
inline constexpr int MAX_JSON_DEPTH = 64;

struct JsonDocument {
    nlohmann::ordered_json json;  // discarded when `error` is set
    // Empty on success, else where and what, for a message that names the file:
    // "line 3, column 14: syntax error while parsing object - unexpected '}'".
    std::string error;

    explicit operator bool() const { return error.empty(); }
};

// Parses a whole document; never throws, never logs (the caller says which file failed). With
// ignore_comments, "//" and "/* */" comments are allowed outside strings.
JsonDocument json_parse_document(std::string_view text, bool ignore_comments = false);

// nullopt for malformed or too deeply nested text; never throws, never logs (the caller says
// which file failed).
std::optional<Value> json_parse(std::string_view text);

// Pretty output is indented by four spaces. Invalid UTF-8 in strings is replaced by U+FFFD.
// Gives "" (never valid JSON) when value_to_json refused the value.
std::string json_stringify(const Value& value, bool pretty);

}  // namespace veldra
