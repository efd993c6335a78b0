#include "ScoreSum.h"

#include <VelmorCore/Operation.h>

#include <memory>
#include <numeric>
#include <vector>

#include "System/PlatformObject/CPlatformClassRegistry.h"
#include "System/PlatformObject/CPlatformObject.h"
#include "System/PlatformObject/PlatformObjects.h"

namespace {

using Ubrix::CPlatformObject;

class ScoreSum final : public CPlatformObject {
public:
    void Ask(Word request, std::int32_t const* scores, int count) {
        auto work = std::make_unique<Work>(Work{this, request, {scores, scores + count}});
        Ubrix::OperationQueue::GetInstance()->AddOperation(Answer, work.release(), false);
    }

private:
    struct Work {
        ScoreSum const* object;
        Word request;
        std::vector<std::int32_t> scores;
    };

    static void Answer(Ubrix::Operation* /*operation*/, void* data) {
        std::unique_ptr<Work> const work(static_cast<Work*>(data));
        Word const sum = std::accumulate(work->scores.begin(), work->scores.end(), Word{0});
        work->object->SendResult(work->request, sum);
    }
};

class ScoreSumCreator final : public Ubrix::IPlatformObjectCreator {
    Ubrix::IPlatformObject* CreateObject() override { return new ScoreSum; }
};

}  // namespace

void RegisterScoreSum() {
    static ScoreSumCreator creator;
    // The object that takes requests.
    Ubrix::CPlatformClassRegistry::GetInstance().RegisterCreator("ScoreSum.REQ", &creator);
}

bool score_sum_ask(std::int64_t objectId, std::intptr_t request, std::int32_t const* scores, int count) {
    auto const manager = Ubrix::PlatformObjectManager(Ubrix::PlatformObjectRole::Request);
    auto* const object = dynamic_cast<ScoreSum*>(manager->GetObject(objectId));
    if (object == nullptr || scores == nullptr || count < 0) {
        return false;
    }
    object->Ask(request, scores, count);
    return true;
}
