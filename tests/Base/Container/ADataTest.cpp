#include <VelmorCore/Object.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

using Ubrix::AData;

namespace {

unsigned char const* Bytes(char const* text) {
    return reinterpret_cast<unsigned char const*>(text);
}

std::string Used(AData const& data) {
    return data.Size() > 0 ? std::string(reinterpret_cast<char const*>(data.Data()), size_t(data.Size()))
                           : "";
}

// Every byte past the used ones is zero, and there is one if anything is used.
void ExpectTerminated(AData const& data) {
    if (data.Size() > 0) {
        EXPECT_LT(data.Size(), data.Capacity());
    }
    for (int i = data.Size(); i < data.Capacity(); ++i) {
        ASSERT_EQ(data.Data()[i], 0) << i;
    }
}

}  // namespace

TEST(AData, BlockFollowsTheCapacityRules) {
    AData fresh;
    EXPECT_EQ(fresh.Capacity(), 64);
    EXPECT_EQ(fresh.LeftSize(), 64);
    EXPECT_TRUE(fresh.Empty());
    ASSERT_NE(fresh.Data(), nullptr);
    EXPECT_EQ(AData(0).Data(), nullptr);
    std::unique_ptr<Ubrix::AObject> const copy(fresh.Clone());
    EXPECT_EQ(static_cast<AData const&>(*copy).Data(), nullptr);
    EXPECT_EQ(static_cast<AData const&>(*copy).Capacity(), 0);

    std::string const text(64, 'x');
    struct {
        int first, second, capacity;
    } const appends[] = {{63, 0, 64}, {64, 0, 128}, {63, 1, 128}, {10, 53, 64}, {10, 60, 140}};
    for (auto const& c : appends) {
        AData data;
        data.Append(Bytes(text.c_str()), c.first);
        data.Append(Bytes(text.c_str()), c.second);
        EXPECT_EQ(data.Size(), c.first + c.second);
        EXPECT_EQ(data.Capacity(), c.capacity) << c.first << "+" << c.second;
        ExpectTerminated(data);
    }

    AData sized;
    sized.Append("12345");
    sized.SetCapacity(100);
    EXPECT_EQ(Used(sized), "12345");
    sized.SetCapacity(0);
    EXPECT_EQ(sized.Capacity(), 100);
    sized.SetCapacity(10);
    EXPECT_EQ(sized.Size(), 0);
    sized.Clear();
    EXPECT_EQ(sized.Capacity(), 64);
    ExpectTerminated(sized);
}

TEST(AData, AssignKeepsOrReplacesTheBlock) {
    std::string const text(400, 'y');
    struct {
        int before, size, capacity;
    } const cases[] = {
        {64, 0, 64},   {128, 0, 128}, {129, 0, 0}, {400, 199, 398}, {400, 200, 400},
        {64, 64, 128}, {64, 65, 130}, {0, 0, 0},   {0, 3, 6},       {200, -1, 0},
    };
    for (auto const& c : cases) {
        AData data(c.before);
        data.Append(Bytes("old"), c.before > 3 ? 3 : 0);
        data.Assign(Bytes(text.c_str()), c.size);
        EXPECT_EQ(data.Size(), c.size < 0 ? 0 : c.size) << c.before << "," << c.size;
        EXPECT_EQ(data.Capacity(), c.capacity) << c.before << "," << c.size;
        ExpectTerminated(data);
    }
    AData data;
    data.Append("kept");
    data.Assign(data.Data(), 1);
    EXPECT_EQ(Used(data), "kept");
    data.Assign(nullptr, 5);
    EXPECT_EQ(data.Size(), 0);
    data.Append("text");
    data = "";
    EXPECT_EQ(data.Capacity(), 64);
}

TEST(AData, TakesItsOwnBytes) {
    AData data;
    data.Append("abcdefgh");
    for (int i = 0; i < 5; ++i) {
        std::string expected = Used(data);
        expected += expected;
        data.Append(data.Data(), data.Size());
        EXPECT_EQ(Used(data), expected);
        expected += expected;
        data += data;
        EXPECT_EQ(Used(data), expected);
        ExpectTerminated(data);
    }
    data.Assign(data.Data() + 3, 7);
    EXPECT_EQ(Used(data), "defghab");
    ExpectTerminated(data);
}

TEST(AData, FindsAndComparesUsedBytesOnly) {
    AData data;
    EXPECT_EQ(data.Find(0), -1);
    data.Append("ab\xFF");
    EXPECT_EQ(data.Find(0), -1);
    EXPECT_EQ(data.Find('b'), 1);
    EXPECT_EQ(data.Find(-1), 2);

    AData roomy(500);
    roomy.Append("ab\xFF");
    EXPECT_TRUE(data.IsEqual(&roomy));
    roomy.Append("c");
    EXPECT_FALSE(data.IsEqual(&roomy));
    AData const blockless(0);
    AData const empty;
    Ubrix::AString const text("ab\xFF");
    EXPECT_FALSE(empty.IsEqual(&blockless));
    EXPECT_FALSE(blockless.IsEqual(&empty));
    EXPECT_TRUE(blockless.IsEqual(&static_cast<AData const&>(AData(0))));
    EXPECT_FALSE(data.IsEqual(nullptr));
    EXPECT_FALSE(data.IsEqual(&text));
}
