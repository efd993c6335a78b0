// Work by a plain function.
#pragma once

#include <VelmorCore/Operation.h>

#include <new>

namespace Ubrix {

// Runs on one thread at a time; the data is the caller's.
class StaticOperation : public Operation {
public:
    StaticOperation(Function function, void* data, bool repeat)
        : Operation(repeat), _function(function), _data(data) {}
    explicit StaticOperation(StaticOperation const* other)
        : Operation(other),
          _function(other != nullptr ? other->_function : nullptr),
          _data(other != nullptr ? other->_data : nullptr) {}

    void Run() override {
        if (_function != nullptr) {
            _function(this, _data);
        }
    }
    Operation* Duplicate() const override { return new (std::nothrow) StaticOperation(this); }

private:
    Function _function;
    void* _data;
};

}  // namespace Ubrix
