#include "System/WWW/Task/DataTaskImpl.h"

#include <new>
#include <utility>
#include <vector>

#include "Platform/MemoryWant.h"
#include "Platform/Thread.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"
#include "System/WWW/Task/DataTaskExchange.h"
#include "System/WWW/Task/TransportChoice.h"

namespace Ubrix {

namespace {

constexpr char const* kWorker = "Ubrix::DataTaskImpl::OnThreadProc";

// What a listener is told of a request that failed with `transportError`.
int DataTaskErrorCode(int transportError) {
    switch (transportError) {
        case HttpErrorTimeout:
            return 2;
        case HttpErrorNameNotResolved:
            return 3;
        case HttpErrorInvalidUrl:
            return 4;
        case HttpErrorCannotConnect:
            return 5;
        default:
            return 1;
    }
}

int Carry(DataTaskRequest const& request, CrackedUrl const& url, std::vector<std::string> const& lines,
          DataTaskExchange& exchange) {
    std::vector<char const*> headers;
    headers.reserve(lines.size());
    for (std::string const& line : lines) {
        headers.push_back(line.c_str());
    }
    bool const hasBody = !request.body.empty();
    HttpRequest told{};
    told.method = hasBody ? "POST" : "GET";
    told.host = url.GetHost().c_str();
    told.port = 443;
    told.path = url.GetPath().c_str();
    told.headers = headers.data();
    told.headerCount = headers.size();
    told.body = hasBody ? request.body.data() : nullptr;
    told.bodyLength = request.body.size();
    Platform::CallOut const out;
    return request.transport->Perform(told, exchange);
}

// Tells a request's failure, unless nobody is to hear of it any more. Gives its code.
int Fail(DataTaskExchange& exchange, int error) {
    if (!exchange.IsCancelled()) {
        VC_LOG(Info, kWorker, "HttpSendRequest failed %d\n", error);
        if (!exchange.Advice().empty()) {
            VC_LOG(Warning, kWorker, "%s", ForeignText(exchange.Advice()).c_str());
        }
    }
    return DataTaskErrorCode(error);
}

// Brings the answer into `exchange`. Gives the listener's code.
int Ask(DataTaskRequest const& request, DataTaskExchange& exchange) {
    CrackedUrl url;
    if (!request.Crack(url)) {
        VC_LOG(Info, kWorker, "Error:InternetCrackUrl failed!\n");
        return DataTaskErrorCode(HttpErrorInvalidUrl);
    }
    std::vector<std::string> lines;
    if (!request.BuildHeaderLines(lines)) {
        VC_LOG(Info, kWorker, "HttpAddRequestHeaders failed");
        return DataTaskErrorCode(HttpErrorInternal);
    }
    int const error = Carry(request, url, lines, exchange);
    if (error != HttpErrorNone) {
        return Fail(exchange, error);
    }
    if (exchange.Status() == 0 && !exchange.IsCancelled()) {
        VC_LOG(Info, kWorker, "Get head failed\n");
    }
    return exchange.Status() == 0 ? DataTaskErrorCode(HttpErrorNoStatus) : 0;
}

// Without memory a request still ends, with the code of any failure: nothing was told before.
int AskSafely(DataTaskRequest const& request, DataTaskExchange& exchange) {
    try {
        Platform::UnwindScope const scope;
        return Ask(request, exchange);
    } catch (std::bad_alloc const&) {
        return DataTaskErrorCode(HttpErrorInternal);
    }
}

}  // namespace

DataTaskImpl::DataTaskImpl(char const* url, Listener* listener)
    : WWWTaskBase(url), _state(std::make_shared<DataTaskState>(this, listener)) {}

DataTaskImpl::~DataTaskImpl() {
    VC_LOG(Info, "Ubrix::DataTaskImpl::~DataTaskImpl", "~DataTaskImpl");
    _state->Detach();
}

void DataTaskImpl::Get() {
    BeginOrTell(std::string());
}

void DataTaskImpl::Post(void const* data, std::size_t length) {
    if (_state->IsRequesting()) {
        VC_LOG(Info, "Ubrix::DataTaskImpl::Post", "DataTask is Requesting");
        return;
    }
    if (data == nullptr) {
        VC_LOG(Info, "Ubrix::DataTaskImpl::Post", "DataTaskImpl::Post param invalid!");
        return;
    }
    BeginOrTell(std::string(static_cast<char const*>(data), length));
}

void DataTaskImpl::SetListener(Listener* listener) {
    _state->SetListener(listener);
}

void DataTaskImpl::RemoveListener(Listener*) {
    _state->SetListener(nullptr);
}

void DataTaskImpl::Cancel() {
    _state->Cancel();
}

bool DataTaskImpl::TryGet(DataTask* task) {
    return static_cast<DataTaskImpl*>(task)->Begin(std::string()) == Start::Started;
}

// The request is made first: nothing may fail between the mark and the worker that takes it back.
DataTaskImpl::Start DataTaskImpl::Begin(std::string body) {
    auto request = std::make_unique<DataTaskRequest>();
    request->state = _state;
    request->url = Url();
    request->headers = Headers();
    request->body = std::move(body);
    request->ticket = _state->Begin();
    if (request->ticket == DataTaskState::kNoTicket) {
        VC_LOG(Info, "Ubrix::DataTaskImpl::Get", "DataTask is Requesting");
        return Start::Busy;
    }
    request->transport = &TransportChoice::ForRequest();
    DataTaskState::Ticket const ticket = request->ticket;
    if (!Platform::StartThread(&DataTaskImpl::RunWorker, request.get())) {
        _state->End(ticket);
        return Start::NoThread;
    }
    // The worker owns it from here on.
    static_cast<void>(request.release());
    return Start::Started;
}

void DataTaskImpl::BeginOrTell(std::string body) {
    std::shared_ptr<DataTaskState> const state = _state;
    if (Begin(std::move(body)) != Start::NoThread) {
        return;
    }
    DataTaskState::Ticket const ticket = state->Begin();
    if (ticket != DataTaskState::kNoTicket) {
        state->Finish(ticket, DataTaskErrorCode(HttpErrorInternal), 0, nullptr, 0);
    }
}

void DataTaskImpl::RunWorker(void* request) {
    std::unique_ptr<DataTaskRequest> const owned(static_cast<DataTaskRequest*>(request));
    OnThreadProc(*owned);
}

void DataTaskImpl::OnThreadProc(DataTaskRequest const& request) {
    DataTaskExchange exchange(*request.state, request.ticket);
    int const code = AskSafely(request, exchange);
    if (code != 0) {
        request.state->Finish(request.ticket, code, 0, nullptr, 0);
        return;
    }
    std::string const& body = exchange.Body();
    request.state->Finish(request.ticket, 0, exchange.Status(), body.c_str(), body.size());
}

}  // namespace Ubrix
