#include "ConfigDocument.h"

#include <json/json.h>

#include <memory>
#include <stdexcept>

namespace Example {

namespace {

Json::Value Parse(std::string const& text) {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
    Json::Value value;
    std::string problems;
    if (!reader->parse(text.data(), text.data() + text.size(), &value, &problems)) {
        throw std::runtime_error("configuration: " + problems);
    }
    return value;
}

std::string Write(Json::Value const& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return Json::writeString(builder, value);
}

void CheckSection(std::string const& name, Json::Value const& section) {
    if (!section.isObject()) {
        throw std::runtime_error("configuration: section '" + name + "' is not an object");
    }
    for (std::string const& key : section.getMemberNames()) {
        if (!section[key].isString() && !section[key].isInt()) {
            std::string problem = "configuration: '" + key;
            problem.append("' of section '").append(name);
            throw std::runtime_error(problem.append("' is neither a string nor a 32-bit integer"));
        }
    }
}

}  // namespace

ConfigDocument::ConfigDocument() : ConfigDocument(R"({"rule_id":0,"merged_cfg":{}})") {}

ConfigDocument::ConfigDocument(std::string const& text) {
    Json::Value const data = Parse(text);
    if (!data.isObject() || !data["rule_id"].isInt() || !data["merged_cfg"].isObject()) {
        throw std::runtime_error("configuration: needs an integer 'rule_id' and an object 'merged_cfg'");
    }
    Json::Value const& sections = data["merged_cfg"];
    for (std::string const& name : sections.getMemberNames()) {
        CheckSection(name, sections[name]);
        _keys += sections[name].size();
    }
    _sections = sections.size();
    Json::Value answer;
    answer["ret"] = 0;
    answer["err"] = "";
    answer["biz_data"] = data;
    _answer = Write(answer);
}

std::string ConfigDocument::Refusal(std::string const& reason) {
    Json::Value answer;
    answer["ret"] = 1;
    answer["err"] = reason;
    return Write(answer);
}

}  // namespace Example
