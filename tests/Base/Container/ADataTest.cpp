#include <VelmorCore/Object.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>

using Ubrix::AData;

namespace {

// The block holds the used bytes, and zeros behind them.
void ExpectBlock(AData const& data, std::string const& used, int capacity) {
    ASSERT_EQ(data.Capacity(), capacity) << used;
    EXPECT_EQ(data.Size(), static_cast<int>(used.size()));
    std::string block = used;
    block.resize(static_cast<size_t>(capacity));
    EXPECT_EQ(std::string(reinterpret_cast<char const*>(data.Data()), block.size()), block);
}

}  // namespace

TEST(AData, BlockFollowsTheCapacityRules) {
    AData fresh;
    ExpectBlock(fresh, "", 64);
    EXPECT_EQ(AData(fresh).Data(), nullptr) << "a copy of nothing has no block";

    std::tuple<int, int, int> const appends[] = {
        {63, 0, 64}, {64, 0, 128}, {63, 1, 128}, {10, 53, 64}, {10, 60, 140}};
    std::string const text(200, 'x');
    for (auto const& [first, second, capacity] : appends) {
        AData data;
        data.Append(text.c_str() + 200 - first);
        data.Append(text.c_str() + 200 - second);
        ExpectBlock(data, text.substr(0, static_cast<size_t>(first + second)), capacity);
    }

    fresh.Append("12345");
    fresh.SetCapacity(100);
    fresh.SetCapacity(0);
    ExpectBlock(fresh, "12345", 100);
    fresh.SetCapacity(10);
    ExpectBlock(fresh, "", 10);
    fresh.Clear();
    ExpectBlock(fresh, "", 64);
}

TEST(AData, AssignKeepsOrReplacesTheBlock) {
    std::string const text(400, 'y');
    std::tuple<int, int, int> const cases[] = {
        {64, 0, 64},   {128, 0, 128}, {129, 0, 0}, {400, 199, 398}, {400, 200, 400},
        {64, 64, 128}, {64, 65, 130}, {0, 0, 0},   {0, 3, 6},       {200, -1, 0},
    };
    for (auto const& [before, size, capacity] : cases) {
        AData data(before);
        data.Append(before > 3 ? "old" : nullptr);
        data.Assign(reinterpret_cast<unsigned char const*>(text.c_str()), size);
        ExpectBlock(data, text.substr(0, static_cast<size_t>(std::max(size, 0))), capacity);
    }
    AData data;
    data.Append("kept");
    data.Assign(data.Data(), 1);
    ExpectBlock(data, "kept", 64);
    data.Assign(nullptr, 5);
    ExpectBlock(data, "", 64);
}

TEST(AData, TakesItsOwnBytes) {
    AData data;
    std::string expected(20, 'a');
    data.Append(expected.c_str());
    for (int const capacity : {64, 160, 320}) {
        data += data;
        ExpectBlock(data, expected += expected, capacity);
    }
    data.Append("bcd");
    data.Assign(data.Data() + 158, 5);
    ExpectBlock(data, "aabcd", 10);
}

TEST(AData, FindsAndComparesUsedBytesOnly) {
    AData data;
    EXPECT_EQ(data.Find(0), -1);
    data.Append("ab\xFF");
    EXPECT_EQ(data.Find(0), -1);
    EXPECT_EQ(data.Find(-1), 2);

    AData roomy(500);
    roomy.Append("ab\xFF");
    EXPECT_TRUE(data.IsEqual(&roomy));
    roomy.Append("c");
    EXPECT_FALSE(data.IsEqual(&roomy));
    AData const blockless(0);
    EXPECT_FALSE(AData().IsEqual(&blockless));
    Ubrix::AString const text("ab\xFF");
    EXPECT_FALSE(data.IsEqual(&text));
}
