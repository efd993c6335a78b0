#include <VelmorCore/Http.h>
#include <VelmorCore/UploadTask.h>
#include <gtest/gtest.h>

#include <memory>

namespace {

using Ubrix::WWW;

struct Unreachable final : OzkCUploadTask::Listener {
    void OnUploadFinished(OzkCUploadTask*, int) override { ADD_FAILURE(); }
};

TEST(UploadTaskTest, WithoutATransportATaskOnlyKeepsWhatItIsGiven) {
    std::unique_ptr<OzkCUploadTask> const first(WWW::GetOzkUploadTask());
    std::unique_ptr<OzkCUploadTask> const second(WWW::GetOzkUploadTask());
    ASSERT_NE(first, second);
    Unreachable listener;
    first->SetComParams(nullptr);
    first->SetListener(&listener);
    first->Upload("id", "path/of.zip", 4096, "https://url");
    EXPECT_STREQ(first->GetUploadId(), "id");
    EXPECT_STREQ(first->GetFilePath(), "path/of.zip");
    EXPECT_STREQ(second->GetUploadId(), "");
    first->Upload(nullptr, nullptr, 0, nullptr);
    EXPECT_STREQ(first->GetFilePath(), "");
}

}  // namespace
