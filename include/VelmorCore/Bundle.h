/// @file
/// Bundles: persistent key/value stores in sections, with typed access.
///
/// A bundle lives on one file, enciphered, readable by this user only. A value is kept as text, whatever type
/// wrote it: a number reads back as a text and a text that holds a number as a number. In the file a "#" ends
/// a value, blanks at its ends are lost, and an empty one is absent: such a value is stored after a Warning
/// line, one a key for the first 64 keys of a bundle.
///
/// Behind each bundle stand read-only values that a platform attaches to the application package. A key that
/// isn't in the file is looked up there before the caller's default answers. On this platform there are none.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object.h>

namespace Ubrix {

class Value;

/// Section, key and text are zero-terminated bytes. A null section or key makes a Set answer false and a Get
/// answer its default. The forms without a section use the section that bears the kit's name. A Set of what a
/// line of the file can't hold answers false after an Error line and changes nothing: a line end in any of
/// the three, a "]" in a section, an "=" in a key or a "[" or "#" at its beginning, blanks at the ends of
/// either.
///
/// Every operation may be called on any thread. Writes by several threads all take effect, in some order. One
/// thing is told in the log only: a save that the disk refuses answers true, leaves the file as it was and
/// the values in memory for the next save.
///
/// Each Set or Remove that saves writes two files anew and makes a cryptographic key: milliseconds. For many
/// values use the NoSave forms and one Save.
class VELMORCORE_API Bundle {
public:
    virtual ~Bundle() = default;
    Bundle(Bundle const&) = delete;
    Bundle& operator=(Bundle const&) = delete;

    /// Stores the members of an object as keys of one section, saving each: an array as its elements' texts
    /// joined by ",", anything else as its text. A member that is an object is refused with an Error line,
    /// and the rest still stored. False if a member couldn't be stored for another reason; the rest are. True
    /// for a null value, which stores nothing; false after an Error line for any other that isn't an object.
    virtual bool Set(char const* section, Value const& values) = 0;
    /// Stores an object of objects, section by section. Members that aren't objects are refused with an Error
    /// line. False after an Error line if `sections` isn't an object, and as above.
    virtual bool Set(Value const& sections) = 0;
    /// Stores a bool in the kit's own section, as 1 or 0, and saves.
    virtual bool Set(char const* key, bool value) = 0;
    /// Stores a text in the kit's own section, and saves.
    virtual bool Set(char const* key, char const* value) = 0;
    /// Stores a 64-bit number in the kit's own section, and saves.
    virtual bool Set(char const* key, long long value) = 0;
    /// Stores a 32-bit number in the kit's own section, and saves.
    virtual bool Set(char const* key, int value) = 0;
    /// Stores a bool, as 1 or 0, and saves.
    virtual bool Set(char const* section, char const* key, bool value) = 0;
    /// Stores a text, and saves.
    virtual bool Set(char const* section, char const* key, char const* value) = 0;
    /// Stores a 64-bit number, and saves.
    virtual bool Set(char const* section, char const* key, long long value) = 0;
    /// Stores a 32-bit number, and saves.
    virtual bool Set(char const* section, char const* key, int value) = 0;

    /// Reads one key. A text without "," goes into the member `key` of `value`: a number as a 64-bit integer
    /// or a double, anything else as a string. A text with "," goes into the elements of `value` itself, each
    /// a string. False, with `value` unchanged, if it is neither null nor of the kind that the text needs, if
    /// the text is empty, or if the key is null.
    virtual bool Get(char const* section, char const* key, Value& value) = 0;
    /// Reads a section: each key into a member of `values`, a text with "," as an array of strings. False if
    /// the section is null or has no keys, or if `values` is neither null nor an object.
    virtual bool Get(char const* section, Value& values) = 0;
    /// Reads a bool of the kit's own section: "TRUE" in any case and 1 are true, an empty text is the
    /// default, anything else false.
    virtual bool Get(char const* key, bool defaultValue) = 0;
    /// Reads a text of the kit's own section. A null default gives an empty text.
    virtual AString Get(char const* key, char const* defaultValue) = 0;
    /// Reads a 32-bit number of the kit's own section: the decimal number at the text's beginning, 0 without
    /// one, the bound if it is out of range.
    virtual int Get(char const* key, int defaultValue) = 0;
    /// Reads a 64-bit number of the kit's own section, by the rules of the 32-bit form.
    virtual long long Get(char const* key, long long defaultValue) = 0;
    /// Reads a bool, by the rules of the kit's own section.
    virtual bool Get(char const* section, char const* key, bool defaultValue) = 0;
    /// Reads a text. A null default gives an empty text.
    virtual AString Get(char const* section, char const* key, char const* defaultValue) = 0;
    /// Reads a 32-bit number, by the rules of the kit's own section.
    virtual int Get(char const* section, char const* key, int defaultValue) = 0;
    /// Reads a 64-bit number, by the rules of the kit's own section.
    virtual long long Get(char const* section, char const* key, long long defaultValue) = 0;

    /// Removes a section with its keys, and saves. False if there is no such section.
    virtual bool RemoveSection(char const* section) = 0;
    /// Removes a key, and saves. False if there is no such section or key; true, with nothing done, in a
    /// bundle without a file.
    virtual bool RemoveKey(char const* section, char const* key) = 0;
    /// Adds the names of a section's keys to `keys`, as strings, in the order of the file.
    virtual void GetKeys(char const* section, AArray* keys) = 0;
    /// True if a line behind the section's first header begins with `key`: a longer key, and one of a section
    /// further on in the file, count as well.
    virtual bool HasKey(char const* section, char const* key) = 0;
    /// Removes everything, and saves. False in a bundle without a file.
    virtual bool Clear() = 0;

    /// Writes what was set without saving. True, also where the disk refuses; false in a bundle without a
    /// file.
    virtual bool Save() = 0;
    /// Stores a bool, as 1 or 0, in memory only.
    virtual bool SetNoSave(char const* section, char const* key, bool value) = 0;
    /// Stores a text in memory only.
    virtual bool SetNoSave(char const* section, char const* key, char const* value) = 0;
    /// Stores a 64-bit number in memory only.
    virtual bool SetNoSave(char const* section, char const* key, long long value) = 0;
    /// Stores a 32-bit number in memory only.
    virtual bool SetNoSave(char const* section, char const* key, int value) = 0;
    /// Removes a section as RemoveSection does, in memory only.
    virtual bool RemoveSectionNoSave(char const* section) = 0;
    /// Removes everything, in memory only. False in a bundle without a file.
    virtual bool ClearNoSave() = 0;
    /// Removes a key as RemoveKey does, in memory only.
    virtual bool RemoveKeyNoSave(char const* section, char const* key) = 0;

    /// Reads the platform's own value, past the file; on this platform there is none, and the default
    /// answers.
    virtual AString GetMetaString(char const* section, char const* key, char const* defaultValue);

protected:
    Bundle() = default;
};

/// Hands out bundles, and owns them. Every operation may be called on any thread; a bundle's file is read and
/// written with the factory's lock held. A bundle that there is no memory for stores nothing and answers
/// defaults.
class VELMORCORE_API BundleFactory {
public:
    /// The one factory. It is never destroyed.
    static BundleFactory& GetInstance();
    /// As DestoryBundle for every bundle that GetBundle has given. Nobody may use one of them any more.
    static void ReleaseInstance();

    BundleFactory(BundleFactory const&) = delete;
    BundleFactory& operator=(BundleFactory const&) = delete;

    /// The bundle on "Velmor.config" in the cache directory, made at the first call and never deleted.
    Bundle& GetDefaultBundle();
    /// The bundle on the file whose whole path is `name`, made at the first call with that name, and valid
    /// until it is destroyed. Null gives the default bundle after an Error line. An empty name gives, after
    /// an Info line, a bundle without a file: it stores nothing, and its Gets answer the default. So does,
    /// after an Error line, a file name that can't be a key (see above): its cipher key would have no place.
    Bundle& GetBundle(char const* name);
    /// Saves the bundle of that name and deletes it, unless a config file is open on it: then it goes with
    /// the last of those. Null and a name without a bundle do nothing. Callers of GetBundle are counted as
    /// one.
    void DestoryBundle(char const* name);

private:
    BundleFactory() = default;
    ~BundleFactory() = default;
};

}  // namespace Ubrix
