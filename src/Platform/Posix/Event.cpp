#include "Platform/Event.h"

#include <cerrno>

#include "Platform/Posix/MonotonicDeadline.h"
#include "Platform/WaitPause.h"

namespace Ubrix::Platform {

struct Event::Body {
    pthread_mutex_t mutex;
    pthread_cond_t condition;
    bool signalled;

    // Takes the signal; waits for it as long as `wait` answers 0.
    template <typename OneWait>
    bool Take(OneWait const& wait) {
        pthread_mutex_lock(&mutex);
        while (!signalled && wait() == 0) {
        }
        bool const taken = signalled;
        signalled = false;
        pthread_mutex_unlock(&mutex);
        return taken;
    }
    bool TakeAtOnce() {
        return Take([] { return ETIMEDOUT; });
    }
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
    _body->TakeAtOnce();
}

void Event::Wait() {
    if (!_body->TakeAtOnce()) {
        WaitPause const pause;
        _body->Take([this] { return pthread_cond_wait(&_body->condition, &_body->mutex); });
    }
}

bool Event::WaitFor(unsigned int milliseconds) {
    timespec const deadline = MonotonicDeadline(milliseconds);
    if (_body->TakeAtOnce()) {
        return true;
    }
    WaitPause const pause;
    return _body->Take(
        [this, &deadline] { return pthread_cond_timedwait(&_body->condition, &_body->mutex, &deadline); });
}

}  // namespace Ubrix::Platform
