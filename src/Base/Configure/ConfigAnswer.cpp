#include "Base/Configure/ConfigAnswer.h"

#include <new>
#include <string>
#include <string_view>

#include "Base/Configure/JsonCpp.h"
#include "Base/Configure/JsonExtent.h"
#include "Platform/MemoryWant.h"
#include "Storage/File/IniText.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

namespace {

constexpr char kFunction[] = "Velmor::ConfigureImpl::_ParseJsonObject";

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

bool CanBeStored(std::string const& name, bool isModule) {
    return name.size() <= kLongestAnswerName &&
           (isModule ? Ubrix::IniText::CanBeSection(name) : Ubrix::IniText::CanBeKey(name));
}

// Takes the modules out of a parsed answer. Keys that can't be used are left out with a line each, as far as
// the answer's budget goes.
class ModuleReader {
public:
    // `text` is what `config` was parsed from.
    ModuleReader(std::string_view text, ConfigAnswer& answer) : _text(text), _answer(answer) {}

    // False for a member of a wrong kind, or an integer that 32 bits don't hold.
    bool ReadAll(Ubrix_Json::Value const& config) {
        if (config.isNull()) {
            return true;
        }
        for (std::string const& name : config.getMemberNames()) {
            Ubrix_Json::Value const& keys = config[name];
            Ubrix::Value module;
            if (!IsObjectOrNull(keys) || (keys.isObject() && !ReadModule(keys, module))) {
                return false;
            }
            if (CanBeStored(name, true)) {
                _answer.modules[name.c_str()].swap(module);
            } else {
                TellOfName("module", name);
            }
        }
        return true;
    }

private:
    // A module without a usable key stays null.
    bool ReadModule(Ubrix_Json::Value const& keys, Ubrix::Value& module) {
        for (std::string const& name : keys.getMemberNames()) {
            Ubrix_Json::Value const& value = keys[name];
            if (IsIntegerText(value) && !value.isInt()) {
                return false;
            }
            if (!value.isString() && !IsInteger(value)) {
                if (_answer.complaints.Allows()) {
                    VC_LOG(Error, kFunction, "valueType not support yet");
                }
            } else if (!CanBeStored(name, false)) {
                TellOfName("key", name);
            } else if (value.isString()) {
                Ubrix::Value(FitText(name, value.asString()).c_str()).swap(module[name.c_str()]);
            } else {
                module[name.c_str()] = Ubrix::Value(value.asInt());
            }
        }
        return true;
    }

    // Written as an integer, of whatever size: one beyond 64 bits is a real to the parser.
    bool IsIntegerText(Ubrix_Json::Value const& value) const {
        if (value.type() != Ubrix_Json::realValue) {
            return IsInteger(value);
        }
        auto const begin = static_cast<std::size_t>(value.getOffsetStart());
        auto const end = static_cast<std::size_t>(value.getOffsetLimit());
        return _text.substr(begin, end - begin).find_first_not_of("-0123456789") == std::string_view::npos;
    }

    // What the cache's file holds of a text, and a line if that isn't all of it.
    std::string FitText(std::string const& key, std::string text) {
        std::size_t const length = Ubrix::IniText::FirstLine(text).size();
        if (length < text.size()) {
            TellOfText(key, "is taken up to its first line end");
        } else if (!Ubrix::IniText::ComesBackWhole(text)) {
            TellOfText(key, "has an empty text, a \"#\" or blanks at its ends: it doesn't come back whole");
        }
        text.resize(length);
        return text;
    }

    void TellOfText(std::string const& key, char const* what) {
        if (_answer.complaints.Allows()) {
            VC_LOG(Warning, kFunction, "value of key %s %s", Ubrix::ForeignText(key).c_str(), what);
        }
    }

    void TellOfName(char const* kind, std::string const& name) {
        if (_answer.complaints.Allows()) {
            VC_LOG(Error, kFunction, "name of %s %s can't be stored, left out", kind,
                   Ubrix::ForeignText(name).c_str());
        }
    }

    std::string_view const _text;
    ConfigAnswer& _answer;
};

// The server's own verdict.
struct Verdict {
    int code = 0;
    std::string message;
};

// False if a member has a wrong kind.
bool ReadRoot(Ubrix_Json::Value const& root, std::string_view text, ConfigAnswer& answer, Verdict& verdict) {
    if (!ReadInteger(Member(root, "ret"), verdict.code) || !ReadText(Member(root, "err"), verdict.message)) {
        return false;
    }
    if (verdict.code != 0) {
        return true;
    }
    Ubrix_Json::Value const& data = Member(root, "biz_data");
    if (!IsObjectOrNull(data)) {
        return false;
    }
    Ubrix_Json::Value const& config = Member(data, "merged_cfg");
    return ReadInteger(Member(data, "rule_id"), answer.ruleId) && IsObjectOrNull(config) &&
           ModuleReader(text, answer).ReadAll(config);
}

bool IsAffordable(std::string_view text) {
    if (text.size() <= kLongestAnswer) {
        JsonExtent const extent = MeasureJson(text);
        if (extent.values <= kMostAnswerValues && extent.depth <= kDeepestAnswer) {
            return true;
        }
    }
    VC_LOG(Warning, kFunction, "answer is longer, fuller or deeper than one may be, not read");
    return false;
}

int Parse(std::string_view text, ConfigAnswer& answer) {
    Ubrix_Json::Value root;
    if (!IsAffordable(text) || !ParseJson(text, root)) {
        VC_LOG(Error, kFunction, "parse json error");
        return kBadAnswer;
    }
    if (!IsObjectOrNull(root)) {
        VC_LOG(Error, kFunction, "json is not Object");
        return kAnswerIsNoObject;
    }
    Verdict verdict;
    if (!ReadRoot(root, text, answer, verdict)) {
        VC_LOG(Error, kFunction, "parse json error");
        return kBadAnswer;
    }
    if (verdict.code != 0) {
        VC_LOG(Error, kFunction, "Configue error code %d, msg %s", verdict.code,
               Ubrix::ForeignText(verdict.message).c_str());
        return kBadAnswer;
    }
    return 0;
}

}  // namespace

int ParseConfigAnswer(char const* json, std::uint64_t length, ConfigAnswer& answer) {
    if (json == nullptr || length == 0) {
        VC_LOG(Error, kFunction, "jsonStr == NULL || len == 0");
        return kBadAnswer;
    }
    std::string_view const text(json, static_cast<std::size_t>(length));
    VC_LOG(Info, kFunction, "ParseJsonObject : %s", Ubrix::ForeignText(text).c_str());
    int result = kBadAnswer;
    try {
        Ubrix::Platform::UnwindScope const scope;
        result = Parse(text, answer);
    } catch (std::bad_alloc const&) {
        VC_LOG(Error, kFunction, "parse json error");
    }
    if (result != 0) {
        // Half of an answer is none. The budget stays: its lines are written.
        Ubrix::Value().swap(answer.modules);
    }
    return result;
}

}  // namespace Velmor
