#include "Base/Ubrix/CoreParameters.h"

#include "Base/Ubrix/Service.h"
#include "Platform/Immortal.h"

namespace Ubrix {

namespace {

struct Record {
    AString fields[6];

    Record() { Of(CoreParameters::Field::KitName) = "Velmor"; }
    AString& Of(CoreParameters::Field field) { return fields[static_cast<int>(field)]; }
};

// Innermost: nothing is called under its lock.
Service<Record>& TheRecord() {
    static Platform::Immortal<Service<Record>> record(nullptr);
    return *record;
}

}  // namespace

AString CoreParameters::Get(Field field) {
    return TheRecord().With([field](Record& record) { return record.Of(field); });
}

void CoreParameters::Set(Field field, AString const& value) {
    TheRecord().With([&](Record& record) { record.Of(field) = value; });
}

AString CoreParameters::Fill(Field field, AString const& value) {
    return TheRecord().With([&](Record& record) {
        AString& present = record.Of(field);
        if (present.Empty()) {
            present = value;
        }
        return present;
    });
}

void CoreParameters::Release() {
    TheRecord().Release();
}

}  // namespace Ubrix
