// The end of a fetch: what ConfigureImpl does with an answer or a failure, on the transfer's thread.
#include <VelmorCore/Bundle.h>

#include <string>

#include "Base/Configure/ConfigAnswer.h"
#include "Base/Configure/ConfigureImpl.h"
#include "Base/Configure/ReportKeeper.h"
#include "Base/Configure/StringIterator.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"
#include "System/Time/ClockSource.h"
#include "System/WWW/Task/DataTaskImpl.h"

namespace Velmor {

using Ubrix::ForeignText;
using Ubrix::Value;
using Ubrix::Platform::ScopedLock;

namespace {

constexpr char kFunction[] = "Velmor::ConfigureImpl::OnDataTaskFinished";
constexpr char kSection[] = "VelmorCore";
constexpr unsigned long long kRetryMilliseconds = 10000;

// Tells each module's observer which keys came in. Touches nothing but its arguments: an observer may take
// the whole library down.
void NotifyModules(ConfigureObservers& observers, Value const& modules) {
    for (Ubrix::ValueConstIterator module = modules.begin(); module != modules.end(); ++module) {
        if (!(*module).isObject()) {
            VC_LOG(Error, kFunction, "Value is not Object type");
            continue;
        }
        Value const& keys = *module;
        StringIterator names;
        for (Ubrix::ValueConstIterator key = keys.begin(); key != keys.end(); ++key) {
            names.Add(key.memberName());
        }
        observers.Notify(module.memberName(), &names);
    }
}

ForeignText ShownBody(char const* body, std::uint64_t length) {
    return body != nullptr ? ForeignText(std::string_view(body, static_cast<std::size_t>(length)))
                           : ForeignText(nullptr);
}

// One module into its section, without a save.
void StoreModule(Ubrix::Bundle& cache, char const* name, Value const& keys) {
    for (Ubrix::ValueConstIterator key = keys.begin(); key != keys.end(); ++key) {
        cache.SetNoSave(name, key.memberName(), (*key).asString().c_str());
    }
}

}  // namespace

struct ConfigureImpl::Outcome {
    Ubrix::DataTask* task;
    int errorCode;
    int httpStatus;
    std::uint64_t length;
};

void ConfigureImpl::OnDataTaskFinished(Ubrix::DataTask* task, int errorCode, int httpStatus, char const* data,
                                       std::uint64_t length) {
    Outcome const outcome{task, errorCode, httpStatus, length};
    auto const modules = std::make_shared<Value>();
    Ending const ending = End(outcome, data, *modules);
    // What follows runs when the task is idle again, so that a fetch that starts meanwhile finds it free.
    Ubrix::DataTaskImpl::RunOnceIdle(task, [this, ending, modules, observers = _observers] {
        StartWhatWaits(ending);
        if (ending == Ending::Answered) {
            NotifyModules(*observers, *modules);
        }
        if (ending != Ending::Ignored) {
            ReportKeeper::GetInstance().Flush();
        }
    });
}

ConfigureImpl::Ending ConfigureImpl::End(Outcome const& outcome, char const* body, Value& modules) {
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
    return outcome.errorCode == 0 ? TakeAnswer(outcome, body, modules) : TakeFailure(outcome);
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
           static_cast<unsigned long long>(outcome.length),
           ForeignText(outcome.task != nullptr ? outcome.task->GetUrl() : nullptr).c_str(),
           ForeignText(_url).c_str());
    return true;
}

// The answer is read before the lock is taken, since a large one takes its time; stored, it appears to
// readers at once.
ConfigureImpl::Ending ConfigureImpl::TakeAnswer(Outcome const& outcome, char const* body, Value& modules) {
    int ruleId = 0;
    int const result = ParseConfigAnswer(body, outcome.length, modules, ruleId);
    ScopedLock lock(_lock);
    if (DropIfIgnored(outcome)) {
        return Ending::Ignored;
    }
    Report(outcome);
    if (result == 0) {
        Store(modules, ruleId);
    } else {
        VC_LOG(Error, kFunction, "ParseJson error:%d", result);
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
        --_retryCount;
        StartRetryTimer(kRetryMilliseconds);
    }
}

// Replaces the cache whole, in one write: a process that dies in the middle finds the old one again.
void ConfigureImpl::Store(Value const& modules, int ruleId) {
    if (ruleId > _ruleId) {
        _ruleId = ruleId;
        Ubrix::BundleFactory::GetInstance().GetDefaultBundle().Set(kSection, "rule_id", ruleId);
    }
    if (_cache == nullptr) {
        return;
    }
    _cache->ClearNoSave();
    _cache->SetNoSave(kSection, "RemoteConfigUrl", _url.c_str());
    for (Ubrix::ValueConstIterator module = modules.begin(); module != modules.end(); ++module) {
        if ((*module).isObject()) {
            StoreModule(*_cache, module.memberName(), *module);
        } else {
            VC_LOG(Error, "Ubrix::BundleImpl::Set", "Value is not Object type");
        }
    }
    _cache->Save();
}

void ConfigureImpl::Report(Outcome const& outcome) {
    ReportKeeper::GetInstance().Add(
        {outcome.errorCode, static_cast<long long>(CostMilliseconds()), _maxRetryCount - _retryCount});
}

}  // namespace Velmor
