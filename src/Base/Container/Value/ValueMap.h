// What arrays and objects of the variant hold.
#pragma once

#include <VelmorCore/Value.h>

#include <cstring>
#include <map>
#include <utility>

#include "Base/Container/Nesting.h"

namespace Ubrix {

// A text or an index. Made for a look-up it borrows the caller's text; a copy owns its text.
class ValueKey {
public:
    explicit ValueKey(int index) : _text(nullptr), _index(index), _owned(false) {}
    explicit ValueKey(char const* text) : _text(text != nullptr ? text : ""), _index(-1), _owned(false) {}
    ValueKey(ValueKey const& other) : _text(Duplicate(other._text)), _index(other._index), _owned(true) {}
    ~ValueKey() {
        if (_owned) {
            delete[] _text;
        }
    }
    ValueKey& operator=(ValueKey const&) = delete;

    // Null for an index.
    char const* Text() const { return _text; }
    // -1 for a text.
    int Index() const { return _index; }

    bool operator<(ValueKey const& other) const {
        return HasTexts(other) ? std::strcmp(_text, other._text) < 0 : _index < other._index;
    }
    bool operator==(ValueKey const& other) const {
        return HasTexts(other) ? std::strcmp(_text, other._text) == 0 : _index == other._index;
    }

    static char* Duplicate(char const* text) {
        if (text == nullptr) {
            return nullptr;
        }
        size_t const size = std::strlen(text) + 1;
        return static_cast<char*>(std::memcpy(new char[size], text, size));
    }

private:
    bool HasTexts(ValueKey const& other) const { return _text != nullptr && other._text != nullptr; }

    char const* _text;
    int _index;
    bool _owned;
};

struct ValueMap : ContainerContent {
    using Entries = std::map<ValueKey, Value>;

    Entries entries;

    // The entry, made as a null value if there is none.
    Value& At(ValueKey const& key) { return entries.try_emplace(key, Value::Null).first->second; }

    Value const& Find(ValueKey const& key) const {
        auto const found = entries.find(key);
        return found != entries.end() ? found->second : Value::Null;
    }
};

// A null value for who may write to it where no entry is. One a thread, emptied at each call; what a thread
// leaves in it when it ends isn't given back.
Value& ScratchValue();

}  // namespace Ubrix
