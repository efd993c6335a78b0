#include <VelmorCore/Object.h>

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <string_view>
#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Base/Container/AsText.h"
#include "Base/Container/Nesting.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

using Platform::WithoutThrow;

namespace {

bool IsPlainString(AObject const& object) {
    return typeid(object) == typeid(AString);
}

std::string_view TextOf(AObject const& string) {
    return static_cast<AString const&>(string).c_str();
}

// Whether an AString could be equal to a key of this class only if the key is an AString itself. A class from
// outside may compare itself as it likes.
bool IsOurs(AObject const& key) {
    auto const& type = typeid(key);
    return type == typeid(AString) || type == typeid(ANumber) || type == typeid(AData) ||
           type == typeid(AArray) || type == typeid(ADictionary) || type == typeid(AStringBuilder);
}

}  // namespace

// The map is ordered by the keys' addresses. The index finds a plain string without a walk: it can equal one
// plain string key at most, as long as no key is of a class from outside. The first such key ends it for
// good, since that class may have found plain keys equal that the index tells apart.
struct ADictionary::Body : ContainerContent {
    using Map = std::map<AObject*, AObject*>;

    Map map;
    // A copy of each key, in the order in which they first came in.
    std::vector<AObject*> keys;
    // The plain string keys of `map` by their text, which lies in the key.
    std::unordered_map<std::string_view, AObject*> texts;
    bool isIndexed = true;

    ~Body() override {
        texts.clear();
        for (auto const& entry : map) {
            delete entry.first;
            Release(entry.second);
        }
        for (AObject* key : keys) {
            delete key;
        }
    }

    Map::iterator FindText(std::string_view text) {
        auto const found = texts.find(text);
        return found != texts.end() ? map.find(found->second) : map.end();
    }

    Map::iterator Find(AObject const& probe) {
        if (isIndexed && IsPlainString(probe)) {
            return FindText(TextOf(probe));
        }
        return std::find_if(map.begin(), map.end(),
                            [&probe](Map::value_type const& entry) { return entry.first->IsEqual(&probe); });
    }

    std::vector<AObject*>::iterator FindListed(AObject const& probe) {
        return std::find_if(keys.begin(), keys.end(),
                            [&probe](AObject const* key) { return key->IsEqual(&probe); });
    }

    void Index(AObject* key) {
        if (isIndexed && IsPlainString(*key)) {
            texts.emplace(TextOf(*key), key);
        } else if (isIndexed && !IsOurs(*key)) {
            texts.clear();
            isIndexed = false;
        }
    }

    void Unindex(AObject const& key) {
        if (isIndexed && IsPlainString(key)) {
            texts.erase(TextOf(key));
        }
    }

    // Puts `key` in place of one that is equal to it.
    void Reindex(AObject const& old, AObject* key) {
        if (isIndexed && IsPlainString(old) && IsPlainString(*key)) {
            auto node = texts.extract(TextOf(old));
            node.key() = TextOf(*key);
            node.mapped() = key;
            texts.insert(std::move(node));
        } else {
            Index(key);
            Unindex(old);
        }
    }

    // All that can fail for want of memory comes before the first change.
    void Insert(std::unique_ptr<AObject> key, AObject* value) {
        std::unique_ptr<AObject> listed(key->Clone());
        if (listed == nullptr) {
            throw std::bad_alloc();
        }
        if (keys.size() == keys.capacity()) {
            keys.reserve(keys.size() * 2 + 8);
        }
        Map entry;
        entry.emplace(key.get(), value);
        Index(key.get());
        map.insert(entry.extract(entry.begin()));
        keys.push_back(listed.release());
        static_cast<void>(key.release());
    }

    void Replace(Map::iterator old, std::unique_ptr<AObject> key, AObject* value) {
        Reindex(*old->first, key.get());
        auto node = map.extract(old);
        std::unique_ptr<AObject> const oldKey(node.key());
        AObject* const oldValue = node.mapped();
        node.key() = key.release();
        node.mapped() = value;
        map.insert(std::move(node));
        if (oldValue != value) {
            Release(oldValue);
        }
    }

    static void Release(AObject* value) {
        if (value->IsOwned()) {
            delete value;
        }
    }
};

ADictionary::ADictionary() : AObject(TypeDictionary), _body(nullptr) {}

ADictionary::ADictionary(ADictionary const& other) : ADictionary() {
    Set(other);
}

ADictionary::~ADictionary() {
    RemoveAll();
}

ADictionary& ADictionary::operator=(ADictionary const& other) {
    if (this != &other) {
        Set(other);
    }
    return *this;
}

AObject* ADictionary::Clone() const {
    return WithoutThrow([this]() -> AObject* { return new ADictionary(*this); });
}

ADictionary::Body& ADictionary::Content() {
    if (_body == nullptr) {
        _body = new Body;
    }
    return *_body;
}

void ADictionary::Set(ADictionary const& other) {
    if (this == &other) {
        return;
    }
    WithoutThrow([&] {
        NestingLevel const level;
        NestingLevel::Check();
        // The other dictionary may be a value of this one: copy it before anything goes.
        ADictionary copy;
        if (other._body != nullptr) {
            for (auto const& entry : other._body->map) {
                copy.PutCopy(*entry.first, *entry.second);
            }
        }
        std::swap(_body, copy._body);
    });
}

void ADictionary::PutCopy(AObject const& key, AObject const& value) {
    WithoutThrow([&] {
        std::unique_ptr<AObject> copy(value.Clone());
        if (copy != nullptr) {
            Put(key, copy.get(), true);
            static_cast<void>(copy.release());
        }
    });
}

void ADictionary::Put(AObject const& key, AObject* value, bool owned) {
    WithoutThrow([&] {
        std::unique_ptr<AObject> copy(key.Clone());
        if (copy == nullptr) {
            throw std::bad_alloc();
        }
        copy->_owned = true;
        Body& body = Content();
        auto const old = body.Find(*copy);
        if (old == body.map.end()) {
            body.Insert(std::move(copy), value);
        } else {
            body.Replace(old, std::move(copy), value);
        }
        value->_owned = owned;
    });
}

void ADictionary::Set(AObject const& key, AObject const& value) {
    PutCopy(key, value);
}

void ADictionary::Set(ANumber const& key, AObject const& value) {
    PutCopy(key, value);
}

void ADictionary::Set(ANumber const& key, ANumber const& value) {
    PutCopy(key, value);
}

void ADictionary::Set(char const* key, AObject const& value) {
    if (key != nullptr) {
        WithoutThrow([&] { PutCopy(AString(key), value); });
    }
}

void ADictionary::Set(char const* key, ANumber const& value) {
    if (key != nullptr) {
        WithoutThrow([&] { PutCopy(AString(key), value); });
    }
}

void ADictionary::Set(char const* key, char const* value) {
    if (key != nullptr && value != nullptr) {
        WithoutThrow([&] { PutCopy(AString(key), AString(value)); });
    }
}

void ADictionary::Set(ANumber const& key, char const* value) {
    if (value != nullptr) {
        WithoutThrow([&] { PutCopy(key, AString(value)); });
    }
}

void ADictionary::Set(AObject const& key, AObject* value) {
    if (value != nullptr) {
        Put(key, value, false);
    }
}

void ADictionary::Set(ANumber const& key, AObject* value) {
    Set(static_cast<AObject const&>(key), value);
}

void ADictionary::Set(char const* key, AObject* value) {
    if (key != nullptr) {
        WithoutThrow([&] { Set(static_cast<AObject const&>(AString(key)), value); });
    }
}

void ADictionary::Set(AObject* key, AObject* value) {
    if (key != nullptr) {
        Set(static_cast<AObject const&>(*key), value);
    }
}

AObject* ADictionary::ObjectForKey(AObject const* key) const {
    if (key == nullptr || _body == nullptr) {
        return nullptr;
    }
    auto const entry = _body->Find(*key);
    return entry != _body->map.end() ? entry->second : nullptr;
}

AObject* ADictionary::ObjectForKey(AObject const& key) const {
    return ObjectForKey(&key);
}

AObject* ADictionary::ObjectForKey(ANumber const& key) const {
    return ObjectForKey(&key);
}

AObject* ADictionary::ObjectForKey(char const* key) const {
    if (key == nullptr || _body == nullptr) {
        return nullptr;
    }
    if (_body->isIndexed) {
        auto const entry = _body->FindText(key);
        return entry != _body->map.end() ? entry->second : nullptr;
    }
    return WithoutThrow([&]() -> AObject* {
        AString const probe(key);
        return ObjectForKey(&probe);
    });
}

char const* ADictionary::CStringForKey(AObject const* key) const {
    return AsCString(ObjectForKey(key));
}

char const* ADictionary::CStringForKey(AObject const& key) const {
    return AsCString(ObjectForKey(&key));
}

char const* ADictionary::CStringForKey(ANumber const& key) const {
    return AsCString(ObjectForKey(&key));
}

char const* ADictionary::CStringForKey(char const* key) const {
    return AsCString(ObjectForKey(key));
}

AString const& ADictionary::AStringForKey(AObject const* key) const {
    return AsAString(ObjectForKey(key));
}

AString const& ADictionary::AStringForKey(AObject const& key) const {
    return AsAString(ObjectForKey(&key));
}

AString const& ADictionary::AStringForKey(ANumber const& key) const {
    return AsAString(ObjectForKey(&key));
}

AString const& ADictionary::AStringForKey(char const* key) const {
    // That memory ran out is no slip of the caller.
    return *WithoutThrow([&] { return &AsAString(ObjectForKey(key)); }, [] { return &EmptyString(); });
}

int ADictionary::Count() const {
    return _body != nullptr ? static_cast<int>(_body->keys.size()) : 0;
}

AObject const* ADictionary::KeyAt(int index) const {
    return index >= 0 && index < Count() ? _body->keys[static_cast<size_t>(index)] : nullptr;
}

char const* ADictionary::CStringKeyAt(int index) const {
    return AsCString(KeyAt(index));
}

AString const& ADictionary::AStringKeyAt(int index) const {
    return AsAString(KeyAt(index));
}

void ADictionary::Remove(AObject const* key) {
    if (key == nullptr || _body == nullptr) {
        return;
    }
    auto const place = _body->FindListed(*key);
    if (place == _body->keys.end()) {
        return;
    }
    // Deleted last: the caller's key may be this very one, from KeyAt, or the value.
    std::unique_ptr<AObject> const listed(*place);
    _body->keys.erase(place);
    auto const entry = _body->Find(*key);
    if (entry == _body->map.end()) {
        return;
    }
    std::unique_ptr<AObject> const stored(entry->first);
    AObject* const value = entry->second;
    _body->Unindex(*stored);
    _body->map.erase(entry);
    Body::Release(value);
}

void ADictionary::Remove(ANumber const& key) {
    Remove(&key);
}

void ADictionary::RemoveAll() {
    // Nothing is listed any more when the first of it goes.
    Discard(std::exchange(_body, nullptr));
}

bool ADictionary::IsEqual(AObject const* /*other*/) const {
    return false;
}

}  // namespace Ubrix
