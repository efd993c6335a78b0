#include "System/Thread/GameThread.h"

#include <atomic>
#include <memory>

#include "Platform/Immortal.h"
#include "Platform/MessageWindow.h"
#include "Platform/Mutex.h"
#include "System/Thread/CSelectorManager.h"

namespace Ubrix {

using Platform::ScopedLock;
using Platform::WindowHandle;

namespace {

using QueuePointer = std::shared_ptr<CSelectorManager>;

// Posters and pumps share a queue while they use it, so that a release in between takes nothing from under
// them.
struct MainQueues {
    Platform::RecursiveMutex mutex;
    QueuePointer hostUpdate VC_GUARDED_BY(mutex);
    QueuePointer window VC_GUARDED_BY(mutex);
};

std::atomic<bool> g_uiUpdateEnabled{false};
std::atomic<WindowHandle> g_uiWindow{WindowHandle::None};

// Never destroyed: threads may post while the process exits.
MainQueues& Queues() {
    static Platform::Immortal<MainQueues> queues;
    return *queues;
}

QueuePointer TakeOrMake(QueuePointer& queue) {
    if (queue == nullptr) {
        queue = std::make_shared<CSelectorManager>();
    }
    return queue;
}

QueuePointer HostUpdateQueue() {
    MainQueues& queues = Queues();
    ScopedLock lock(queues.mutex);
    return TakeOrMake(queues.hostUpdate);
}

QueuePointer WindowQueue() {
    MainQueues& queues = Queues();
    ScopedLock lock(queues.mutex);
    return TakeOrMake(queues.window);
}

QueuePointer ExistingHostUpdateQueue() {
    MainQueues& queues = Queues();
    ScopedLock lock(queues.mutex);
    return queues.hostUpdate;
}

QueuePointer ExistingWindowQueue() {
    MainQueues& queues = Queues();
    ScopedLock lock(queues.mutex);
    return queues.window;
}

void RemoveFrom(QueuePointer const& queue, CTargetBase* target) {
    if (queue != nullptr) {
        queue->RemoveSelectors(target);
    }
}

bool HandleWindowMessage(WindowHandle window, unsigned int message, void* parameter) {
    if (window == WindowHandle::None) {
        return false;
    }
    if (message == kWindowMessageRun) {
        if (parameter == nullptr) {
            WindowQueue()->RunSelectors();
        } else {
            static_cast<CSelector const*>(parameter)->Run();
        }
        return true;
    }
    if (message == kWindowMessageRunAndFree) {
        std::unique_ptr<CSelector> const selector(static_cast<CSelector*>(parameter));
        if (selector != nullptr) {
            selector->Run();
        }
        return true;
    }
    return false;
}

void DiscardWindowMessage(unsigned int message, void* parameter) {
    if (message == kWindowMessageRunAndFree) {
        delete static_cast<CSelector*>(parameter);
    }
}

}  // namespace

void EnableUiUpdate() {
    g_uiUpdateEnabled = true;
}

bool IsUiUpdateEnabled() {
    return g_uiUpdateEnabled;
}

void RunHostUpdateSelectors() {
    QueuePointer const queue = ExistingHostUpdateQueue();
    if (queue != nullptr) {
        queue->RunSelectors();
    }
}

void ReleaseHostUpdateQueue() {
    MainQueues& queues = Queues();
    QueuePointer released;
    {
        ScopedLock lock(queues.mutex);
        released.swap(queues.hostUpdate);
    }
    if (released != nullptr) {
        released->Close();
    }
}

void PostSelectorToUiThread(CSelector const* selector) {
    if (selector == nullptr) {
        return;
    }
    if (selector->target != nullptr && selector->target->OwnCollection() != nullptr) {
        selector->target->OwnCollection()->AddSelector(*selector);
        return;
    }
    if (g_uiUpdateEnabled) {
        HostUpdateQueue()->AddSelector(*selector);
        return;
    }
    WindowQueue()->AddSelector(*selector);
    WindowHandle const window = g_uiWindow;
    if (window != WindowHandle::None) {
        Platform::SendToMessageWindow(window, kWindowMessageRun, nullptr);
    }
}

void RemoveSelectorsOfTarget(CTargetBase* target) {
    RemoveFrom(g_uiUpdateEnabled ? ExistingHostUpdateQueue() : ExistingWindowQueue(), target);
}

void RemoveSelectorsFromAllQueues(CTargetBase* target) {
    RemoveFrom(ExistingHostUpdateQueue(), target);
    RemoveFrom(ExistingWindowQueue(), target);
}

bool CreateUiWindow() {
    g_uiWindow = WindowHandle::None;
    g_uiWindow = Platform::OpenMessageWindow({HandleWindowMessage, DiscardWindowMessage});
    return g_uiWindow != WindowHandle::None;
}

void DestroyUiWindow() {
    WindowHandle const window = g_uiWindow.exchange(WindowHandle::None);
    if (Platform::MessageWindowExists(window)) {
        Platform::CloseMessageWindow(window);
    }
}

bool PostToUiWindow(CSelector* heapSelector) {
    return Platform::PostToMessageWindow(g_uiWindow, kWindowMessageRunAndFree, heapSelector);
}

}  // namespace Ubrix
