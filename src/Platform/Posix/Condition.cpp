#include "Platform/Condition.h"

#include <cerrno>

#include "Platform/Posix/MonotonicDeadline.h"
#include "Platform/Posix/MutexBody.h"
#include "Platform/WaitPause.h"

namespace Ubrix::Platform {

struct Condition::Body {
    RecursiveMutex& mutex;
    pthread_cond_t condition;
};

Condition::Condition(RecursiveMutex& mutex) : _body(new Body{mutex, {}}) {
    InitMonotonicCondition(&_body->condition);
}

Condition::~Condition() {
    pthread_cond_destroy(&_body->condition);
    delete _body;
}

void Condition::Wait() {
    if (!_body->mutex.CatchUp()) {
        WaitPause const pause;
        pthread_cond_wait(&_body->condition, &_body->mutex._body->mutex);
    }
}

bool Condition::WaitFor(unsigned int milliseconds) {
    timespec const deadline = MonotonicDeadline(milliseconds);
    if (_body->mutex.CatchUp()) {
        return true;
    }
    WaitPause const pause;
    return pthread_cond_timedwait(&_body->condition, &_body->mutex._body->mutex, &deadline) != ETIMEDOUT;
}

void Condition::Signal() {
    pthread_cond_signal(&_body->condition);
}

void Condition::Broadcast() {
    pthread_cond_broadcast(&_body->condition);
}

}  // namespace Ubrix::Platform
