// The handles that callers hold, and where a value makes them.
#include <VelmorCore/Value.h>

#include "Base/Container/Value/ValueIteratorImpl.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

using Platform::WithoutThrow;

namespace {

// A handle without an implementation is at the end: want of memory for one of the two must not make a loop
// endless.
bool IsAtEnd(ValueIteratorBase const* body) {
    return body == nullptr || &**body == &Value::Null;
}

// A new body; null if there is no memory.
template <class Impl>
ValueIteratorBase* NewImpl(ValueMap& map, ValueMap::Entries::iterator current) {
    return WithoutThrow([&]() -> ValueIteratorBase* { return new Impl(map, current); });
}

ValueIteratorBase* CloneOf(ValueIteratorBase const* body) {
    return body != nullptr ? body->clone() : nullptr;
}

}  // namespace

ValueIteratorBase::ValueIteratorBase(ValueIteratorBase* body) : _impl(body) {}

ValueIteratorBase::ValueIteratorBase(ValueIteratorBase const& other) : _impl(CloneOf(other._impl)) {}

ValueIteratorBase& ValueIteratorBase::operator=(ValueIteratorBase const& other) {
    if (this == &other) {
        return *this;
    }
    ValueIteratorBase* const body = CloneOf(other._impl);
    if (body != nullptr || other._impl == nullptr) {
        delete _impl;
        _impl = body;
    }
    return *this;
}

ValueIteratorBase::~ValueIteratorBase() {
    delete _impl;
}

bool ValueIteratorBase::operator==(ValueIteratorBase const& other) const {
    if (_impl == nullptr || other._impl == nullptr) {
        return IsAtEnd(_impl) && IsAtEnd(other._impl);
    }
    return *_impl == *other._impl;
}

bool ValueIteratorBase::operator!=(ValueIteratorBase const& other) const {
    return !(*this == other);
}

int ValueIteratorBase::operator-(ValueIteratorBase const& other) const {
    return _impl != nullptr && other._impl != nullptr ? *_impl - *other._impl : 0;
}

ValueIteratorBase& ValueIteratorBase::operator--() {
    if (_impl != nullptr) {
        --*_impl;
    }
    return *this;
}

ValueIteratorBase& ValueIteratorBase::operator++() {
    if (_impl != nullptr) {
        ++*_impl;
    }
    return *this;
}

Value const& ValueIteratorBase::operator*() const {
    return _impl != nullptr ? **_impl : Value::Null;
}

Value ValueIteratorBase::key() const {
    return _impl != nullptr ? _impl->key() : Value();
}

int ValueIteratorBase::index() const {
    return _impl != nullptr ? _impl->index() : 0;
}

char const* ValueIteratorBase::memberName() const {
    return _impl != nullptr ? _impl->memberName() : nullptr;
}

ValueConstIterator::ValueConstIterator() = default;

ValueConstIterator::ValueConstIterator(ValueIteratorBase* body) : ValueIteratorBase(body) {}

ValueConstIterator::ValueConstIterator(ValueConstIterator const& other) = default;

ValueConstIterator::~ValueConstIterator() = default;

ValueConstIterator& ValueConstIterator::operator=(ValueConstIterator const& other) = default;

ValueConstIterator ValueConstIterator::operator++(int) {
    ValueConstIterator before(*this);
    ++*this;
    return before;
}

ValueConstIterator ValueConstIterator::operator--(int) {
    ValueConstIterator before(*this);
    --*this;
    return before;
}

ValueIteratorBase* ValueConstIterator::clone() const {
    return WithoutThrow([this]() -> ValueIteratorBase* { return new ValueConstIterator(*this); });
}

ValueIterator::ValueIterator() = default;

ValueIterator::ValueIterator(ValueIteratorBase* body) : ValueIteratorBase(body) {}

ValueIterator::ValueIterator(ValueIterator const& other) = default;

ValueIterator::~ValueIterator() = default;

ValueIterator& ValueIterator::operator=(ValueIterator const& other) = default;

ValueIterator ValueIterator::operator++(int) {
    ValueIterator before(*this);
    ++*this;
    return before;
}

ValueIterator ValueIterator::operator--(int) {
    ValueIterator before(*this);
    --*this;
    return before;
}

Value& ValueIterator::operator*() const {
    Value const& entry = ValueIteratorBase::operator*();
    // The handle was made from a value that may be changed.
    return &entry != &Value::Null ? const_cast<Value&>(entry) : ScratchValue();
}

ValueIteratorBase* ValueIterator::clone() const {
    return WithoutThrow([this]() -> ValueIteratorBase* { return new ValueIterator(*this); });
}

ValueConstIterator Value::begin() const {
    if (!HasMap()) {
        return ValueConstIterator();
    }
    return ValueConstIterator(NewImpl<ValueConstIteratorImpl>(*_value.map, _value.map->entries.begin()));
}

ValueConstIterator Value::end() const {
    if (!HasMap()) {
        return ValueConstIterator();
    }
    return ValueConstIterator(NewImpl<ValueConstIteratorImpl>(*_value.map, _value.map->entries.end()));
}

ValueIterator Value::begin() {
    if (!HasMap()) {
        return ValueIterator();
    }
    return ValueIterator(NewImpl<ValueIteratorImpl>(*_value.map, _value.map->entries.begin()));
}

ValueIterator Value::end() {
    if (!HasMap()) {
        return ValueIterator();
    }
    return ValueIterator(NewImpl<ValueIteratorImpl>(*_value.map, _value.map->entries.end()));
}

}  // namespace Ubrix
