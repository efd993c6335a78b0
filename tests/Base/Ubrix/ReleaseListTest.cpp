#include <gtest/gtest.h>

#include <string>

#include "Base/Ubrix/IBase.h"

namespace {

using Ubrix::IBase;

std::string g_order;

void Last() {
    g_order += 'c';
}

void First() {
    g_order += 'a';
}

// Uses the service that First released, so that it registers again.
void MakesAnew() {
    g_order += 'b';
    IBase::AddReleaseCallback(First);
    IBase::AddReleaseCallback(Last);
}

TEST(ReleaseList, RunsEachOnceInOrderAndWhatComesInDuringTheWalk) {
    IBase::RunReleaseCallbacks();
    for (int life = 0; life < 2; ++life) {
        g_order.clear();
        IBase::AddReleaseCallback(nullptr);
        IBase::AddReleaseCallback(First);
        IBase::AddReleaseCallback(MakesAnew);
        IBase::AddReleaseCallback(First);
        IBase::RunReleaseCallbacks();
        EXPECT_EQ(g_order, "abac");
        IBase::RunReleaseCallbacks();
        EXPECT_EQ(g_order, "abac");
    }
}

}  // namespace
