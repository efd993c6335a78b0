/// @file
/// The root of the object model. What holds for all of its classes is told in Object.h.
#pragma once

#include <VelmorCore/Export.h>

namespace Ubrix {

class AArray;
class ADictionary;

/// The root: a kind, an ownership mark, and what every object can do.
class VELMORCORE_API AObject {
public:
    /// The run-time kind. The numbers are stored nowhere.
    enum Type : int {
        TypeObject = 0,      ///< AObject itself and each class that sets no kind, AStringBuilder among them
        TypeString = 1,      ///< AString
        TypeNumber = 2,      ///< ANumber
        TypeArray = 3,       ///< AArray
        TypeDictionary = 4,  ///< ADictionary
        TypeData = 5,        ///< AData
    };

    /// Makes an object of kind TypeObject, not owned.
    AObject();
    /// Copies the kind and the ownership mark. Of the classes of the model only AStringBuilder takes the mark
    /// over when it is copied; all others leave it out.
    AObject(AObject const& other);
    /// Copies the kind and the ownership mark, as the constructor does.
    AObject& operator=(AObject const& other);

    /// Containers release what they own by `delete` through AObject*.
    virtual ~AObject();
    /// Whether the two are equal: here, and in each class that says nothing else, whether `other` is this
    /// very object. Null is equal to nothing.
    virtual bool IsEqual(AObject const* other) const;
    /// Gives a new, independent copy, not owned by any container. The caller deletes it. Null if there is
    /// none to be had; a container that asked for it then takes nothing.
    virtual AObject* Clone() const = 0;

    /// The kind, set once by the most derived constructor.
    Type ObjectType() const;
    /// True if the container that holds this object deletes it. False on a new object.
    bool IsOwned() const;

protected:
    /// Makes an object of the kind `type`, not owned.
    explicit AObject(Type type);

private:
    friend class AArray;
    friend class ADictionary;

    Type _type;
    // Containers mark objects that they are given as const, too.
    mutable bool _owned;
};

}  // namespace Ubrix
