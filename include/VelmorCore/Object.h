/// @file
/// The object model: a small family of run-time typed values with one root, so that a container can hold any
/// mix of them, copy them without knowing their class, and compare them.
///
/// - AObject: the root
/// - AData: bytes
/// - AString: text
/// - AStringBuilder: text that grows
/// - ANumber: a number that remembers its kind
/// - AArray: an ordered list of objects
/// - ADictionary: a key/value map of objects
///
/// Text is bytes with no known encoding; every length is an `int` counted in bytes. Bytes and texts that an
/// operation is given may lie in the object itself.
///
/// Nothing here throws. When memory runs out, or a length would pass the range of `int`, the object is as it
/// was before the call, and a constructor leaves an empty one. What gives an answer then gives that of a
/// missing entry: null, an empty text, 0 or false; no operation gives half of a text or of a copy. Clear,
/// RemoveAll, Remove and the destructors never want for memory. What an operation calls of a caller's own
/// class (Clone, IsEqual, WriteTo, ReadFrom) is a part of it: a want of memory in there, met by an operation
/// of this library or thrown as std::bad_alloc, ends the whole operation. Other exceptions pass through.
///
/// Containers nest as deep as they are made. Those nested more than 1,000 deep aren't copied or encoded: the
/// operation ends as with a want of memory. When they go, what lies more than 100 deep goes after what is
/// above it.
///
/// Threads: no class here has a lock or shares state. An instance, with all that a container holds, belongs
/// to one thread at a time. Different instances may be used on different threads.
#pragma once

#include <VelmorCore/Object/AArray.h>
#include <VelmorCore/Object/AData.h>
#include <VelmorCore/Object/ADictionary.h>
#include <VelmorCore/Object/ANumber.h>
#include <VelmorCore/Object/AObject.h>
#include <VelmorCore/Object/AString.h>
#include <VelmorCore/Object/AStringBuilder.h>
