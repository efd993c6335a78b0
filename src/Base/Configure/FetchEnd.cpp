// The end of a fetch: what ConfigureImpl does with an answer or a failure, on the transfer's thread.
#include <VelmorCore/Bundle.h>

#include <memory>
#include <new>
#include <string>

#include "Base/Configure/ConfigAnswer.h"
#include "Base/Configure/ConfigureImpl.h"
#include "Base/Configure/ReportKeeper.h"
#include "Base/Configure/StringIterator.h"
#include "Base/Ubrix/ConfigurationKeys.h"
#include "Platform/Boundary.h"
#include "Platform/MemoryWant.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/File/IniLines.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"
#include "System/Time/ClockSource.h"
#include "System/WWW/Task/DataTaskState.h"

namespace Velmor {

namespace Key = Ubrix::ConfigurationKey;
using Ubrix::ForeignText;
using Ubrix::Value;
using Ubrix::Platform::ScopedLock;

namespace {

constexpr char kFunction[] = "Velmor::ConfigureImpl::OnDataTaskFinished";

// True for a module with a usable key; logs otherwise.
bool HasKeys(Value const& module, char const* function, Ubrix::LineBudget& complaints) {
    if (!module.isObject() && complaints.Allows()) {
        VC_LOG(Error, function, "Value is not Object type");
    }
    return module.isObject();
}

void AddNames(Value const& keys, StringIterator& names) {
    for (Ubrix::ValueConstIterator key = keys.begin(); key != keys.end(); ++key) {
        names.Add(key.memberName());
    }
}

// Tells each module's observer which keys came in. Touches nothing but its arguments: an observer may take
// the whole library down.
void NotifyModules(ConfigAnswer& answer) {
    Value const& modules = answer.modules;
    for (Ubrix::ValueConstIterator module = modules.begin(); module != modules.end(); ++module) {
        if (!HasKeys(*module, kFunction, answer.complaints)) {
            continue;
        }
        StringIterator names;
        if (Ubrix::AtBoundary([&] { AddNames(*module, names); })) {
            ConfigureObservers::GetInstance().Notify(module.memberName(), &names);
        } else {
            VC_LOG(Error, kFunction, "no memory to tell a module");
        }
    }
}

ForeignText ShownBody(char const* body, std::uint64_t length) {
    return body != nullptr ? ForeignText(std::string_view(body, static_cast<std::size_t>(length)))
                           : ForeignText(nullptr);
}

// The cache's content with this answer: the address first, so that a module may change what the file tells.
void Compose(std::string const& url, ConfigAnswer& answer, Ubrix::IniLines& lines) {
    lines.Write(Key::kSection, Key::kUrl, url);
    Value const& modules = answer.modules;
    for (Ubrix::ValueConstIterator module = modules.begin(); module != modules.end(); ++module) {
        Value const& keys = *module;
        if (!HasKeys(keys, "Ubrix::BundleImpl::Set", answer.complaints)) {
            continue;
        }
        for (Ubrix::ValueConstIterator key = keys.begin(); key != keys.end(); ++key) {
            lines.Write(module.memberName(), key.memberName(), (*key).asString().c_str());
        }
    }
}

}  // namespace

struct ConfigureImpl::Outcome {
    std::string requestUrl;
    int errorCode;
    int httpStatus;
    std::uint64_t length;
};

void ConfigureImpl::OnDataTaskFinished(Ubrix::DataTask* task, int errorCode, int httpStatus, char const* data,
                                       std::uint64_t length) {
    // A log callback, or an observer, may release it meanwhile.
    std::shared_ptr<ConfigureImpl> const self = shared_from_this();
    try {
        Ubrix::Platform::UnwindScope const scope;
        EndAndTell({RequestUrl(task), errorCode, httpStatus, length}, data);
    } catch (std::bad_alloc const&) {
        // Wherever it was: whoever fetches next must find a state that lets it.
        ScopedLock lock(_lock);
        VC_LOG(Error, kFunction, "no memory to end the request");
        if (_state == kRequesting) {
            _ignoreResult = false;
            _state = errorCode == 0 ? kFinished : kFailed;
        }
    }
}

// Asked for before anything is logged: a log callback may release the task.
std::string ConfigureImpl::RequestUrl(Ubrix::DataTask* task) {
    ScopedLock lock(_lock);
    return task != nullptr ? task->GetUrl() : "";
}

void ConfigureImpl::EndAndTell(Outcome const& outcome, char const* body) {
    auto const answer = std::make_shared<ConfigAnswer>();
    Ending const ending = End(outcome, body, *answer);
    // What follows runs when the task is idle again, so that a fetch that starts meanwhile finds it free.
    Ubrix::DataTaskState::RunOnceIdle([self = shared_from_this(), ending, answer] {
        // Below no other boundary: it is the transfer's thread.
        if (!Ubrix::AtBoundary([&] { self->StartWhatWaits(ending); })) {
            VC_LOG(Error, kFunction, "no memory for the next request");
        }
        if (ending == Ending::Answered) {
            NotifyModules(*answer);
        }
        answer->complaints.TellRest(Ubrix::ALogPriorityError, kFunction);
        if (ending != Ending::Ignored) {
            ReportKeeper::GetInstance().Flush();
        }
    });
}

ConfigureImpl::Ending ConfigureImpl::End(Outcome const& outcome, char const* body, ConfigAnswer& answer) {
    {
        ScopedLock lock(_lock);
        if (DropIfIgnored(outcome)) {
            return Ending::Ignored;
        }
        VC_LOG(Info, kFunction,
               "OnDataTaskFinished error:%d, httpStatus:%d, cost time %llu ms, data:%s, len:%llu",
               outcome.errorCode, outcome.httpStatus, CostMilliseconds(),
               ShownBody(body, outcome.length).c_str(), static_cast<unsigned long long>(outcome.length));
    }
    return outcome.errorCode == 0 ? TakeAnswer(outcome, body, answer) : TakeFailure(outcome);
}

unsigned long long ConfigureImpl::CostMilliseconds() const {
    return static_cast<unsigned long long>(Ubrix::ClockSource::Current().MonotonicMilliseconds() -
                                           _requestStart);
}

bool ConfigureImpl::DropIfIgnored(Outcome const& outcome) {
    if (!_ignoreResult) {
        return false;
    }
    _ignoreResult = false;
    _state = kReady;
    VC_LOG(Warning, kFunction,
           "OnDataTaskFinished ignore result:(error:%d, httpStatus:%d, cost time %llu ms, len:%llu), "
           "requestUrl:%s, setUrl:%s",
           outcome.errorCode, outcome.httpStatus, CostMilliseconds(),
           static_cast<unsigned long long>(outcome.length), ForeignText(outcome.requestUrl).c_str(),
           ForeignText(_url).c_str());
    return true;
}

// The answer is read before the lock is taken, since a large one takes its time; stored, it appears to
// readers at once.
ConfigureImpl::Ending ConfigureImpl::TakeAnswer(Outcome const& outcome, char const* body,
                                                ConfigAnswer& answer) {
    int result = ParseConfigAnswer(body, outcome.length, answer);
    ScopedLock lock(_lock);
    if (DropIfIgnored(outcome)) {
        return Ending::Ignored;
    }
    Report(outcome);
    if (result == 0 && !Store(answer)) {
        Value().swap(answer.modules);
        result = kBadAnswer;
    }
    if (result != 0) {
        VC_LOG(Error, kFunction, "ParseJson error:%d", result);
    } else {
        TakeNewGap();
    }
    _state = kFinished;
    return Ending::Answered;
}

ConfigureImpl::Ending ConfigureImpl::TakeFailure(Outcome const& outcome) {
    ScopedLock lock(_lock);
    // The lock was open since the last look; a mark left behind would cost the next request its answer.
    if (DropIfIgnored(outcome)) {
        return Ending::Ignored;
    }
    _state = kFailed;
    VC_LOG(Info, kFunction, "OnDataTaskFinished error:%d", outcome.errorCode);
    if (_retryCount == 0) {
        Report(outcome);
    }
    return Ending::Failed;
}

void ConfigureImpl::StartWhatWaits(Ending ending) {
    ScopedLock lock(_lock);
    if (_requestWhenIdle) {
        Request();
    } else if (ending == Ending::Failed && _state == kFailed && _retryCount > 0) {
        StartRetry();
    }
}

// Replaces the cache whole, in one write: a process that dies in the middle finds the old one again. False,
// with the cache as it was, if there is no memory for it.
bool ConfigureImpl::Store(ConfigAnswer& answer) {
    try {
        Ubrix::Platform::UnwindScope const scope;
        if (answer.ruleId > _ruleId) {
            _ruleId = answer.ruleId;
            Ubrix::BundleFactory::GetInstance().GetDefaultBundle().Set(Key::kSection, Key::kRuleId, _ruleId);
        }
        if (_cache != nullptr) {
            Ubrix::IniLines lines;
            Compose(_url, answer, lines);
            _cache->Replace(lines);
        }
        return true;
    } catch (std::bad_alloc const&) {
        VC_LOG(Error, kFunction, "parse json error");
        return false;
    }
}

void ConfigureImpl::Report(Outcome const& outcome) {
    ReportKeeper::GetInstance().Add(
        {outcome.errorCode, static_cast<long long>(CostMilliseconds()), _maxRetryCount - _retryCount});
}

}  // namespace Velmor
