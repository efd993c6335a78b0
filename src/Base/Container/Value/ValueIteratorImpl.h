// The bodies of the variant's iterators. They share their variant's rule: one thread at a time, or several
// that only read.
#pragma once

#include <VelmorCore/Value.h>

#include "Base/Container/Value/ValueMap.h"

namespace Ubrix {

class ValueIteratorBaseImpl : public ValueIteratorBase {
public:
    bool operator==(ValueIteratorBase const& other) const override;
    bool operator!=(ValueIteratorBase const& other) const override;
    int operator-(ValueIteratorBase const& other) const override;
    ValueIteratorBase& operator--() override;
    ValueIteratorBase& operator++() override;
    Value const& operator*() const override;
    Value key() const override;
    int index() const override;
    char const* memberName() const override;

protected:
    ValueIteratorBaseImpl(ValueMap& map, ValueMap::Entries::iterator current);

private:
    bool IsAtEnd() const;
    // Steps from the first entry.
    long long Place() const;

    ValueMap* _map;
    ValueMap::Entries::iterator _current;
};

class ValueConstIteratorImpl final : public virtual ValueIteratorBaseImpl {
public:
    ValueConstIteratorImpl(ValueMap& map, ValueMap::Entries::iterator current);
    ValueIteratorBase* clone() const override;
};

class ValueIteratorImpl final : public virtual ValueIteratorBaseImpl {
public:
    ValueIteratorImpl(ValueMap& map, ValueMap::Entries::iterator current);
    ValueIteratorBase* clone() const override;
};

}  // namespace Ubrix
