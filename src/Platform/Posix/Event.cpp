#include "Platform/Event.h"

#include <cerrno>

#include "Platform/Posix/MonotonicDeadline.h"

namespace Ubrix::Platform {

struct Event::Body {
    pthread_mutex_t mutex;
    pthread_cond_t condition;
    bool signalled;
};

Event::Event() : _body(new Body) {
    pthread_mutex_init(&_body->mutex, nullptr);
    InitMonotonicCondition(&_body->condition);
    _body->signalled = false;
}

Event::~Event() {
    pthread_cond_destroy(&_body->condition);
    pthread_mutex_destroy(&_body->mutex);
    delete _body;
}

void Event::Set() {
    pthread_mutex_lock(&_body->mutex);
    _body->signalled = true;
    pthread_cond_signal(&_body->condition);
    pthread_mutex_unlock(&_body->mutex);
}

void Event::Reset() {
    pthread_mutex_lock(&_body->mutex);
    _body->signalled = false;
    pthread_mutex_unlock(&_body->mutex);
}

void Event::Wait() {
    pthread_mutex_lock(&_body->mutex);
    while (!_body->signalled) {
        pthread_cond_wait(&_body->condition, &_body->mutex);
    }
    _body->signalled = false;
    pthread_mutex_unlock(&_body->mutex);
}

bool Event::WaitFor(unsigned int milliseconds) {
    timespec const deadline = MonotonicDeadline(milliseconds);
    pthread_mutex_lock(&_body->mutex);
    int result = 0;
    while (!_body->signalled && result != ETIMEDOUT) {
        result = pthread_cond_timedwait(&_body->condition, &_body->mutex, &deadline);
    }
    bool const taken = _body->signalled;
    _body->signalled = false;
    pthread_mutex_unlock(&_body->mutex);
    return taken;
}

}  // namespace Ubrix::Platform
