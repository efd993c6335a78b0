// Hostile texts on their way into a line of the log: as message, as argument of a format, as a source's name,
// as the fields of a record, up to and beyond the room of a line. The input: a byte that chooses the way, one
// for a filler that brings lengths near the bound, and the text.
#include <VelmorCore/Log.h>
#include <VelmorCore/velmorcore.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "SilentLog.h"
#include "Storage/Log/LogLine.h"

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// Keeps what it's given.
class KeepingLog final : public SilentLog {
public:
    void Log(Velmor::ALogPriority, char const* file, unsigned int, char const* func, char const*,
             char const* msg) override {
        Ubrix::LogText line;
        Ubrix::FormatLogLine(line, Velmor::ALogPriorityError, "Module", file, 7, func, msg);
        text = msg;
        full = line;
    }
    void LogDetail(Velmor::ALogPriority, char const*, unsigned int, char const*, char const* module,
                   char const* session, Velmor::ProntelStage stage, Velmor::ProntelStatus status, int errCode,
                   int errCode2, char const* errorMsg, char const* userInfo, char const* resv,
                   char const* msg) override {
        Ubrix::LogText record;
        Ubrix::FormatDetailRecord(
            record, {module, session, stage, status, errCode, errCode2, errorMsg, userInfo, resv}, msg);
        text = record;
    }

    std::string text;
    std::string full;
};

KeepingLog& TheLog() {
    static auto* const log = [] {
        auto* const made = new KeepingLog;
        Ubrix::InstallLogger(made);
        Ubrix::MarkLoggerReady();
        return made;
    }();
    return *log;
}

std::string Cut(std::string const& text) {
    return text.substr(0, Ubrix::kLogTextSize - 1);
}

// What follows the last separator of a path.
std::string BaseName(std::string const& path) {
    std::size_t const back = path.rfind('\\');
    return path.substr((back != std::string::npos ? back : path.rfind('/')) + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    KeepingLog& log = TheLog();
    log.text.clear();
    log.full.clear();
    auto const level = Velmor::ALogPriorityError;
    // Up to its first zero, as every text of a caller.
    std::string const given(reinterpret_cast<char const*>(data) + 2, size - 2);
    std::string const text = std::string(data[1] * 17U, 'x') + given.c_str();
    char const* const c = text.c_str();
    switch (data[0] % 5) {
        case 0:
            VelmorCore_XLog(level, "f.cpp", 7, "F", c);
            Require(log.text == text);
            break;
        case 1:
            Ubrix::XLog(level, "f.cpp", 7, "F", "<%s>", c);
            Require(log.text == Cut("<" + text + ">"));
            break;
        case 2:
            Ubrix::XLog2(level, c, 7, "F", "message");
            Require(log.full.size() < Ubrix::kLogTextSize);
            Require(log.full.find(" " + Cut(BaseName(text)).substr(0, 4000)) != std::string::npos);
            break;
        case 3:
            Ubrix::XLog(level, "f.cpp", 7, c, "%s%%", c);
            Require(log.text == Cut(text + "%"));
            Require(log.full.find("|" + text.substr(0, 3900)) != std::string::npos);
            break;
        default:
            Ubrix::XLogDetail(level, "f.cpp", 7, "F", c, c, {}, {}, 1, 2, c, c, c, "%s", c);
            Require(log.text == Cut("|ProntelLog|  Module:" + text + " Session:" + text +
                                    " Stage:0 Status:0 ErrCode:1 ErrCode2:2 ErrorMsg:" + text +
                                    " UserInfo:" + text + " Resv:" + text + " " + Cut(text)));
            break;
    }
    return 0;
}
