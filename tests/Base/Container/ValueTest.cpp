#include <VelmorCore/Value.h>
#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>

#include "Support/ConsoleCapture.h"

using namespace Ubrix;

TEST(Value, TextThatLooksLikeANumberBecomesOne) {
    struct {
        char const* text;
        Value expected;
    } const cases[] = {
        {"123", 123}, {"-1.5", -1.5}, {"007", 7}, {"-.", 0.0}, {"123456789012345678", 123456789012345678LL},
    };
    for (auto const& c : cases) {
        EXPECT_TRUE(Value(c.text) == c.expected) << c.text;
    }
    for (char const* text : {"0123456789012345678", "abc", "", "1e3", "1-2.5"}) {
        EXPECT_TRUE(Value(text).isString()) << text;
        EXPECT_STREQ(Value(text).asCString(), text);
    }
    EXPECT_TRUE(Value(static_cast<char const*>(nullptr)) == Value(StringValue));
    EXPECT_STREQ(Value(StringValue).asCString(), "");
}

TEST(Value, ConvertsByTheTable) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        Value value;
        int int32;
        unsigned int uint32;
        long long int64;
        unsigned long long uint64;
        bool boolean;
        float real;
        char const* text;
    } const cases[] = {
        {Value(), 0, 0, 0, 0, false, 0, ""},
        {-1, -1, UINT_MAX, -1, ULLONG_MAX, true, -1, "-1"},
        {0x100000000LL, 0, 0, 0x100000000LL, 0x100000000ULL, true, 4294967296.0F, "4294967296"},
        {ULLONG_MAX, -1, UINT_MAX, -1, ULLONG_MAX, true, 18446744073709551616.0F, "-1"},
        {1.5, 1, 1, 1, 1, true, 1.5F, "1.500000"},
        {0.1, 0, 0, 0, 0, true, 0.1F, "0.100000"},
        {-2.5, -2, UINT_MAX - 1, -2, ULLONG_MAX - 1, true, -2.5F, "-2.500000"},
        {3000000000.0, INT_MIN, 3000000000U, INT_MIN, 3000000000ULL, true, 3e9F, "3000000000.000000"},
        {1.8e19, INT_MIN, 3305635840U, INT_MIN, 18000000000000000000ULL, true, 1.8e19F,
         "18000000000000000000.000000"},
        {true, 1, 1, 1, 1, true, 1, "true"},
        {false, 0, 0, 0, 0, false, 0, "false"},
    };
    ::Test::ConsoleCapture console;
    for (auto const& c : cases) {
        EXPECT_EQ(c.value.asInt32(), c.int32) << c.text;
        EXPECT_EQ(c.value.asUInt32(), c.uint32) << c.text;
        EXPECT_EQ(c.value.asInt64(), c.int64) << c.text;
        EXPECT_EQ(c.value.asUInt64(), c.uint64) << c.text;
        EXPECT_EQ(c.value.asBool(), c.boolean) << c.text;
        EXPECT_EQ(c.value.asDouble(), c.real) << c.text;
        EXPECT_STREQ(c.value.asString().c_str(), c.text);
    }
    EXPECT_EQ(Value(nan).asInt64(), INT_MIN);
    EXPECT_EQ(Value(nan).asUInt64(), 1ULL << 63);
    EXPECT_EQ(Value(std::numeric_limits<double>::max()).asString().length(), 309 + 7);
    EXPECT_TRUE(Value("true").asBool());
    EXPECT_TRUE(Value("true").isBool());
    EXPECT_TRUE(Value("false").isBool());
    EXPECT_FALSE(Value("TRUE").asBool());
    EXPECT_FALSE(Value("TRUE").isBool());
    EXPECT_STREQ(Value(true).asCString(), "true");
    EXPECT_STREQ(Value().asCString(), "");
}

TEST(Value, LogsWhatItCannotConvert) {
    Value const text("x");
    Value const array(ArrayValue);
    auto const foreign = static_cast<ValueType>(8);
    struct {
        void (*convert)(Value const& value);
        Value value;
        char const *level, *function, *message;
    } const cases[] = {
        {[](Value const& v) { EXPECT_EQ(v.asInt32(), 0); }, text, "Warning", "asInt32",
         "Type is not convertible to int"},
        {[](Value const& v) { EXPECT_EQ(v.asUInt32(), 0U); }, array, "Warning", "asUInt32",
         "Type is not convertible to uint"},
        {[](Value const& v) { EXPECT_EQ(v.asInt64(), 0); }, text, "Warning", "asInt64",
         "Type is not convertible to Int64"},
        {[](Value const& v) { EXPECT_EQ(v.asUInt64(), 0U); }, text, "Warning", "asUInt64",
         "Type is not convertible to UInt64"},
        {[](Value const& v) { EXPECT_EQ(v.asUInt64(), ULLONG_MAX - 6); }, Value(-7), "Warning", "asUInt64",
         "Negative integer can not be converted to UInt64"},
        {[](Value const& v) { EXPECT_EQ(v.asFloat(), 0.0F); }, text, "Error", "asDouble",
         "Type is not convertible to double"},
        {[](Value const& v) { EXPECT_TRUE(v.asString().empty()); }, array, "Error", "asString",
         "Type is not convertible to String"},
        {[](Value const& v) { EXPECT_STREQ(v.asCString(), ""); }, Value("42"), "Error", "asCString",
         "Type is not convertible to String"},
        {[](Value const& v) { EXPECT_FALSE(v.asBool()); }, Value(foreign), "Error", "asBool",
         "Unsupported type:8"},
        {[](Value const& v) { EXPECT_EQ(v.asInt32(), 0); }, Value(foreign), "Error", "asInt32",
         "Unsupported type:8"},
        {[](Value const& v) { EXPECT_FALSE(v < v); }, Value(foreign), "Error", "operator <",
         "Unsupported type:8"},
        {[](Value const& v) { EXPECT_FALSE(v == v); }, Value(foreign), "Error",
         "operator ==", "Unsupported type:8"},
        {[](Value const& v) { static_cast<void>(Value(v.type())); }, Value(foreign), "Error", "Value",
         "Unsupport type:8"},
    };
    for (auto const& c : cases) {
        ::Test::ConsoleCapture console;
        c.convert(c.value);
        EXPECT_TRUE(console.Has(std::string("|Ubrix::Value::") + c.function + "| " + c.message))
            << console.Text();
        EXPECT_TRUE(console.Has(std::string("| ") + c.level + " |")) << console.Text();
    }
    ::Test::ConsoleCapture console;
    EXPECT_EQ(Value(foreign).asInt64(), 0);
    EXPECT_FALSE(console.Has("asInt64"));
}

TEST(Value, MakesEntriesOnWritingOnly) {
    Value object;
    object["a"] = 1;
    EXPECT_TRUE(object.isObject());
    EXPECT_TRUE(object["b"].isNull());
    EXPECT_EQ(object.Size(), 2);
    Value const& read = object;
    EXPECT_EQ(&read["absent"], &Value::Null);
    EXPECT_EQ(object.Size(), 2);
    EXPECT_EQ(&Value::Null["x"], &Value::Null);
    EXPECT_EQ(&Value::Null[0], &Value::Null);

    Value array;
    array[3] = true;
    array[-1] = "x";
    EXPECT_TRUE(array.isArray());
    EXPECT_EQ(array.Size(), 2);
    EXPECT_EQ(&static_cast<Value const&>(array)[0], &Value::Null);

    Value const copy(object);
    object["a"] = 2;
    EXPECT_EQ(copy["a"].asInt32(), 1);
    object["self"] = object;
    object = object["self"];
    EXPECT_EQ(object["a"].asInt32(), 2);
    EXPECT_TRUE(object["self"].isNull()) << "the entry was made before the value was copied into it";
    std::string key("key");
    Value named;
    named[key.c_str()] = "text";
    key = "other";
    EXPECT_STREQ(static_cast<Value const&>(named)["key"].asCString(), "text");
    named.swap(object);
    EXPECT_TRUE(object["key"].isString());
}

TEST(Value, RefusesTheWrongContainer) {
    Value object;
    object["a"] = 1;
    Value const& read = object;
#ifdef NDEBUG
    ::Test::ConsoleCapture console;
    object[0] = 5;
    Value(3)["x"] = 5;
    EXPECT_TRUE(read[0].isNull());
    EXPECT_TRUE(object[0].isNull());
    EXPECT_EQ(object.Size(), 1);
    EXPECT_TRUE(console.Has("Type is not an array:7"));
    EXPECT_TRUE(console.Has("Type is not an object:1"));
#else
    EXPECT_DEATH(object[0] = 5, "_type == ArrayValue \\|\\| _type == NullValue");
    EXPECT_DEATH(static_cast<void>(read[0]), "_type == ArrayValue \\|\\| _type == NullValue");
    EXPECT_DEATH(Value(3)["x"] = 5, "_type == ObjectValue \\|\\| _type == NullValue");
#endif
}

TEST(Value, IteratesInTheOrderOfItsKeys) {
    Value object;
    for (char const* key : {"b", "12", "a"}) {
        object[key] = key;
    }
    std::string names;
    for (ValueIterator at = object.begin(); at != object.end(); ++at) {
        names += at.memberName();
        EXPECT_EQ(at.index(), -1);
        *at = at.key();
    }
    EXPECT_EQ(names, "12ab");
    EXPECT_TRUE(object.begin().key().isInt());
    EXPECT_TRUE(object["12"].isInt());

    Value array;
    for (int index : {5, -2, 3}) {
        array[index] = index;
    }
    Value const& read = array;
    std::string order;
    for (Value const& entry : read) {
        order += entry.asString().c_str();
    }
    EXPECT_EQ(order, "-235");

    ValueConstIterator at = read.begin();
    ValueConstIterator const first = at++;
    EXPECT_EQ(first.index(), -2);
    EXPECT_STREQ(first.memberName(), "");
    EXPECT_EQ(at.key().asInt32(), 3);
    EXPECT_EQ(first - read.end(), 3);
    EXPECT_EQ(read.end() - at, -2);
    EXPECT_TRUE(at-- != first);
    EXPECT_TRUE(at == first);
    --at;
    EXPECT_TRUE(at == first) << "no step before the first";
    at = read.end();
    ++at;
    EXPECT_TRUE(at == read.end());
    EXPECT_EQ(&*at, &Value::Null);
    at = first;
    EXPECT_EQ((*at).asInt32(), -2);

    Value scalar(5);
    EXPECT_TRUE(scalar.begin() == scalar.end());
    Value empty(ArrayValue);
    EXPECT_TRUE(empty.begin() == empty.end());
    EXPECT_FALSE(empty.begin() == scalar.begin());
    ValueIterator none = scalar.begin();
    ++none;
    *none++ = 7;
    EXPECT_TRUE((*none).isNull());
    EXPECT_TRUE(Value::Null.isNull());
    EXPECT_TRUE(none.key().isNull());
    EXPECT_EQ(none.memberName(), nullptr);
    EXPECT_EQ(none.index(), 0);
    EXPECT_EQ(none - scalar.end(), 0);
}

TEST(Value, ComparesByTypeFirst) {
    Value small;
    small[1] = 1;
    Value large;
    large[1] = 2;
    Value longer(small);
    longer[2] = 0;
    Value other;
    other[2] = 0;
    Value const ordered[] = {
        Value(), -5,    3,    3U,    ULLONG_MAX, -1.5,  2.5,    Value(StringValue), "", "ab",
        "abc",   false, true, small, large,      other, longer, Value(ObjectValue)};
    int const count = static_cast<int>(std::size(ordered));
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < count; ++j) {
            EXPECT_EQ(ordered[i] < ordered[j], i < j) << i << "," << j;
            EXPECT_EQ(ordered[i] >= ordered[j], i >= j) << i << "," << j;
            EXPECT_EQ(ordered[i] == ordered[j], i == j) << i << "," << j;
        }
    }
    EXPECT_FALSE(Value(1) == Value(1.0));
    EXPECT_FALSE(Value(0x100000001LL) < Value(0x200000000LL)) << "the low 32 bits count";
    EXPECT_TRUE(Value(0x100000001LL) > Value(0x200000000LL));
    EXPECT_FALSE(Value(0x100000001LL) == Value(1));
    EXPECT_TRUE(Value(0x100000001LL) <= Value(1));
}
