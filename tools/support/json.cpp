#include "tools/support/json.h"

#include "tools/support/utf8.h"

#include <cmath>
#include <cstdio>

namespace orvane::tools {

std::string JsonText(const std::string& bytes) {
    std::string text = "\"";
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = Utf8Length(bytes, at);
        if (length == 0) {
            text += "\\ufffd";
            at += 1;
        } else if (length > 1) {
            text.append(bytes, at, length);
            at += length;
        } else {
            const char c = bytes[at++];
            if (c == '"' || c == '\\') {
                text += {'\\', c};
            } else if (static_cast<unsigned char>(c) < 0x20) {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
                text += escape;
            } else {
                text += c;
            }
        }
    }
    return text + '"';
}

JsonObject& JsonObject::Add(const char* key, const std::string& value) {
    if (!members_.empty()) members_ += ",";
    members_ += JsonText(key) + ":" + value;
    return *this;
}

JsonObject& JsonObject::Text(const char* key, const std::string& bytes) { return Add(key, JsonText(bytes)); }
JsonObject& JsonObject::Integer(const char* key, std::int64_t value) { return Add(key, std::to_string(value)); }
JsonObject& JsonObject::Null(const char* key) { return Add(key, "null"); }
JsonObject& JsonObject::Flag(const char* key, bool value) { return Add(key, value ? "true" : "false"); }
JsonObject& JsonObject::Object(const char* key, const JsonObject& value) { return Add(key, value.Line()); }

JsonObject& JsonObject::Objects(const char* key, const std::vector<JsonObject>& values) {
    std::string array = "[";
    for (const JsonObject& value : values) {
        if (array.size() > 1) array += ',';
        array += value.Line();
    }
    return Add(key, array + ']');
}

JsonObject& JsonObject::Decimal(const char* key, double value) {
    if (!std::isfinite(value)) return Null(key);
    char text[400]; // the widest double has 309 digits before the point
    std::snprintf(text, sizeof text, "%.3f", value);
    return Add(key, text);
}

} // namespace orvane::tools
