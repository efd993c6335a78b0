#include "Platform/WaitPause.h"

namespace Ubrix::Platform {

namespace {

// Null for a thread that never had anything to give up.
thread_local WaitPause::Steps const* t_steps = nullptr;

}  // namespace

WaitPause::WaitPause() : _steps(t_steps), _gaveUp(_steps != nullptr && _steps->giveUp()) {}

WaitPause::~WaitPause() {
    if (_gaveUp) {
        _steps->takeBack();
    }
}

void WaitPause::Use(Steps const& steps) {
    t_steps = &steps;
}

}  // namespace Ubrix::Platform
