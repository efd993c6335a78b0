// Arrays and dictionaries: who owns what. Under AddressSanitizer a wrong deletion or a leak fails the test.
#include <VelmorCore/Buffer.h>
#include <VelmorCore/Object.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

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

    static inline int alive = 0;
};

// Equal to every text with the same first letter.
class FirstLetter : public AString {
public:
    using AString::AString;
    bool IsEqual(AObject const* other) const override {
        return other->ObjectType() == TypeString && static_cast<AString const*>(other)->at(0) == at(0);
    }
    AObject* Clone() const override { return new FirstLetter(*this); }
};

// Looks, as it goes, at the containers that it was in.
class Looker : public AString {
public:
    Looker(AArray& array, ADictionary& dictionary) : _array(array), _dictionary(dictionary) {}
    ~Looker() override {
        EXPECT_EQ(_array.FirstObject(), nullptr);
        EXPECT_EQ(_dictionary.ObjectForKey("k"), nullptr);
        EXPECT_EQ(_dictionary.Count(), 0);
    }
    AObject* Clone() const override { return new Looker(_array, _dictionary); }

private:
    AArray& _array;
    ADictionary& _dictionary;
};

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

TEST(AArray, NestsAsDeepAsItIsMade) {
    for (int const levels : {1, 999, 1001, 300000}) {
        bool const isCopied = levels < 1000;
        auto nested = std::make_unique<AArray>();
        for (int i = 0; i < levels; ++i) {
            auto outer = std::make_unique<AArray>();
            outer->Add(nested.release(), true);
            nested = std::move(outer);
        }
        std::unique_ptr<AObject> const copy(nested->Clone());
        EXPECT_EQ(copy != nullptr, isCopied) << levels;
        CSarnetBufferWriter writer;
        writer.Write(true);
        writer.Write(*nested);
        EXPECT_EQ(writer.GetBufferData().length() > 1, isCopied) << levels;
        ADictionary dictionary;
        dictionary.Set("k", "old");
        dictionary.Set("k", *nested);
        EXPECT_EQ(dictionary.CStringForKey("k") == nullptr, isCopied) << levels;
    }
    // Dictionaries nest by their places: what a dictionary holds may be set in where it lies.
    ADictionary outer;
    ADictionary* inner = &outer;
    for (int i = 0; i < 300000; ++i) {
        inner->Set("k", ADictionary());
        inner = static_cast<ADictionary*>(inner->ObjectForKey("k"));
    }
    outer.Set("copy", outer);
    EXPECT_EQ(outer.Count(), 1);
}

TEST(AArray, ElementsThatGoAreListedNoMore) {
    AArray array;
    ADictionary dictionary;
    Looker const kept(array, dictionary);
    for (int i = 0; i < 2; ++i) {
        dictionary.Set("k", kept);
        dictionary.RemoveAll();
        array.Add(new Looker(array, dictionary), true);
        array.Add(new Looker(array, dictionary), true);
        array.RemoveAll();
    }
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
}

TEST(ADictionary, WalksOnceAClassFromOutsideHasComparedItself) {
    ADictionary dictionary;
    dictionary.Set("apple", "1");
    dictionary.Set("avocado", "2");
    dictionary.Set(FirstLetter("banana"), AString("3"));
    EXPECT_STREQ(dictionary.CStringForKey("berry"), "3");
    // A key takes the place of one that found itself equal: plain keys come, go and come again.
    for (int i = 0; i < 20; ++i) {
        dictionary.Set("berry", "4");
        dictionary.Set(FirstLetter("blueberry"), AString("5"));
        if (i % 3 == 0) {
            AString const berry("berry");
            dictionary.Remove(&berry);
        }
    }
    EXPECT_STREQ(dictionary.CStringForKey("apple"), "1");
    EXPECT_STREQ(ADictionary(dictionary).CStringForKey("avocado"), "2");
    dictionary.RemoveAll();
    dictionary.Set("berry", "6");
    EXPECT_EQ(dictionary.ObjectForKey("banana"), nullptr);
    EXPECT_EQ(Keys(dictionary), "berry");
}
