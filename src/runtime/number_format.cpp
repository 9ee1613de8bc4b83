#include "runtime/number_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

namespace veldra {

namespace {

// Rounds a plain decimal ("12.345", "0.999", "42") half away from zero to two decimals and
// drops trailing zeros and a bare point. Works on digits, so no binary rounding error creeps in.
void round_decimal_text(std::string& digits) {
    const auto point = digits.find('.');
    if (point == std::string::npos)
        return;
    const bool round_up = digits.size() > point + 3 && digits[point + 3] >= '5';
    digits.resize(std::min(digits.size(), point + 3));
    if (round_up) {
        std::size_t i = digits.size();
        bool carry = true;
        while (carry && i > 0) {
            char& digit = digits[--i];
            if (digit == '.')
                continue;
            carry = digit == '9';
            digit = carry ? '0' : static_cast<char>(digit + 1);
        }
        if (carry)
            digits.insert(digits.begin(), '1');
    }
    while (digits.back() == '0')
        digits.pop_back();
    if (digits.back() == '.')
        digits.pop_back();
}

void append_quoted(std::string& out, const std::string& text) {
    out += '"';
    for (char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                out += c;
        }
    }
    out += '"';
}

class ValueWriter {
public:
    void write(const Value& value, bool quote_strings) {
        if (value.is_string()) {
            if (quote_strings) {
                append_quoted(out_, value.as_string());
            } else {
                out_ += value.as_string();
            }
        } else if (value.is_array()) {
            write_array(value);
        } else if (value.is_struct()) {
            write_struct(value);
        } else {
            out_ += scalar_text(value);
        }
    }
    std::string take() { return std::move(out_); }

private:
    static std::string scalar_text(const Value& value) {
        switch (value.kind()) {
            case ValueKind::number:
            case ValueKind::instance:
                return number_to_string(value.as_number());
            case ValueKind::boolean:
                return value.as_bool() ? "true" : "false";
            case ValueKind::method:
                return "method";
            default:
                return "undefined";
        }
    }
    void write_array(const Value& array) {
        out_ += "[ ";
        bool first = true;
        for (const Value& item : array.items()) {
            if (!first)
                out_ += ',';
            first = false;
            write(item, true);
        }
        out_ += first ? "]" : " ]";
    }
    void write_struct(const Value& object) {
        if (std::find(path_.begin(), path_.end(), object.identity()) != path_.end()) {
            out_ += "<cycle>";
            return;
        }
        path_.push_back(object.identity());
        out_ += "{ ";
        bool first = true;
        for (const StructField& field : object.fields()) {
            if (!first)
                out_ += ", ";
            first = false;
            out_ += field.name;
            out_ += " : ";
            write(field.value, true);
        }
        out_ += first ? "}" : " }";
        path_.pop_back();
    }

    std::string out_;
    std::vector<const void*> path_;  // structs being written, outermost first
};

}  // namespace

std::string number_to_string(double number) {
    if (std::isnan(number))
        return "nan";
    if (std::isinf(number))
        return number < 0 ? "-inf" : "inf";
    // The longest plain form of a double (5e-324) is 326 characters.
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, std::fabs(number), std::chars_format::fixed);
    std::string digits(buffer, result.ptr);
    round_decimal_text(digits);
    if (number < 0 && digits != "0")
        digits.insert(digits.begin(), '-');
    return digits;
}

std::string to_string(const Value& value) {
    if (value.is_string())
        return value.as_string();
    ValueWriter writer;
    writer.write(value, false);
    return writer.take();
}

}  // namespace veldra
