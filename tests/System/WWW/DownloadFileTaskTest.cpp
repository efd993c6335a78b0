#include <VelmorCore/Http.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Support/ScriptedTransport.h"
#include "System/WWW/Task/DownloadFileTaskImpl.h"

namespace {

using Ubrix::DownloadFileTask;
using Ubrix::DownloadFileTaskImpl;
using Ubrix::WWW;

TEST(DownloadFileTask, KeepsWhatItIsGivenAndNeverRuns) {
    ::Test::ScriptedTransport& server = ::Test::ScriptedTransport::Install();
    EXPECT_EQ(WWW::DownloadFile(nullptr, "path"), nullptr);
    EXPECT_EQ(WWW::DownloadFile("url", nullptr), nullptr);
    WWW::Destroy(static_cast<DownloadFileTask*>(nullptr));
    EXPECT_STREQ(DownloadFileTaskImpl("url", nullptr).GetFilePath(), "");

    DownloadFileTask* const task = WWW::DownloadFile("https://a.example/x", "file\xB9\xFA");
    auto* const impl = static_cast<DownloadFileTaskImpl*>(task);
    // Only the address of a listener is looked at.
    auto* const listener = reinterpret_cast<DownloadFileTask::Listener*>(impl);
    task->SetListener(listener);
    EXPECT_EQ(impl->GetListener(), listener);
    task->Start();
    task->Pause();
    task->Start();
    task->Cancel();
    EXPECT_STREQ(task->GetFilePath(), "file\xB9\xFA");
    EXPECT_STREQ(task->GetUrl(), "https://a.example/x");
    EXPECT_FALSE(std::filesystem::exists(task->GetFilePath()));
    EXPECT_TRUE(server.Seen().empty());
    task->RemoveListener(nullptr);
    EXPECT_EQ(impl->GetListener(), nullptr);

    Ubrix::WWWTaskBase const* const base = impl;
    EXPECT_FALSE(Ubrix::WWWTaskBase::IsObjectRelease(base));
    WWW::Destroy(task);
    EXPECT_TRUE(Ubrix::WWWTaskBase::IsObjectRelease(base));
}

}  // namespace
