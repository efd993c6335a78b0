// Arrays and dictionaries: who owns what. Under AddressSanitizer a wrong deletion or a leak fails the test.
#include <VelmorCore/Object.h>
#include <gtest/gtest.h>

#include <string>

using namespace Ubrix;

namespace {

// Counts those alive, so that ownership shows without a sanitizer, too.
class Counted : public AString {
public:
    explicit Counted(char const* text) : AString(text) { ++alive; }
    Counted(Counted const& other) : AString(other) { ++alive; }
    Counted& operator=(Counted const&) = delete;
    ~Counted() override { --alive; }
    AObject* Clone() const override { return new Counted(*this); }

    static int alive;
};
int Counted::alive = 0;

std::string Keys(ADictionary const& dictionary) {
    std::string keys;
    for (int i = 0; i < dictionary.Count(); ++i) {
        keys += dictionary.CStringKeyAt(i);
    }
    return keys;
}

}  // namespace

TEST(AArray, AnswersNeutrallyWithoutElements) {
    AArray array;
    array.RemoveLastObject();
    array.Add(static_cast<AObject const*>(nullptr), true);
    array.Add(static_cast<AArray const*>(nullptr));
    EXPECT_EQ(array.FirstObject(), nullptr);
    array.Add(static_cast<char const*>(nullptr));
    array.Add(5);
    for (int index : {-1, 2, INT32_MIN}) {
        EXPECT_EQ(array[index], nullptr) << index;
        array.RemoveObjectAtIndex(index);
    }
    EXPECT_STREQ(array.FirstCString(), "");
    EXPECT_EQ(array.LastCString(), nullptr) << "a number has no text";
}

TEST(AArray, OwnsByTheWayAnElementCameIn) {
    Counted borrowed("b");
    {
        AArray array;
        array.Add(&borrowed, false);
        array.Add(new Counted("owned"), true);
        array.Add(borrowed);
        EXPECT_EQ(Counted::alive, 3);
        borrowed.assign("changed", 7);
        EXPECT_STREQ(array.LastCString(), "b");

        AArray const copy(array);
        EXPECT_EQ(Counted::alive, 6) << "a copy owns clones of all";
        array.RemoveFirstObject();
        EXPECT_EQ(Counted::alive, 6);
        array.RemoveObjectAtIndex(0);
        EXPECT_EQ(Counted::alive, 5);
    }
    EXPECT_EQ(Counted::alive, 1);
}

TEST(AArray, TakesItselfAndItsElements) {
    AArray array;
    array.Add("x");
    array.Add(7);
    array.Add(&array);
    ASSERT_EQ(array.Count(), 4);
    EXPECT_NE(array[0], array[2]);
    array.Add(static_cast<AObject const&>(array));
    array.Add("y");
    array = *static_cast<AArray const*>(array[4]);
    EXPECT_EQ(array.Count(), 4);
    EXPECT_STREQ(array.FirstCString(), "x");
}

TEST(ADictionary, KeepsTheOrderOfFirstInsertion) {
    ADictionary dictionary;
    for (char const* key : {"b", "a", "d", "c", "a"}) {
        dictionary.Set(key, key);
    }
    AString const absent("x");
    dictionary.Remove(&absent);
    dictionary.Set("a", "second");
    EXPECT_EQ(Keys(dictionary), "badc");
    EXPECT_STREQ(dictionary.CStringForKey("a"), "second");
    dictionary.Remove(dictionary.KeyAt(1));
    dictionary.Remove(static_cast<AObject const*>(nullptr));
    dictionary.Set(static_cast<char const*>(nullptr), "v");
    dictionary.Set("k", static_cast<AObject*>(nullptr));
    EXPECT_EQ(Keys(dictionary), "bdc");
    EXPECT_STREQ(ADictionary(dictionary).CStringForKey("c"), "c");
    EXPECT_EQ(dictionary.ObjectForKey("a"), nullptr);
    EXPECT_EQ(dictionary.KeyAt(-1), nullptr);
    EXPECT_EQ(dictionary.CStringKeyAt(3), nullptr);
    EXPECT_EQ(dictionary.CStringForKey(static_cast<char const*>(nullptr)), nullptr);
}

TEST(ADictionary, OwnsCopiesAndBorrowsPointers) {
    Counted borrowed("v");
    {
        ADictionary dictionary;
        dictionary.Set("k", &borrowed);
        dictionary.Set("k", &borrowed);
        EXPECT_EQ(dictionary.ObjectForKey("k"), &borrowed);
        EXPECT_EQ(Counted::alive, 1);
        dictionary.Set(borrowed, borrowed);
        EXPECT_EQ(Counted::alive, 4) << "two copies of the key, one of the value";
        dictionary.Set("k", Counted("other"));
        dictionary.Set("k", *dictionary.ObjectForKey("k"));
        EXPECT_STREQ(dictionary.CStringForKey("k"), "other");
        EXPECT_EQ(Counted::alive, 5);

        ADictionary copy(dictionary);
        EXPECT_EQ(Counted::alive, 9);
        copy.Set(copy);
        copy.Set("nested", dictionary);
        copy = *static_cast<ADictionary const*>(copy.ObjectForKey("nested"));
        EXPECT_EQ(copy.Count(), 2);
        dictionary.Remove(dictionary.ObjectForKey("v"));
        EXPECT_EQ(Keys(dictionary), "k");
    }
    EXPECT_EQ(Counted::alive, 1);
}

TEST(ADictionary, ComparesKeysAsTheyCompareThemselves) {
    ADictionary dictionary;
    dictionary.Set(ANumber(1), "one");
    dictionary.Set("1", "text");
    EXPECT_STREQ(dictionary.CStringForKey(ANumber(true)), "one");
    EXPECT_STREQ(dictionary.CStringForKey("1"), "text");
    EXPECT_EQ(dictionary.CStringForKey(2), nullptr);
    // The stored key is the last one set: now any number but 0 is equal to it.
    dictionary.Set(ANumber(true), "yes");
    EXPECT_STREQ(dictionary.CStringForKey(2), "yes");
    EXPECT_EQ(dictionary.Count(), 2);

    // A class from outside is found among plain strings by its own rule.
    dictionary.Set(Counted("counted"), AString("c"));
    EXPECT_STREQ(dictionary.CStringForKey("counted"), "c");
    dictionary.Set("counted", "plain");
    EXPECT_EQ(dictionary.Count(), 3);
}
