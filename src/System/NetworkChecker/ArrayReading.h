// Arrays whose elements are all of one class.
#pragma once

#include <VelmorCore/Buffer.h>

#include <memory>

namespace Ubrix {

// Reads a number of elements and so many elements in place of the array's content. If the bytes end with the
// number or before, the array stays as it was; if they end among the elements, the array ends there too, so
// that a false number costs nothing. `Element` takes at least one byte.
template <class Element>
void ReadArray(CSarnetBufferReader& reader, AArray& array) {
    int count = 0;
    reader.Read(count);
    if (reader.AtEnd()) {
        return;
    }
    array.RemoveAll();
    for (int i = 0; i < count && !reader.AtEnd(); ++i) {
        auto element = std::make_unique<Element>();
        reader.Read(*element);
        array.Add(element.get(), true);
        static_cast<void>(element.release());
    }
}

}  // namespace Ubrix
