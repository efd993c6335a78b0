#include "Base/Ubrix/CoreParameters.h"

#include <memory>

#include "Platform/Mutex.h"

namespace Ubrix {

namespace {

constexpr int kFieldCount = 6;

struct Record {
    AString fields[kFieldCount];
    Record() { fields[static_cast<int>(CoreParameters::Field::KitName)] = "Velmor"; }
};

// Guards the record. Innermost: nothing is called under it. Never destroyed, since threads may outlive main.
struct Holder {
    Platform::RecursiveMutex lock;
    std::unique_ptr<Record> record VC_GUARDED_BY(lock);
};

Holder& TheHolder() {
    static Holder* const holder = new Holder;
    return *holder;
}

AString& FieldOf(Holder& holder, CoreParameters::Field field) VC_REQUIRES(holder.lock) {
    if (holder.record == nullptr) {
        holder.record = std::make_unique<Record>();
    }
    return holder.record->fields[static_cast<int>(field)];
}

}  // namespace

AString CoreParameters::Get(Field field) {
    Holder& holder = TheHolder();
    Platform::ScopedLock lock(holder.lock);
    return FieldOf(holder, field);
}

void CoreParameters::Set(Field field, AString const& value) {
    Holder& holder = TheHolder();
    Platform::ScopedLock lock(holder.lock);
    FieldOf(holder, field) = value;
}

AString CoreParameters::Fill(Field field, AString const& value) {
    Holder& holder = TheHolder();
    Platform::ScopedLock lock(holder.lock);
    AString& present = FieldOf(holder, field);
    if (present.Empty()) {
        present = value;
    }
    return present;
}

void CoreParameters::Release() {
    Holder& holder = TheHolder();
    Platform::ScopedLock lock(holder.lock);
    holder.record.reset();
}

}  // namespace Ubrix
