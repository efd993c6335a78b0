// The calling thread's last error number of the system.
#pragma once

namespace Ubrix::Platform {

int LastError();
void SetLastErrorNumber(int number);

// Keeps the thread's last error over a scope, so that work in between doesn't disturb a caller's error check.
class LastErrorKeeper {
public:
    LastErrorKeeper() : _number(LastError()) {}
    ~LastErrorKeeper() { SetLastErrorNumber(_number); }
    LastErrorKeeper(LastErrorKeeper const&) = delete;
    LastErrorKeeper& operator=(LastErrorKeeper const&) = delete;

private:
    int _number;
};

}  // namespace Ubrix::Platform
