#include <VelmorCore/Operation.h>

#include <memory>

namespace Ubrix {
namespace {

class Target : public OperationTargetBase {
public:
    explicit Target(int* deaths) : _deaths(deaths) {}
    ~Target() override { ++*_deaths; }
    void DoOperation(ObjectOperation*, void* data) override { *static_cast<int*>(data) += 1; }
    void AddTen(ObjectOperation*, void* data) { *static_cast<int*>(data) += 10; }

private:
    int* _deaths;
};

auto const kAddTen = static_cast<ObjectOperation::Member>(&Target::AddTen);

TEST(Operation, TargetAndOperationsLetGoOfEachOther) {
    int deaths = 0;
    int sum = 0;
    auto target = std::make_unique<Target>(&deaths);
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
    EXPECT_FALSE(first.Repeats() || copy->Repeats()) << "without a target they have nothing left to do";
}

TEST(Operation, TargetIsDeletedOnceWithTheFirstOperationToGo) {
    int deaths = 0;
    auto* target = new Target(&deaths);
    auto first = std::make_unique<ObjectOperation>(target, kAddTen, nullptr, true);
    first->Cancel(true);
    first->Cancel(false);
    std::unique_ptr<Operation> copy(first->Duplicate());
    ObjectOperation cleared(target, kAddTen, nullptr, true);
    cleared.Cancel(true);
    cleared.ClearTarget();
    first.reset();
    copy.reset();
    EXPECT_EQ(deaths, 1);
}

}  // namespace
}  // namespace Ubrix
