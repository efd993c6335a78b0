#include "Platform/Condition.h"

#include <cerrno>

#include "Platform/Posix/MonotonicDeadline.h"
#include "Platform/Posix/MutexBody.h"

namespace Ubrix::Platform {

struct Condition::Body {
    pthread_cond_t condition;
    pthread_mutex_t* mutex;
};

Condition::Condition(RecursiveMutex& mutex) : _body(new Body) {
    _body->mutex = &mutex._body->mutex;
    InitMonotonicCondition(&_body->condition);
}

Condition::~Condition() {
    pthread_cond_destroy(&_body->condition);
    delete _body;
}

void Condition::Wait() {
    pthread_cond_wait(&_body->condition, _body->mutex);
}

bool Condition::WaitFor(unsigned int milliseconds) {
    timespec const deadline = MonotonicDeadline(milliseconds);
    return pthread_cond_timedwait(&_body->condition, _body->mutex, &deadline) != ETIMEDOUT;
}

void Condition::Signal() {
    pthread_cond_signal(&_body->condition);
}

void Condition::Broadcast() {
    pthread_cond_broadcast(&_body->condition);
}

}  // namespace Ubrix::Platform
