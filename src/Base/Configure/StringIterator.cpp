#include "Base/Configure/StringIterator.h"

namespace Velmor {

void StringIterator::Add(char const* text) {
    _texts.emplace_back(text);
}

char const* StringIterator::Next() {
    return IsEnd() ? nullptr : _texts[_next++].c_str();
}

bool StringIterator::IsEnd() {
    return _next >= _texts.size();
}

}  // namespace Velmor
