#include <VelmorCore/Target.h>

#include "System/Thread/CSelectorManager.h"

namespace Ubrix {

CTargetBase::CTargetBase(bool ownCollection) {
    SetOwnCollection(ownCollection);
}

CTargetBase::~CTargetBase() {
    SetOwnCollection(false);
}

void CTargetBase::SetOwnCollection(bool own) {
    if (!own) {
        delete _collection;
        _collection = nullptr;
    } else if (_collection == nullptr) {
        _collection = new CSelectorManager;
    }
}

void CTargetBase::RunOwnSelectors() {
    if (_collection != nullptr) {
        _collection->RunSelectors();
    }
}

ISelectorCollection* CTargetBase::OwnCollection() const {
    return _collection;
}

}  // namespace Ubrix
