#include "ServerAnswer.h"

#include <stdexcept>

namespace Example {

namespace {

constexpr size_t kNesting = 100000;
constexpr size_t kHugeBody = size_t{64} * 1024 * 1024;

struct GarbageKind {
    char const* name;
    char const* meaning;
    std::string (*body)();
};

std::string Answer(std::string const& sections) {
    return R"({"ret":0,"err":"","biz_data":{"rule_id":1,"merged_cfg":)" + sections + "}}";
}

std::string HalfAnAnswer() {
    std::string const whole = Answer(R"({"Match":{"region":"north","players":8}})");
    return whole.substr(0, whole.size() / 2);
}

std::string Nested() {
    return Answer(R"({"Match":{"deep":)" + std::string(kNesting, '[') + std::string(kNesting, ']') + "}}");
}

std::string Binary() {
    return R"({"ret":0,"err":")" + std::string(8, '\0') + "\xC3\x28\xFF\"}";
}

GarbageKind const kKinds[] = {
    {"empty", "no byte at all", [] { return std::string(); }},
    {"html", "the log-in page of a captive portal",
     [] { return std::string("<!DOCTYPE html><html><title>Log in</title><body>Welcome!</body></html>"); }},
    {"text", "words that are no JSON", [] { return std::string("service temporarily out of order"); }},
    {"array", "JSON, but not an object", [] { return std::string(R"([{"ret":0}])"); }},
    {"half", "an answer that stops in the middle, under its true length", HalfAnAnswer},
    {"refused", "an answer whose ret is not 0",
     [] { return std::string(R"({"ret":1203,"err":"rule store out of reach"})"); }},
    {"kinds", "members of the wrong kinds",
     [] { return std::string(R"({"ret":"0","err":7,"biz_data":{"merged_cfg":{"Match":[1,2,3]}}})"); }},
    {"range", "an integer beyond 32 bits", [] { return Answer(R"({"Match":{"players":4294967296}})"); }},
    {"nested", "100,000 arrays inside each other", Nested},
    {"binary", "zero bytes and invalid UTF-8", Binary},
    {"huge", "64 MiB of blanks", [] { return std::string(kHugeBody, ' '); }},
};

}  // namespace

std::string GarbageKinds() {
    std::string text;
    for (GarbageKind const& kind : kKinds) {
        text += std::string("  ") + kind.name + ": " + kind.meaning + "\n";
    }
    return text;
}

std::string GarbageBody(std::string const& kind) {
    for (GarbageKind const& known : kKinds) {
        if (kind == known.name) {
            return known.body();
        }
    }
    throw std::invalid_argument("unknown kind of garbage: " + kind);
}

}  // namespace Example
