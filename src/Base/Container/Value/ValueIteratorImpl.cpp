#include "Base/Container/Value/ValueIteratorImpl.h"

#include <iterator>

#include "Platform/MemoryWant.h"

namespace Ubrix {

namespace {

// A body is compared with bodies only.
ValueIteratorBaseImpl const& AsBody(ValueIteratorBase const& other) {
    return static_cast<ValueIteratorBaseImpl const&>(other);
}

}  // namespace

ValueIteratorBaseImpl::ValueIteratorBaseImpl(ValueMap& map, ValueMap::Entries::iterator current)
    : _map(&map), _current(current) {}

bool ValueIteratorBaseImpl::IsAtEnd() const {
    return _current == _map->entries.end();
}

long long ValueIteratorBaseImpl::Place() const {
    return std::distance(_map->entries.begin(), _current);
}

bool ValueIteratorBaseImpl::operator==(ValueIteratorBase const& other) const {
    return _current == AsBody(other)._current;
}

bool ValueIteratorBaseImpl::operator!=(ValueIteratorBase const& other) const {
    return !(*this == other);
}

int ValueIteratorBaseImpl::operator-(ValueIteratorBase const& other) const {
    return static_cast<int>(AsBody(other).Place() - Place());
}

ValueIteratorBase& ValueIteratorBaseImpl::operator--() {
    if (_current != _map->entries.begin()) {
        --_current;
    }
    return *this;
}

ValueIteratorBase& ValueIteratorBaseImpl::operator++() {
    if (!IsAtEnd()) {
        ++_current;
    }
    return *this;
}

Value const& ValueIteratorBaseImpl::operator*() const {
    return IsAtEnd() ? Value::Null : _current->second;
}

Value ValueIteratorBaseImpl::key() const {
    if (IsAtEnd()) {
        return Value();
    }
    ValueKey const& key = _current->first;
    return key.Text() != nullptr ? Value(key.Text()) : Value(key.Index());
}

int ValueIteratorBaseImpl::index() const {
    return IsAtEnd() ? 0 : _current->first.Index();
}

char const* ValueIteratorBaseImpl::memberName() const {
    if (IsAtEnd()) {
        return nullptr;
    }
    char const* text = _current->first.Text();
    return text != nullptr ? text : "";
}

ValueConstIteratorImpl::ValueConstIteratorImpl(ValueMap& map, ValueMap::Entries::iterator current)
    : ValueIteratorBaseImpl(map, current) {}

ValueIteratorBase* ValueConstIteratorImpl::clone() const {
    return Platform::WithoutThrow(
        [this]() -> ValueIteratorBase* { return new ValueConstIteratorImpl(*this); });
}

ValueIteratorImpl::ValueIteratorImpl(ValueMap& map, ValueMap::Entries::iterator current)
    : ValueIteratorBaseImpl(map, current) {}

ValueIteratorBase* ValueIteratorImpl::clone() const {
    return Platform::WithoutThrow([this]() -> ValueIteratorBase* { return new ValueIteratorImpl(*this); });
}

}  // namespace Ubrix
