#include "Base/Configure/ConfigAnswer.h"

#include <string>

#include "Base/Configure/JsonCpp.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

namespace {

constexpr char kFunction[] = "Velmor::ConfigureImpl::_ParseJsonObject";
constexpr int kBadAnswer = -1;
constexpr int kNotAnObject = -2;

// A member of an object, or null if it is absent.
Ubrix_Json::Value const& Member(Ubrix_Json::Value const& object, char const* name) {
    return object.isNull() ? Ubrix_Json::Value::nullSingleton() : object[name];
}

bool IsObjectOrNull(Ubrix_Json::Value const& value) {
    return value.isNull() || value.isObject();
}

bool IsInteger(Ubrix_Json::Value const& value) {
    return value.type() == Ubrix_Json::intValue || value.type() == Ubrix_Json::uintValue;
}

// An integer of 32 bits; an absent one is 0.
bool ReadInteger(Ubrix_Json::Value const& value, int& result) {
    if (value.isNull()) {
        result = 0;
        return true;
    }
    if (value.isBool() || !value.isInt()) {
        return false;
    }
    result = value.asInt();
    return true;
}

// A text; an absent one is empty.
bool ReadText(Ubrix_Json::Value const& value, std::string& result) {
    if (!value.isNull() && !value.isString()) {
        return false;
    }
    result = value.isNull() ? std::string() : value.asString();
    return true;
}

// One module's keys. A module without a usable key stays null.
bool ReadModule(Ubrix_Json::Value const& keys, Ubrix::Value& module) {
    for (std::string const& name : keys.getMemberNames()) {
        Ubrix_Json::Value const& value = keys[name];
        if (value.isString()) {
            module[name.c_str()] = Ubrix::Value(value.asCString());
        } else if (!IsInteger(value)) {
            VC_LOG(Error, kFunction, "valueType not support yet");
        } else if (value.isInt()) {
            module[name.c_str()] = Ubrix::Value(value.asInt());
        } else {
            return false;
        }
    }
    return true;
}

bool ReadModules(Ubrix_Json::Value const& config, Ubrix::Value& modules) {
    if (config.isNull()) {
        return true;
    }
    for (std::string const& name : config.getMemberNames()) {
        Ubrix_Json::Value const& keys = config[name];
        Ubrix::Value module;
        if (!IsObjectOrNull(keys) || (keys.isObject() && !ReadModule(keys, module))) {
            return false;
        }
        modules[name.c_str()] = module;
    }
    return true;
}

// False if a member has a wrong kind; `code` and `message` are the server's own verdict.
bool ReadRoot(Ubrix_Json::Value const& root, Ubrix::Value& modules, int& ruleId, int& code,
              std::string& message) {
    if (!ReadInteger(Member(root, "ret"), code) || !ReadText(Member(root, "err"), message)) {
        return false;
    }
    if (code != 0) {
        return true;
    }
    Ubrix_Json::Value const& data = Member(root, "biz_data");
    if (!IsObjectOrNull(data)) {
        return false;
    }
    Ubrix_Json::Value const& config = Member(data, "merged_cfg");
    return ReadInteger(Member(data, "rule_id"), ruleId) && IsObjectOrNull(config) &&
           ReadModules(config, modules);
}

}  // namespace

int ParseConfigAnswer(char const* json, std::uint64_t length, Ubrix::Value& modules, int& ruleId) {
    if (json == nullptr || length == 0) {
        VC_LOG(Error, kFunction, "jsonStr == NULL || len == 0");
        return kBadAnswer;
    }
    VC_LOG(Info, kFunction, "ParseJsonObject : %s",
           Ubrix::ForeignText(std::string_view(json, static_cast<std::size_t>(length))).c_str());
    Ubrix_Json::Value root;
    if (!ParseJson(std::string(json, static_cast<std::size_t>(length)), root)) {
        VC_LOG(Error, kFunction, "parse json error");
        return kBadAnswer;
    }
    if (!IsObjectOrNull(root)) {
        VC_LOG(Error, kFunction, "json is not Object");
        return kNotAnObject;
    }
    int code = 0;
    std::string message;
    Ubrix::Value read;
    int rule = 0;
    if (!ReadRoot(root, read, rule, code, message)) {
        VC_LOG(Error, kFunction, "parse json error");
        return kBadAnswer;
    }
    if (code != 0) {
        VC_LOG(Error, kFunction, "Configue error code %d, msg %s", code, Ubrix::ForeignText(message).c_str());
        return kBadAnswer;
    }
    modules.swap(read);
    ruleId = rule;
    return 0;
}

}  // namespace Velmor
