// The configuration server as a program. See README.md beside this file.
#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "ConfigDocument.h"
#include "ConfigServer.h"

namespace {

struct CommandLine {
    std::string configFile = "config.json";
    std::string caFile = "config-server-ca.pem";
    std::string readyFile;
    std::string uploadDirectory;
    std::vector<std::string> names = {"config.velmor.example", "localhost", "127.0.0.1"};
    int port = 0;
    int maxSeconds = 300;

    bool expired = false;
    bool wrongName = false;
    bool otherAuthority = false;

    unsigned failFirst = 0;
    int status = 200;
    int delay = 0;
    int cut = -1;
    std::string garbage;
    std::string redirect;
    bool silent = false;
};

void DescribeOptions(CLI::App& app, CommandLine& line) {
    app.add_option("--config", line.configFile, "JSON file to serve")->capture_default_str();
    app.add_option("--port", line.port, "port on 127.0.0.1; 0 takes one that is free")
        ->capture_default_str()
        ->check(CLI::Range(0, 65535));
    app.add_option("--name", line.names, "host name or address of the certificate (repeat for more)")
        ->capture_default_str();
    app.add_option("--ca-file", line.caFile, "where to write the CA certificate that clients must trust")
        ->capture_default_str();
    app.add_option("--ready-file", line.readyFile, "written once the server listens: port=, ca_file=");
    app.add_option("--upload-dir", line.uploadDirectory, "where uploaded files go; none are taken without it")
        ->check(CLI::ExistingDirectory);
    app.add_option("--max-seconds", line.maxSeconds, "end by itself after so long")
        ->capture_default_str()
        ->check(CLI::Range(1, 86400));

    app.add_flag("--expired", line.expired, "the certificate ended yesterday")->group("Certificate faults");
    app.add_flag("--wrong-name", line.wrongName, "the certificate is for another host")
        ->group("Certificate faults");
    app.add_flag("--other-ca", line.otherAuthority,
                 "an authority other than --ca-file's signs the certificate")
        ->group("Certificate faults");

    app.add_option("--status", line.status, "HTTP status of the answer")
        ->capture_default_str()
        ->check(CLI::Range(200, 599))
        ->group("Answer faults");
    app.add_option("--delay", line.delay, "milliseconds to wait before the answer")
        ->check(CLI::Range(0, 3600000))
        ->group("Answer faults");
    app.add_option("--cut", line.cut, "end the connection after so many bytes of the body")
        ->check(CLI::Range(0, 1 << 30))
        ->group("Answer faults");
    app.add_option("--garbage", line.garbage, "a body that is no configuration, of a kind listed below")
        ->group("Answer faults");
    app.add_option("--redirect", line.redirect, "answer 302 to this address")->group("Answer faults");
    app.add_flag("--silent", line.silent, "read requests and say nothing")->group("Answer faults");
    app.add_option("--fail-first", line.failFirst, "fail so many requests, then serve; 0 fails all")
        ->capture_default_str()
        ->check(CLI::Range(0u, 10000u))
        ->group("Answer faults");
    app.footer("Kinds of --garbage:\n" + Example::GarbageKinds());
}

bool WantsFault(CommandLine const& line) {
    return line.status != 200 || line.delay > 0 || line.cut >= 0 || !line.garbage.empty() ||
           !line.redirect.empty() || line.silent;
}

Example::ServerAnswer MakeFault(CommandLine const& line, std::string const& goodBody) {
    Example::ServerAnswer answer;
    answer.status = line.redirect.empty() ? line.status : 302;
    answer.body = line.garbage.empty() ? goodBody : Example::GarbageBody(line.garbage);
    answer.location = line.redirect;
    answer.delay = std::chrono::milliseconds(line.delay);
    if (line.cut >= 0) {
        answer.cutAfter = static_cast<size_t>(line.cut);
    }
    answer.silent = line.silent;
    return answer;
}

void SetFault(CommandLine const& line, Example::ServerAnswer const& answer, Example::ConfigServer& server) {
    if (line.failFirst == 0) {
        server.AnswerAlways(answer);
        return;
    }
    for (unsigned i = 0; i < line.failFirst; ++i) {
        server.AnswerNext(answer);
    }
}

std::string ReadFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file) {
        throw std::runtime_error("cannot read " + path);
    }
    return text.str();
}

// Under another name first: whoever waits for the file never reads half of it.
void WriteReadyFile(CommandLine const& line, int port) {
    std::string const unfinished = line.readyFile + ".new";
    std::ofstream file(unfinished, std::ios::trunc);
    file << "port=" << port << "\nca_file=" << std::filesystem::absolute(line.caFile).string() << "\n";
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + line.readyFile);
    }
    std::filesystem::rename(unfinished, line.readyFile);
}

Example::ServerIdentity MakeIdentity(CommandLine const& line) {
    Example::CertificateAuthority const authority("Example configuration authority");
    authority.WriteCertificate(line.caFile);
    Example::Validity validity;
    if (line.expired) {
        validity = {-10, -1};
    }
    std::vector<std::string> const names =
        line.wrongName ? std::vector<std::string>{"elsewhere.velmor.example"} : line.names;
    if (line.otherAuthority) {
        return Example::CertificateAuthority("Another authority").Issue(names, validity);
    }
    return authority.Issue(names, validity);
}

// One line for each request, never torn by another thread's, on the disk or screen at once.
void Say(std::string const& text) {
    static std::mutex mutex;
    std::lock_guard<std::mutex> const lock(mutex);
    std::cout << text << std::endl;
}

// The signals that end the server, blocked in every thread so that only the wait below takes them.
sigset_t BlockEndSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    return set;
}

void Serve(CommandLine const& line) {
    sigset_t const endSignals = BlockEndSignals();
    Example::ConfigServerOptions options;
    options.identity = MakeIdentity(line);
    options.configuration = ReadFile(line.configFile);
    options.port = line.port;
    options.uploadDirectory = line.uploadDirectory;
    options.log = Say;
    Example::ConfigDocument const document(options.configuration);

    Example::ConfigServer server(std::move(options));
    if (WantsFault(line)) {
        SetFault(line, MakeFault(line, document.Answer()), server);
    }
    Say("serving " + std::to_string(document.Sections()) + " modules with " +
        std::to_string(document.Keys()) + " keys on https://" + server.Address() +
        Example::ConfigServer::kPath + ", CA certificate in " + line.caFile);
    if (!line.readyFile.empty()) {
        WriteReadyFile(line, server.Port());
    }
    timespec const limit{line.maxSeconds, 0};
    int const signal = sigtimedwait(&endSignals, nullptr, &limit);
    Say(std::string(signal > 0 ? "asked to end" : "time is up") + " after " +
        std::to_string(server.Requests().size()) + " requests");
}

int Run(int argc, char** argv) {
    CLI::App app("Serves a configuration over HTTPS on the loopback address.", "velmorcore_config_server");
    CommandLine line;
    DescribeOptions(app, line);
    CLI11_PARSE(app, argc, argv);
    Serve(line);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (std::exception const& problem) {
        std::fprintf(stderr, "velmorcore_config_server: %s\n", problem.what());
        return 1;
    }
}
