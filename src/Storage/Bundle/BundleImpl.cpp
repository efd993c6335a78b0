#include "Storage/Bundle/BundleImpl.h"

#include <VelmorCore/Value.h>

#include <cstring>

#include "Base/Ubrix/CoreParameters.h"
#include "Platform/MemoryWant.h"
#include "Storage/Bundle/PlatformMetadata.h"
#include "Storage/File/IniText.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

using Platform::WithoutThrow;

namespace {

char const kSetFunction[] = "Ubrix::BundleImpl::Set";
char const kSeparator[] = ",";

AString KitSection() {
    return CoreParameters::Get(CoreParameters::Field::KitName);
}

// The section's name in the platform's metadata.
AString MetadataSection(char const* section) {
    bool const isGame = section != nullptr && GameId() == AString(section);
    return isGame ? AString("VelmorGame") : AString(section);
}

template <typename T>
auto Read(IniBundle& ini, char const* section, char const* key, T defaultValue) {
    bool found = false;
    auto const value = ini.Get(section, key, defaultValue, &found);
    return found ? value : PlatformMetadata::Get(MetadataSection(section).CString(), key, defaultValue);
}

template <typename T>
auto ReadOfKit(IniBundle& ini, char const* key, T defaultValue) {
    AString const section = KitSection();
    bool found = false;
    auto const value = ini.Get(section.CString(), key, defaultValue, &found);
    return found ? value : PlatformMetadata::Get(section.CString(), key, defaultValue);
}

AString JoinElements(Value const& array) {
    AString text;
    ValueConstIterator const end = array.end();
    for (ValueConstIterator element = array.begin(); element != end; ++element) {
        if (element != array.begin()) {
            text += kSeparator;
        }
        text += (*element).asString();
    }
    return text;
}

Value TypedValue(AString const& text) {
    if (!text.IsNumberic()) {
        return Value(text.CString());
    }
    return text.IsReal() ? Value(text.AsDouble()) : Value(text.AsInt64());
}

// Cuts a text into the pieces that an array was joined from; fewer than two mean that it was none.
void SplitText(AString const& text, AArray& pieces) {
    AString::Split(&pieces, text.CString(), kSeparator);
}

void AssignPieces(AArray const& pieces, Value& array) {
    for (int i = 0; i < pieces.Count(); ++i) {
        array[i] = Value::Text(pieces.CStringAtIndex(i));
    }
}

}  // namespace

BundleImpl::BundleImpl() : _ini(std::make_unique<IniBundle>()) {}

BundleImpl::BundleImpl(char const* path) : _ini(std::make_unique<IniBundle>(path)) {}

BundleImpl::BundleImpl(IniBundle::WithoutFile without) : _ini(std::make_unique<IniBundle>(without)) {}

BundleImpl::~BundleImpl() = default;

bool BundleImpl::Set(char const* section, Value const& values) {
    return WithoutThrow([&] {
        if (values.isNull()) {
            VC_LOG(Info, kSetFunction, "value is null");
            return true;
        }
        if (!values.isObject()) {
            VC_LOG(Error, kSetFunction, "Value is not Object type");
            return false;
        }
        if (section != nullptr && !IniText::CanBeSection(section)) {
            VC_LOG(Error, kSetFunction, "no line can hold the section [%s]: refused",
                   ForeignText(section).c_str());
            return false;
        }
        bool stored = true;
        ValueConstIterator const end = values.end();
        for (ValueConstIterator member = values.begin(); member != end; ++member) {
            Value const& value = *member;
            if (value.isObject()) {
                VC_LOG(Error, kSetFunction, "Bundle unsupport Object type");
                continue;
            }
            AString const text = value.isArray() ? JoinElements(value) : value.asString();
            stored = Set(section, member.memberName(), text.CString()) && stored;
        }
        return stored;
    });
}

bool BundleImpl::Set(Value const& sections) {
    return WithoutThrow([&] {
        if (!sections.isObject()) {
            VC_LOG(Error, kSetFunction, "Value is not Object type");
            return false;
        }
        bool stored = true;
        ValueConstIterator const end = sections.end();
        for (ValueConstIterator member = sections.begin(); member != end; ++member) {
            if ((*member).isObject()) {
                stored = Set(member.memberName(), *member) && stored;
            } else {
                VC_LOG(Error, kSetFunction, "Value is not Object type");
            }
        }
        return stored;
    });
}

bool BundleImpl::Set(char const* key, bool value) {
    return WithoutThrow([&] { return Set(KitSection().CString(), key, value); });
}

bool BundleImpl::Set(char const* key, char const* value) {
    return WithoutThrow([&] { return Set(KitSection().CString(), key, value); });
}

bool BundleImpl::Set(char const* key, long long value) {
    return WithoutThrow([&] { return Set(KitSection().CString(), key, value); });
}

bool BundleImpl::Set(char const* key, int value) {
    return WithoutThrow([&] { return Set(KitSection().CString(), key, value); });
}

bool BundleImpl::Set(char const* section, char const* key, bool value) {
    return WithoutThrow([&] { return _ini->Set(section, key, value); });
}

bool BundleImpl::Set(char const* section, char const* key, char const* value) {
    return WithoutThrow([&] { return _ini->Set(section, key, value); });
}

bool BundleImpl::Set(char const* section, char const* key, long long value) {
    return WithoutThrow([&] { return _ini->Set(section, key, value); });
}

bool BundleImpl::Set(char const* section, char const* key, int value) {
    return WithoutThrow([&] { return _ini->Set(section, key, value); });
}

bool BundleImpl::Get(char const* section, char const* key, Value& value) {
    return WithoutThrow([&] {
        if (key == nullptr) {
            return false;
        }
        AString const text = Get(section, key, "");
        if (text.Empty()) {
            return false;
        }
        AArray pieces;
        SplitText(text, pieces);
        bool const isList = pieces.Count() >= 2;
        // Whoever wrote the text decides which of both it is, not who reads it.
        if (!value.isNull() && !(isList ? value.isArray() : value.isObject())) {
            return false;
        }
        if (isList) {
            AssignPieces(pieces, value);
        } else {
            value[key] = TypedValue(text);
        }
        return true;
    });
}

bool BundleImpl::Get(char const* section, Value& values) {
    return WithoutThrow([&] {
        if (section == nullptr || !(values.isNull() || values.isObject())) {
            return false;
        }
        AArray keys;
        GetKeys(section, &keys);
        for (int i = 0; i < keys.Count(); ++i) {
            char const* key = keys.CStringAtIndex(i);
            AString const text = Get(section, key, "");
            AArray pieces;
            SplitText(text, pieces);
            if (pieces.Count() >= 2) {
                values[key] = Value(ArrayValue);
                AssignPieces(pieces, values[key]);
            } else if (!text.Empty()) {
                values[key] = TypedValue(text);
            }
        }
        return keys.Count() > 0;
    });
}

bool BundleImpl::Get(char const* key, bool defaultValue) {
    return WithoutThrow([&] { return ReadOfKit(*_ini, key, defaultValue); }, [&] { return defaultValue; });
}

AString BundleImpl::Get(char const* key, char const* defaultValue) {
    return WithoutThrow([&] { return ReadOfKit(*_ini, key, defaultValue); },
                        [&] { return AString(defaultValue); });
}

int BundleImpl::Get(char const* key, int defaultValue) {
    return WithoutThrow([&] { return ReadOfKit(*_ini, key, defaultValue); }, [&] { return defaultValue; });
}

long long BundleImpl::Get(char const* key, long long defaultValue) {
    return WithoutThrow([&] { return ReadOfKit(*_ini, key, defaultValue); }, [&] { return defaultValue; });
}

bool BundleImpl::Get(char const* section, char const* key, bool defaultValue) {
    return WithoutThrow([&] { return Read(*_ini, section, key, defaultValue); },
                        [&] { return defaultValue; });
}

AString BundleImpl::Get(char const* section, char const* key, char const* defaultValue) {
    return WithoutThrow([&] { return Read(*_ini, section, key, defaultValue); },
                        [&] { return AString(defaultValue); });
}

int BundleImpl::Get(char const* section, char const* key, int defaultValue) {
    return WithoutThrow([&] { return Read(*_ini, section, key, defaultValue); },
                        [&] { return defaultValue; });
}

long long BundleImpl::Get(char const* section, char const* key, long long defaultValue) {
    return WithoutThrow([&] { return Read(*_ini, section, key, defaultValue); },
                        [&] { return defaultValue; });
}

bool BundleImpl::RemoveSection(char const* section) {
    return WithoutThrow([&] { return _ini->RemoveSection(section); });
}

bool BundleImpl::RemoveKey(char const* section, char const* key) {
    return WithoutThrow([&] { return _ini->RemoveKey(section, key); });
}

void BundleImpl::GetKeys(char const* section, AArray* keys) {
    WithoutThrow([&] {
        if (keys == nullptr) {
            return;
        }
        int const before = keys->Count();
        _ini->GetKeys(section, keys);
        if (keys->Count() == before) {
            PlatformMetadata::GetKeys(section, keys);
        }
    });
}

bool BundleImpl::HasKey(char const* section, char const* key) {
    return WithoutThrow([&] { return _ini->HasKey(section, key); });
}

bool BundleImpl::Clear() {
    return WithoutThrow([&] { return _ini->Clear(); });
}

bool BundleImpl::Save() {
    return WithoutThrow([&] { return _ini->Save(); });
}

bool BundleImpl::SetNoSave(char const* section, char const* key, bool value) {
    return WithoutThrow([&] { return _ini->SetNoSave(section, key, value); });
}

bool BundleImpl::SetNoSave(char const* section, char const* key, char const* value) {
    return WithoutThrow([&] { return _ini->SetNoSave(section, key, value); });
}

bool BundleImpl::SetNoSave(char const* section, char const* key, long long value) {
    return WithoutThrow([&] { return _ini->SetNoSave(section, key, value); });
}

bool BundleImpl::SetNoSave(char const* section, char const* key, int value) {
    return WithoutThrow([&] { return _ini->SetNoSave(section, key, value); });
}

bool BundleImpl::RemoveSectionNoSave(char const* section) {
    return WithoutThrow([&] { return _ini->RemoveSectionNoSave(section); });
}

bool BundleImpl::ClearNoSave() {
    return WithoutThrow([&] { return _ini->ClearNoSave(); });
}

void BundleImpl::Replace(IniLines& lines) {
    _ini->Swap(lines);
    _ini->Save();
}

bool BundleImpl::RemoveKeyNoSave(char const* section, char const* key) {
    return WithoutThrow([&] { return _ini->RemoveKeyNoSave(section, key); });
}

}  // namespace Ubrix
