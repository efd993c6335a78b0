#include <VelmorCore/Http.h>
#include <VelmorCore/UploadTask.h>
#include <gtest/gtest.h>

#include <memory>

TEST(UploadTaskTest, WithoutATransportATaskOnlyKeepsWhatItIsGiven) {
    std::unique_ptr<OzkCUploadTask> const first(Ubrix::WWW::GetOzkUploadTask());
    std::unique_ptr<OzkCUploadTask> const second(Ubrix::WWW::GetOzkUploadTask());
    ASSERT_NE(first, second);
    first->SetComParams(nullptr);
    first->Upload("id", "path/of.zip", 4096, "https://url");
    EXPECT_STREQ(first->GetUploadId(), "id");
    EXPECT_STREQ(first->GetFilePath(), "path/of.zip");
    EXPECT_STREQ(second->GetUploadId(), "");
    first->Upload(nullptr, nullptr, 0, nullptr);
    EXPECT_STREQ(first->GetFilePath(), "");
}
