#include <gtest/gtest.h>

#include <string>

#include "Base/Ubrix/IBase.h"

namespace {

using Ubrix::IBase;

std::string g_order;

template <char kLetter>
constexpr auto kNote = [] { g_order += kLetter; };

TEST(ReleaseList, RunsEachOnceInOrderAndWhatComesInDuringTheWalk) {
    IBase::RunReleaseCallbacks();
    for (int life = 0; life < 2; ++life) {
        g_order.clear();
        // Uses the service that the first one released, so that it registers again.
        auto const makesAnew = [] {
            g_order += 'b';
            IBase::AddReleaseCallback(kNote<'a'>);
            IBase::AddReleaseCallback(kNote<'c'>);
        };
        IBase::AddReleaseCallback(nullptr);
        IBase::AddReleaseCallback(kNote<'a'>);
        IBase::AddReleaseCallback(makesAnew);
        IBase::AddReleaseCallback(kNote<'a'>);
        IBase::RunReleaseCallbacks();
        EXPECT_EQ(g_order, "abac");
        IBase::RunReleaseCallbacks();
        EXPECT_EQ(g_order, "abac");
    }
}

}  // namespace
