// The three managers of the bridge, and what the managed side asks of them.
#pragma once

#include <memory>

#include "System/PlatformObject/CPlatformObjectManager.h"

namespace Ubrix {

// Which objects a manager keeps: those of the class name itself, with ".REQ" behind it, or with ".RESP".
enum class PlatformObjectRole { Main, Request, Response };

// The manager of a role, made at first use. Its callers share it, so that a release on another thread takes
// nothing from under them; the objects of one that was released meanwhile go with its last user. Any thread.
std::shared_ptr<CPlatformObjectManager> PlatformObjectManager(PlatformObjectRole role);

// Makes an object of each role whose class name is known, gives it the id and puts it into its manager. True
// if one was made for a request or a response. Nothing, and false, for a null or empty name. What the
// registry gives that is no CPlatformObject counts as none and isn't deleted. Any thread.
bool AddPlatformObject(long long objectId, char const* className);
// Removes the objects with this id from the request and the response manager; the main one keeps its own
// until the core is released. Any thread.
void RemovePlatformObject(long long objectId);

// Destroys all objects, then the managers, each time main, request, response. A later use makes new managers.
void ReleasePlatformObjects();

}  // namespace Ubrix
