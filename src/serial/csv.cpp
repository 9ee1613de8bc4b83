#include "serial/csv.h"

#include "runtime/log.h"
#include "runtime/number_format.h"

namespace veldra {

namespace {

void append_text_cell(std::string& out, const std::string& text, char delimiter) {
    const char special[] = {delimiter, '"', '\n', '\r'};
    if (text.find_first_of(special, 0, sizeof special) == std::string::npos) {
        out += text;
        return;
    }
    out += '"';
    for (char c : text) {
        if (c == '"')
            out += '"';
        out += c;
    }
    out += '"';
}

// Nullptr when the cell was written, else the message that refuses it.
const char* append_cell(std::string& out, const Value& cell, char delimiter) {
    switch (cell.kind()) {
        case ValueKind::string:
            append_text_cell(out, cell.as_string(), delimiter);
            return nullptr;
        case ValueKind::number:
        case ValueKind::instance:
            out += number_to_string(cell.as_number());
            return nullptr;
        case ValueKind::boolean:
            out += cell.as_bool() ? "true" : "false";
            return nullptr;
        case ValueKind::array:
        case ValueKind::structure:
            return "Array contains a nested struct or array. This is incompatible with CSV";
        case ValueKind::method:
            return "Functions/methods cannot be serialised";
        default:  // undefined and unset: an empty cell
            return nullptr;
    }
}

}  // namespace

std::string csv_from_rows(const std::vector<std::vector<Value>>& rows, char delimiter) {
    std::string out;
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (i > 0)
                out += delimiter;
            if (const char* refusal = append_cell(out, row[i], delimiter)) {
                log_error(refusal);
                return {};
            }
        }
        out += '\n';
    }
    return out;
}

std::vector<CsvRecord> csv_records(std::string_view text, std::size_t from, char delimiter) {
    std::vector<CsvRecord> records;
    CsvRecord record{from, from, 1};
    bool quoted = false;
    // A doubled quote inside a quoted cell toggles twice: it changes nothing, as it should.
    for (std::size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            quoted = !quoted;
        } else if (quoted) {
            continue;
        } else if (c == delimiter) {
            ++record.cells;
        } else if (c == '\n') {
            record.end = i + 1;
            records.push_back(record);
            record = CsvRecord{i + 1, i + 1, 1};
        }
    }
    return records;
}

}  // namespace veldra
