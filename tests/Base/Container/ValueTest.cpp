#include <VelmorCore/Value.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>
#include <tuple>

#include "Support/LogCapture.h"

using namespace Ubrix;

TEST(Value, TextThatLooksLikeANumberBecomesOne) {
    EXPECT_TRUE(Value("-1.5") == Value(-1.5));
    EXPECT_TRUE(Value("-.") == Value(0.0));
    EXPECT_TRUE(Value("123456789012345678") == Value(123456789012345678LL));
    for (char const* text : {"0123456789012345678", "abc", "", "1e3", "1-2.5"}) {
        EXPECT_STREQ(Value(text).asCString(), text) << "a number has no such text";
    }
    EXPECT_TRUE(Value(static_cast<char const*>(nullptr)) == Value(StringValue));
}

TEST(Value, ConvertsByTheTable) {
    using Row = std::tuple<Value, int, unsigned, long long, unsigned long long, float, char const*>;
    Row const cases[] = {
        {Value(), 0, 0, 0, 0, 0, ""},
        {-1, -1, UINT_MAX, -1, ULLONG_MAX, -1, "-1"},
        {0x100000000LL, 0, 0, 0x100000000LL, 0x100000000ULL, 4294967296.0F, "4294967296"},
        {ULLONG_MAX, -1, UINT_MAX, -1, ULLONG_MAX, 18446744073709551616.0F, "-1"},
        {1.5, 1, 1, 1, 1, 1.5F, "1.500000"},
        {-2.5, -2, UINT_MAX - 1, -2, ULLONG_MAX - 1, -2.5F, "-2.500000"},
        {3e9, INT_MIN, 3000000000U, INT_MIN, 3000000000ULL, 3e9F, "3000000000.000000"},
        {1e19, INT_MIN, 2313682944U, INT_MIN, 10000000000000000000ULL, 1e19F, "10000000000000000000.000000"},
        {true, 1, 1, 1, 1, 1, "true"},
    };
    ::Test::LogCapture const log;
    for (auto const& [value, int32, uint32, int64, uint64, real, text] : cases) {
        EXPECT_EQ(value.asInt32(), int32) << text;
        EXPECT_EQ(value.asUInt32(), uint32) << text;
        EXPECT_EQ(value.asInt64(), int64) << text;
        EXPECT_EQ(value.asUInt64(), uint64) << text;
        EXPECT_EQ(value.asBool(), real != 0) << text;
        EXPECT_EQ(value.asDouble(), real) << text;
        EXPECT_STREQ(value.asString().c_str(), text);
    }
    EXPECT_EQ(Value(std::nan("")).asInt64(), INT_MIN);
    EXPECT_EQ(Value(std::nan("")).asUInt64(), 1ULL << 63);
    EXPECT_EQ(Value(1.7976931348623157e308).asString().length(), 309 + 7);
    EXPECT_TRUE(Value("true").asBool());
    EXPECT_TRUE(Value("false").isBool());
    EXPECT_FALSE(Value("TRUE").asBool());
    EXPECT_FALSE(Value("TRUE").isBool());
}

TEST(Value, LogsWhatItCannotConvert) {
    Value const array(ArrayValue);
    auto const foreign = static_cast<ValueType>(8);
    using V = Value const&;
    std::tuple<bool (*)(V), Value, char const*, std::string> const cases[] = {
        {[](V v) { return v.asInt32() == 0; }, "x", "Warning", "asInt32| Type is not convertible to int"},
        {[](V v) { return v.asUInt32() == 0; }, "x", "Warning", "asUInt32| Type is not convertible to uint"},
        {[](V v) { return v.asInt64() == 0; }, array, "Warning", "asInt64| Type is not convertible to Int64"},
        {[](V v) { return !v.asUInt64(); }, "x", "Warning", "asUInt64| Type is not convertible to UInt64"},
        {[](V v) { return v.asFloat() == 0; }, "x", "Error", "asDouble| Type is not convertible to double"},
        {[](V v) { return v.asString() == ""; }, array, "Error",
         "asString| Type is not convertible to String"},
        {[](V v) { return !*v.asCString(); }, "42", "Error", "asCString| Type is not convertible to String"},
        {[](V v) { return !v.asBool(); }, foreign, "Error", "asBool| Unsupported type:8"},
        {[](V v) { return !(v < v); }, foreign, "Error", "operator <| Unsupported type:8"},
        {[](V v) { return Value(v.type()).Size() == 0; }, foreign, "Error", "Value| Unsupport type:8"},
    };
    ::Test::LogCapture const log;
    for (auto const& [isNeutral, value, level, message] : cases) {
        EXPECT_TRUE(isNeutral(value)) << message;
        EXPECT_TRUE(log.Has(level, "|Ubrix::Value::" + message)) << message << log.Text();
    }
    EXPECT_EQ(Value(-7).asUInt64(), ULLONG_MAX - 6);
    EXPECT_TRUE(log.Has("Warning", "asUInt64| Negative integer can not be converted to UInt64"));
}

TEST(Value, MakesEntriesOnWritingOnly) {
    Value object;
    object["a"] = 1;
    EXPECT_TRUE(object["b"].isNull());
    EXPECT_EQ(&static_cast<Value const&>(object)["absent"], &Value::Null);
    EXPECT_EQ(object.Size(), 2);
    EXPECT_EQ(&Value::Null["x"], &Value::Null);
    EXPECT_EQ(&Value::Null[0], &Value::Null);

    Value array;
    array[3] = true;
    EXPECT_TRUE(array.isArray());
    EXPECT_EQ(&static_cast<Value const&>(array)[0], &Value::Null);

    Value const copy(object);
    object["a"] = 2;
    EXPECT_EQ(copy["a"].asInt32(), 1);
    object["self"] = object;
    object = object["self"];
    EXPECT_EQ(object["a"].asInt32(), 2);
    EXPECT_TRUE(object["self"].isNull()) << "the entry was made before the value was copied into it";
    std::string key("key");
    object[key.c_str()] = "text";
    key = "other";
    array.swap(object);
    EXPECT_STREQ(array["key"].asCString(), "text");
}

TEST(Value, IteratesInTheOrderOfItsKeys) {
    Value object;
    object["b"] = object["12"] = object["a"] = 0;
    std::string names;
    for (ValueIterator at = object.begin(); at != object.end(); ++at) {
        names += at.memberName();
        EXPECT_EQ(at.index(), -1);
        *at = at.key();
    }
    EXPECT_EQ(names, "12ab");
    EXPECT_TRUE(object["12"].isInt());

    Value array;
    array[5] = array[-2] = array[3] = 0;
    Value const& read = array;
    ValueConstIterator at = read.begin();
    ValueConstIterator const first = at++;
    EXPECT_EQ(first.index(), -2);
    EXPECT_STREQ(first.memberName(), "");
    EXPECT_EQ(at.key().asInt32(), 3);
    EXPECT_EQ(first - read.end(), 3);
    EXPECT_TRUE(at-- != first);
    --at;
    EXPECT_TRUE(at == first) << "no step before the first";
    at = read.end();
    ++at;
    EXPECT_TRUE(at == read.end());
    EXPECT_EQ(&*at, &Value::Null);

    Value scalar(5);
    Value empty(ArrayValue);
    EXPECT_TRUE(scalar.begin() == scalar.end());
    EXPECT_TRUE(empty.begin() == empty.end());
    ValueIterator none = scalar.begin();
    *none++ = 7;
    EXPECT_TRUE(Value::Null.isNull());
    EXPECT_TRUE((*none).isNull());
    EXPECT_EQ(none.memberName(), nullptr);
}

TEST(Value, NestsAsDeepAsItIsMade) {
    for (int const levels : {0, 999, 1001, 300000}) {
        bool const isCopied = levels < 1000;
        Value nested;
        Value* inner = &nested["x"];
        for (int i = 0; i < levels; ++i) {
            inner = i % 2 != 0 ? &(*inner)["x"] : &(*inner)[i];
        }
        *inner = "deep";
        Value copy = "old";
        copy = nested;
        EXPECT_EQ(copy == nested, isCopied) << levels;
        EXPECT_EQ(copy == "old", !isCopied) << levels;
        EXPECT_EQ(Value(nested).isNull(), !isCopied) << levels;
        EXPECT_FALSE(nested < nested);
    }
}

TEST(Value, ComparesByTypeFirst) {
    Value small, large, longer, other;
    small[1] = longer[1] = 1;
    large[1] = 2;
    longer[2] = other[2] = 0;
    Value const ordered[] = {
        Value(), -5,    3,    3U,    ULLONG_MAX, -1.5,  2.5,    Value(StringValue), "", "ab",
        "abc",   false, true, small, large,      other, longer, Value(ObjectValue)};
    for (Value const& left : ordered) {
        for (Value const& right : ordered) {
            SCOPED_TRACE(left.asString().c_str() + std::string(" ") + right.asString().c_str());
            EXPECT_EQ(left < right, &left < &right);
            EXPECT_EQ(left >= right, &left >= &right);
            EXPECT_EQ(left == right, &left == &right);
        }
    }
    EXPECT_TRUE(Value(0x100000001LL) > Value(0x200000000LL)) << "the low 32 bits count";
    EXPECT_FALSE(Value(0x100000001LL) == Value(1));
}
