#include "SeenRequest.h"

#include <json/json.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <exception>
#include <memory>

namespace Example {

namespace {

bool ReadObject(std::string const& text, Json::Value& value) {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
    try {
        return reader->parse(text.data(), text.data() + text.size(), &value, nullptr) && value.isObject();
    } catch (std::exception const&) {
        return false;  // nested deeper than the reader goes
    }
}

std::string Printable(std::string const& text) {
    std::string shown;
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7F) {
            shown += c;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02X", byte);
        shown += escape;
    }
    return shown;
}

std::string Shown(std::string const& text) {
    if (text.empty()) {
        return "(none)";
    }
    Json::Value value;
    if (!ReadObject(text, value)) {
        return "(no JSON object) " + Printable(text);
    }
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Printable(Json::writeString(builder, value));
}

bool IsDecimal(std::string const& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

}  // namespace

std::string SeenRequest::Complaint() const {
    Json::Value value;
    if (!ReadObject(comParams, value)) {
        return "com_params is not a JSON object";
    }
    for (std::string const& name : value.getMemberNames()) {
        if (!value[name].isString()) {
            return "com_params: a member is not a string";
        }
    }
    if (!ReadObject(bizParams, value) || !value["rule_id"].isInt()) {
        return "biz_params is not a JSON object with an integer rule_id";
    }
    return IsDecimal(r) ? "" : "r is not a number of seconds";
}

std::string SeenRequest::Description() const {
    std::string text = Printable(method + " " + path);
    if (!uploadId.empty()) {
        return text + Printable("  id=" + uploadId + "  part " + part + " of " + parts) + "  " +
               std::to_string(body.size()) + " bytes";
    }
    text += "  com_params=" + Shown(comParams);
    text += "  biz_params=" + Shown(bizParams);
    text += "  r=" + (r.empty() ? "(none)" : Printable(r));
    return text;
}

}  // namespace Example
