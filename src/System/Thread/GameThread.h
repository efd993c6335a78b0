// Calls to the game's thread: they are posted, wait in a queue (CSelectorManager), and run there, at most 20
// a frame.
//
// There are two queues. The host-update queue is drained by the host's own frame loop, once the host has said
// that it has one. Until then calls go to the window queue, which a message window drains, if a platform
// integration has made one. One lock guards the making, taking and releasing of both; it is never held while
// a selector runs.
#pragma once

#include "System/Thread/CSelector.h"

namespace Ubrix {

// Message numbers of the window. The parameter of the first is null to run the window queue, or the address
// of a selector to run, which stays the sender's; that of the second a heap selector, to be run and freed.
constexpr unsigned int kWindowMessageRun = 2024;
constexpr unsigned int kWindowMessageRunAndFree = 2025;

// Says that the host drains the host-update queue from now on, for the rest of the process. What waits in the
// window queue stays there. Any thread, best before services start to post.
void EnableUiUpdate();
bool IsUiUpdateEnabled();

// One pass over the host-update queue, on the calling thread. Nothing if nobody has posted yet.
void RunHostUpdateSelectors();

// Deletes the host-update queue and drops what waits there; a later post makes a new one. A pass in progress
// on another thread ends after the selector in hand. Any thread.
void ReleaseHostUpdateQueue();

// Puts a copy of `selector` into its target's own queue, or else into the host-update queue if the host has
// one, or else into the window queue; in the last case the window, if there is one, is sent a pass, and the
// call returns after it. Null is ignored. Any thread.
void PostSelectorToUiThread(CSelector const* selector);

// Typed forms for a member of the target's own class.
template <class Target>
void PostSelectorToUiThread(Target* target, void (Target::*member)(void*), void* arg1) {
    CSelector selector;
    selector.target = target;
    selector.member1 = static_cast<CSelector::Member1>(member);
    selector.arg1 = arg1;
    PostSelectorToUiThread(&selector);
}

template <class Target>
void PostSelectorToUiThread(Target* target, void (Target::*member)(void*, void*), void* arg1, void* arg2) {
    CSelector selector;
    selector.target = target;
    selector.member2 = static_cast<CSelector::Member2>(member);
    selector.arg1 = arg1;
    selector.arg2 = arg2;
    PostSelectorToUiThread(&selector);
}

// Takes a target's selectors out of the queue that posts go to at present, and waits for one that is running
// on another thread.
void RemoveSelectorsOfTarget(CTargetBase* target);
// The same for both queues: for a target that dies, whenever its selectors were posted.
void RemoveSelectorsFromAllQueues(CTargetBase* target);

// Makes the hidden window on the calling thread, which is to run a message loop. False if the system refuses.
bool CreateUiWindow();
// Closes it, on the thread that made it. Posted selectors that it didn't come to are freed.
void DestroyUiWindow();
// Leaves a heap selector for the window, which runs and frees it. False without a window; then the selector
// stays the caller's. Any thread.
bool PostToUiWindow(CSelector* heapSelector);

}  // namespace Ubrix
