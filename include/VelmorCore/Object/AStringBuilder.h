/// @file
/// Text that is put together from pieces. What holds for all classes of the object model is told in Object.h.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object/AData.h>
#include <VelmorCore/Object/AObject.h>

namespace Ubrix {

class AString;

/// Text that is put together from pieces.
class VELMORCORE_API AStringBuilder : public AObject {
public:
    /// Begins without text.
    AStringBuilder();
    /// Begins with the text; null gives an empty one.
    explicit AStringBuilder(char const* text);
    /// Begins with the string's text.
    explicit AStringBuilder(AString const& text);
    /// Begins with the string's text; null gives an empty one.
    explicit AStringBuilder(AString const* text);
    /// Begins with the builder's text; null gives an empty one.
    explicit AStringBuilder(AStringBuilder const* other);
    /// Copies the text, and the ownership mark too, as the root does.
    AStringBuilder(AStringBuilder const& other);
    ~AStringBuilder() override;

    /// Adds the text; null adds nothing.
    void Append(char const* text);
    /// Adds the string's text.
    void Append(AString const& text);
    /// Adds the string's text; null adds nothing.
    void Append(AString const* text);
    /// Adds the text, and gives this builder; null adds nothing.
    AStringBuilder& operator+=(char const* text);
    /// Adds the string's text, and gives this builder.
    AStringBuilder& operator+=(AString const& text);
    /// Takes the text in place of the content.
    AStringBuilder& operator=(char const* text);
    /// Takes the string's text in place of the content.
    AStringBuilder& operator=(AString const& text);
    /// Takes the builder's text in place of the content.
    AStringBuilder& operator=(AStringBuilder const& other);
    /// Empties the builder.
    void Clear();

    /// The text itself, terminated, valid until the next change. Null if the builder has no block, as one
    /// that took over an empty builder.
    char const* ToString() const;

    /// True for a builder with the same text, up to the first zero byte.
    bool IsEqual(AObject const* other) const override;
    /// Copies the text into a new builder.
    AObject* Clone() const override;

private:
    AData _data;
};

}  // namespace Ubrix
