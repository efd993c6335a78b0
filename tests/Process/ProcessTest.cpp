// Scenarios that need a process of their own, run against the shared library.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "Readers/Files.h"
#include "Support/RawTlsServer.h"
#include "Support/Watched.h"

namespace {

struct Result {
    int status;
    std::string out;
    std::string err;
};

// Runs a shell's command to its end in the present directory. The test's own time limit ends one that hangs.
Result RunProgram(std::string const& command) {
    int const status = std::system(("(" + command + ") >out.txt 2>err.txt").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ::Test::ReadWholeFile("out.txt"),
            ::Test::ReadWholeFile("err.txt")};
}

Result Child(std::string const& scenario) {
    return RunProgram("'" VELMORCORE_CHILD "' " + scenario);
}

// The messages of `wanted` stand in `text` in this order.
testing::AssertionResult InOrder(std::string const& text, std::vector<std::string> const& wanted) {
    std::size_t at = 0;
    for (std::string const& message : wanted) {
        at = text.find(message, at);
        if (at == std::string::npos) {
            return testing::AssertionFailure() << "missing in its place: " << message << "\n" << text;
        }
        at += message.size();
    }
    return testing::AssertionSuccess();
}

TEST(Process, LoadsStartsAndStopsInOrderTwice) {
    Result const result = Child("two-lives");
    EXPECT_EQ(result.status, 0) << result.err;
    std::string const banner = "Hello VelmorCore! OS_TYPE:Windows, Version:1.3.01.2706, VersionHash:";
    EXPECT_TRUE(
        InOrder(result.err, {"config file ", " is not exist",
                             "log init module VelmorCore, logMode 0, sync:1, use mmap:1, mmap cost ",
                             "CreateThread RemoveOldLogFilesThread:", "velmorcore_setLogLevel:3\n", banner,
                             "| velmorcore_init\n", banner, "|  velmorcore_release\n",
                             "CVelmorCore::~CVelmorCore(), start\n", "CVelmorCore::~CVelmorCore(), end\n",
                             "|  velmorcore_release\n", banner, "CVelmorCore::~CVelmorCore(), end\n"}));
    EXPECT_TRUE(std::filesystem::exists("Cache/VelmorSDKLog/VelmorCore"));
}

TEST(Process, TheDeviceIdAndAConfigFileOutliveTheProcess) {
    Result const first = Child("persist");
    Result const second = Child("persist");
    ASSERT_EQ(first.out.size(), 39U) << first.err;
    EXPECT_EQ(first.out.substr(36), " 1\n");
    EXPECT_EQ(second.out, first.out.substr(0, 36) + " 2\n");
}

TEST(Process, WithoutAWorkingDirectoryNothingIsStoredAndNothingFails) {
    Result const result = RunProgram(
        "export ELSEWHERE=$PWD/elsewhere.config; mkdir gone; cd gone; rmdir ../gone;"
        "'" VELMORCORE_CHILD "' no-directory");
    EXPECT_EQ(result.status, 0) << result.err;
    std::string const early = "| CachePath is empty, do not use bundle in JNI_ONLoad!!!\n";
    EXPECT_TRUE(InOrder(result.err, {"getcwd error: ", "|Ubrix::IniBundle::IniBundle" + early,
                                     "|Ubrix::SecurityStoreImp::SecurityStoreImp" + early}));
}

TEST(Process, TheEnvironmentReachesNoMoreThanTheDocumentSays) {
    Example::CertificateAuthority const authority("Environment");
    authority.WriteCertificate("authority.pem");
    ::Test::Watched<std::string> head;
    ::Test::RawTlsServer const server(authority.Issue({"game.example"}),
                                      [&](::Test::RawConnection& connection) {
                                          connection.Handshake();
                                          std::string const read = connection.ReadHead();
                                          head.With([&read](std::string& text) { text = read; });
                                          connection.Send("HTTP/1.1 200 OK\r\n\r\nok");
                                      });
    ::Test::WriteWholeFile(".netrc", "machine game.example login a password b\n");
    // Whoever reads it is left with the one provider that has no algorithm.
    ::Test::WriteWholeFile("openssl.cnf", "openssl_conf=a\n[a]\nproviders=b\n[b]\nnull=c\n[c]\nactivate=1\n");
    std::string const asked = "GET /%E4%B8%AD HTTP/1.1\r\nHost: game.example\r\nUser-Agent: Ubrix\r\n\r\n";
    auto const fetch = [&](std::string const& variables) {
        head.With([](std::string& text) { text.clear(); });
        return RunProgram("ADDRESS=" + server.Address() + " " + variables + " '" VELMORCORE_CHILD "' fetch");
    };
    auto const request = [&] { return head.With([](std::string const& text) { return text; }); };
    for (char const* variables :
         {"", "https_proxy=http://127.0.0.1:9 HTTPS_PROXY=http://127.0.0.1:9 ALL_PROXY=http://127.0.0.1:9",
          "HOME=$PWD NETRC=$PWD/.netrc CURL_HOME=$PWD",
          "OPENSSL_CONF=$PWD/openssl.cnf OPENSSL_MODULES=$PWD OPENSSL_ENGINES=$PWD",
          "SSLKEYLOGFILE=$PWD/session-keys", "GCONV_PATH=$PWD LC_ALL=de_DE.ISO-8859-1 LANG=C"}) {
        EXPECT_EQ(fetch(std::string("CA_FILE=authority.pem ") + variables).out, "0 200 ok\n") << variables;
        EXPECT_EQ(request(), asked) << variables;
    }
    EXPECT_EQ(
        fetch("SSL_CERT_FILE=$PWD/authority.pem SSL_CERT_DIR=$PWD CURL_CA_BUNDLE=$PWD/authority.pem").out,
        "1 0 null\n");
    EXPECT_EQ(request(), "");
    EXPECT_EQ(::Test::ReadWholeFile("session-keys"), "");
    std::string const logNames =
        " '" VELMORCORE_CHILD "' two-lives; cd Cache/VelmorSDKLog/VelmorCore; ls; rm *";
    EXPECT_NE(RunProgram("TZ=AAA-12" + logNames).out, RunProgram("TZ=AAA+12" + logNames).out);
}

TEST(Process, MayBeUnloadedAndLoadedAgain) {
    Result const result = RunProgram("'" VELMORCORE_LOADER "' '" VELMORCORE_LIBRARY "'");
    EXPECT_EQ(result.status, 0) << result.err;
}

TEST(Process, ServesACallerInC) {
    Result const result = RunProgram("'" VELMORCORE_C_CHILD "'");
    EXPECT_EQ(result.out, "0 failures\n") << result.err;
    EXPECT_EQ(result.status, 0);
}

}  // namespace
