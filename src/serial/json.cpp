#include "serial/json.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "runtime/log.h"

namespace veldra {

namespace {

using Json = nlohmann::ordered_json;

// Deeper documents are refused rather than risking the stack in the recursive conversions.
constexpr int MAX_DEPTH = 512;
// Every integer up to this magnitude is exact in a double.
constexpr double MAX_EXACT_INTEGER = 9007199254740992.0;

std::optional<Value> from_json(const Json& json, int depth) {
    if (depth > MAX_DEPTH)
        return std::nullopt;
    switch (json.type()) {
        case Json::value_t::boolean:
            return Value(json.get<bool>());
        case Json::value_t::number_integer:
            return Value(json.get<std::int64_t>());
        case Json::value_t::number_unsigned:
            return Value(json.get<std::uint64_t>());
        case Json::value_t::number_float:
            return Value(json.get<double>());
        case Json::value_t::string:
            return Value(json.get_ref<const std::string&>());
        case Json::value_t::array: {
            std::vector<Value> items;
            items.reserve(json.size());
            for (const auto& element : json) {
                auto item = from_json(element, depth + 1);
                if (!item)
                    return std::nullopt;
                items.push_back(std::move(*item));
            }
            return Value::array(std::move(items));
        }
        case Json::value_t::object: {
            Value object = Value::make_struct();
            for (const auto& [key, element] : json.items()) {
                auto field = from_json(element, depth + 1);
                if (!field)
                    return std::nullopt;
                object.set(key, std::move(*field));
            }
            return object;
        }
        default:  // null, and the binary and discarded kinds JSON text never produces
            return Value();
    }
}

Json number_to_json(double number) {
    if (!std::isfinite(number))
        return nullptr;
    if (number == std::trunc(number) && std::fabs(number) <= MAX_EXACT_INTEGER)
        return static_cast<std::int64_t>(number);
    return number;
}

class JsonWriter {
public:
    // False with error() set when the value cannot be written.
    bool write(const Value& value, Json& out, int depth) {
        if (depth > MAX_DEPTH)
            return fail("Value is nested too deeply to be serialised");
        switch (value.kind()) {
            case ValueKind::number:
            case ValueKind::instance:
                out = number_to_json(value.as_number());
                return true;
            case ValueKind::boolean:
                out = value.as_bool();
                return true;
            case ValueKind::string:
                out = value.as_string();
                return true;
            case ValueKind::array:
                return write_array(value, out, depth);
            case ValueKind::structure:
                return write_struct(value, out, depth);
            case ValueKind::method:
                return fail("Functions/methods cannot be serialised");
            default:
                out = nullptr;
                return true;
        }
    }
    const std::string& error() const { return error_; }

private:
    bool fail(const char* message) {
        error_ = message;
        return false;
    }
    bool write_array(const Value& array, Json& out, int depth) {
        out = Json::array();
        for (const Value& item : array.items()) {
            Json element;
            if (!write(item, element, depth + 1))
                return false;
            out.push_back(std::move(element));
        }
        return true;
    }
    bool write_struct(const Value& object, Json& out, int depth) {
        if (std::find(path_.begin(), path_.end(), object.identity()) != path_.end())
            return fail("Struct refers to itself and cannot be serialised");
        path_.push_back(object.identity());
        out = Json::object();
        for (const StructField& field : object.fields()) {
            Json element;
            if (!write(field.value, element, depth + 1))
                return false;
            out[field.name] = std::move(element);
        }
        path_.pop_back();
        return true;
    }

    std::vector<const void*> path_;  // structs being written, outermost first
    std::string error_;
};

}  // namespace

Value json_to_value(const nlohmann::ordered_json& json) {
    auto value = from_json(json, 0);
    return value ? std::move(*value) : Value();
}

nlohmann::ordered_json value_to_json(const Value& value) {
    JsonWriter writer;
    Json out;
    if (writer.write(value, out, 0))
        return out;
    log_error(writer.error());
    return Json(Json::value_t::discarded);
}

namespace {

struct TextPosition {
    std::size_t line = 1;
    std::size_t column = 1;
};

TextPosition position_of(std::string_view text, std::size_t offset) {
    TextPosition at;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        if (text[i] == '\n') {
            ++at.line;
            at.column = 1;
        } else {
            ++at.column;
        }
    }
    return at;
}

std::string position_text(TextPosition at) {
    return "line " + std::to_string(at.line) + ", column " + std::to_string(at.column);
}

// Where the nesting first goes deeper than MAX_JSON_DEPTH, outside strings; npos when it never
// does. Checked before parsing so that no reader builds (or later walks) a deeper document.
std::size_t too_deep_at(std::string_view text) {
    int depth = 0;
    bool in_string = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (in_string) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                in_string = false;
        } else if (c == '"') {
            in_string = true;
        } else if (c == '[' || c == '{') {
            if (++depth > MAX_JSON_DEPTH)
                return i;
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return std::string_view::npos;
}

// nlohmann's message without its "[json.exception.parse_error.101] " tag and, for a parse error,
// without the "parse error at line 1, column 2: " that names a position we give ourselves.
std::string parse_error_reason(const std::string& what) {
    std::string reason =
        what.substr(what.find("] ") == std::string::npos ? 0 : what.find("] ") + 2);
    if (reason.starts_with("parse error") && reason.find(": ") != std::string::npos)
        reason = reason.substr(reason.find(": ") + 2);
    return reason;
}

}  // namespace

JsonDocument json_parse_document(std::string_view text, bool ignore_comments) {
    JsonDocument document;
    document.json = Json(Json::value_t::discarded);
    if (const std::size_t at = too_deep_at(text); at != std::string_view::npos) {
        document.error = position_text(position_of(text, at)) + ": nested deeper than " +
                         std::to_string(MAX_JSON_DEPTH) + " levels";
        return document;
    }
    try {
        document.json = Json::parse(text.begin(), text.end(), nullptr, true, ignore_comments);
    } catch (const Json::parse_error& error) {
        // `byte` is one past the character that broke the parse.
        const std::size_t offset = error.byte > 0 ? error.byte - 1 : 0;
        document.error =
            position_text(position_of(text, offset)) + ": " + parse_error_reason(error.what());
    } catch (const Json::exception& error) {
        // A number beyond the range of a double ("1e999"), which nlohmann reports without a
        // position: its text is in the reason.
        document.json = Json(Json::value_t::discarded);
        document.error = parse_error_reason(error.what());
    }
    return document;
}

std::optional<Value> json_parse(std::string_view text) {
    const JsonDocument document = json_parse_document(text);
    if (!document)
        return std::nullopt;
    return from_json(document.json, 0);
}

std::string json_stringify(const Value& value, bool pretty) {
    const Json json = value_to_json(value);
    if (json.is_discarded())
        return {};
    return json.dump(pretty ? 4 : -1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace veldra
