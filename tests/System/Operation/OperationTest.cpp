#include <VelmorCore/Operation.h>
#include <gtest/gtest.h>

#include <memory>

namespace Ubrix {
namespace {

struct Target : OperationTargetBase {
    void DoOperation(ObjectOperation*, void* data) override { *static_cast<int*>(data) += 1; }
    void AddTen(ObjectOperation*, void* data) { *static_cast<int*>(data) += 10; }

    std::shared_ptr<int> life = std::make_shared<int>();
};

auto const kAddTen = static_cast<ObjectOperation::Member>(&Target::AddTen);

TEST(Operation, TargetAndOperationsLetGoOfEachOther) {
    int sum = 0;
    auto target = std::make_unique<Target>();
    ObjectOperation first(target.get(), kAddTen, &sum, true);
    std::unique_ptr<Operation> const copy(first.Duplicate());
    EXPECT_EQ(copy->SequenceNumber(), first.SequenceNumber());
    {
        ObjectOperation last(target.get(), nullptr, &sum, true);
        last.Run();
        target->Cancel(false);
        EXPECT_FALSE(last.Repeats());
        EXPECT_TRUE(first.Repeats()) << "the last one made is the current one";
    }
    EXPECT_FALSE(target->HasRun());
    target->Sleep(1);
    EXPECT_EQ(first.NextRunTime(), 0) << "nobody is current now";
    first.Run();
    copy->Run();
    target.reset();
    first.Run();
    copy->Run();
    EXPECT_EQ(sum, 21);
    EXPECT_FALSE(first.Repeats()) << "without a target it has nothing left to do";
    EXPECT_FALSE(copy->Repeats());
}

TEST(Operation, TargetIsDeletedOnceWithTheFirstOperationToGo) {
    auto* target = new Target;
    std::weak_ptr<int> const life = target->life;
    auto first = std::make_unique<ObjectOperation>(target, kAddTen, nullptr, true);
    first->Cancel(true);
    first->Cancel(false);
    std::unique_ptr<Operation> copy(first->Duplicate());
    ObjectOperation cleared(target, kAddTen, nullptr, true);
    cleared.Cancel(true);
    cleared.ClearTarget();
    first.reset();
    EXPECT_TRUE(life.expired());
}

}  // namespace
}  // namespace Ubrix
