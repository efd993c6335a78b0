/// @file
/// Every C function of VelmorCore. Valid C11 and C++; the only header that a managed binding needs.
///
/// Texts are zero-terminated bytes, without a known encoding unless a comment says so. Functions may be
/// called on any thread, before, during and after a release, and from any callback, unless a comment says
/// otherwise. None throws: without memory a function answers neutrally, with null, false or the default, and
/// a setter keeps what was set before. No exception may leave a callback. The library is ready when it is
/// loaded.
#ifndef VELMORCORE_VELMORCORE_H
#define VELMORCORE_VELMORCORE_H

#include <VelmorCore/Export.h>

#ifdef __cplusplus
#include <cstdint>
namespace Ubrix {
class IVelmorCore;
enum ANetworkState : int;
}  // namespace Ubrix
namespace Velmor {
class IConfigFile;
enum ALogPriority : int;
}  // namespace Velmor
/// The core object; in C known by its pointer only.
typedef Ubrix::IVelmorCore VelmorCoreObject;
/// A config file; in C known by its pointer only.
typedef Velmor::IConfigFile VelmorCoreConfigFile;
/// A log level: 0 Debug, 1 Info, 2 Warning, 3 Event, 4 Error, 5 None.
typedef Velmor::ALogPriority VelmorCoreLogPriority;
/// The network's state: 0 no network, 1 network up.
typedef Ubrix::ANetworkState VelmorCoreNetworkState;
extern "C" {
#else
#include <stdbool.h>
#include <stdint.h>
/// The core object; in C known by its pointer only.
typedef struct VelmorCoreObject VelmorCoreObject;
/// A config file; in C known by its pointer only.
typedef struct VelmorCoreConfigFile VelmorCoreConfigFile;
/// 0 Debug, 1 Info, 2 Warning, 3 Event, 4 Error, 5 None.
typedef int VelmorCoreLogPriority;
/// 0 no network, 1 network up.
typedef int VelmorCoreNetworkState;
#endif

// ---- Core ----

/// Gives the core object, made at the first call. The library owns it; the pointer stays valid over a
/// release.
VELMORCORE_API VelmorCoreObject* velmorcore_getInstance(void);
/// Makes the core if need be. Always 0. Fetches nothing.
VELMORCORE_API int velmorcore_init(void);
/// Takes the core and all services down, in order, on the calling thread. It waits for no transfer, no
/// operation of the pool and no upload, but for an observer, a listener or a callback of the bridge that is
/// running on another thread. It forgets the network's observers and callback, the observers of the
/// configuration but those of module views, and the callbacks of the bridge; the log callback, module views
/// and config files stay. Harmless without a core, and while another call of it is under way, on whichever
/// thread: it returns at once then. The core may be made again afterwards.
VELMORCORE_API void velmorcore_releaseInstance(void);
/// Makes the core if need be and sets the log level, as VelmorCore_SetUbrixLogLevel.
VELMORCORE_API void velmorcore_setLogLevel(int level);

/// Sets the log level, as VelmorCore_SetUbrixLogLevel, if `module` is exactly "VelmorCore"; any other name,
/// or null, is ignored.
VELMORCORE_API void VelmorSDKLog_setLogLevel(char const* module, int level);
/// Sets the log level, as VelmorCore_SetUbrixLogLevel.
VELMORCORE_API void VelmorSDKLog_setAllLogLevel(int level);

// ---- Logging ----

/// Receives each finished line, on the logging thread. No line feed is added; a message that ends in one of
/// its own, as three of the library's do, keeps it. `line` is valid during the call only. A callback may
/// call every function of the library. What it logs itself reaches it inside that call. Lines of other
/// threads wait for its end, unless it waits inside the library; so it must not wait in code of the host's
/// own for a thread that logs.
typedef void (*VelmorCoreLogCallback)(VelmorCoreLogPriority level, char const* line);

/// Sets the log level: messages below it are dropped. A valid "LogLevel" in section "VelmorCore" of the
/// remote configuration's cache, also of an earlier run's, takes the place of `level` at each such call;
/// without a call a new one has no effect before the next start.
VELMORCORE_API void VelmorCore_SetUbrixLogLevel(VelmorCoreLogPriority level);
/// Replaces the callback; null clears it. A call that is running on another thread may still end afterwards.
VELMORCORE_API void VelmorCore_SetUbrixLogCallback(VelmorCoreLogCallback callback);
/// Logs `msg` as it stands: nothing in it is read as a format. `file` and `func` must not be null; a null
/// `msg` is ignored.
VELMORCORE_API void VelmorCore_XLog(VelmorCoreLogPriority level, char const* file, unsigned int line,
                                    char const* func, char const* msg);

// ---- Config files ----

/// Gives the kit's own config file, made at the first call. The library owns it: don't delete it.
VELMORCORE_API VelmorCoreConfigFile* VelmorCore_GetDefaultHandler(void);
/// A config file of the name `name` in the cache directory; null and "Velmor" name the kit's own. The caller
/// owns it; objects of one name share one file. A name is one of a file that every system can have: up
/// to 200 bytes, none of / \ < > : " | ? * = or a control character, no "[", "#" or blank at the beginning,
/// not "." or "..", no device of Windows ("NUL", "com1.x"), and neither "RemoteConfig" nor
/// "Velmor" in other letters. For any other the library logs an Error line and gives a file that stores
/// nothing: writes answer false, reads the default. Use one spelling for a file: on this system names that
/// differ in case are two files.
VELMORCORE_API VelmorCoreConfigFile* VelmorCore_NewConfigFile(char const* name);
/// Saves and deletes `*file` and stores null in it; its file is closed with the last object on it. A null
/// `file` or `*file` is ignored.
VELMORCORE_API void VelmorCore_DeleteConfigFile(VelmorCoreConfigFile** file);

// ---- Remote configuration ----

/// Sets the server's base URL ("https://host", without the path), keeps it for later runs, and fetches once
/// in the background. Nothing refreshes later by itself but for Configure::Start, retries and the network's
/// return. True, but without memory; a null `url` changes nothing.
VELMORCORE_API bool velmorcore_configure_seturl(char const* url);
/// Forgets the URL and empties the cache. True, but without memory.
VELMORCORE_API bool velmorcore_configure_clear(void);

// These read the game's own section of the cache: the one named by the game id, which is the empty name on
// this platform. They answer at any time, also from the cache of an earlier run.

/// Reads an integer of 32 bits; an absent or null key gives the default.
VELMORCORE_API int ubrix_remoteconfig_GetInt(char const* key, int defaultValue);
/// Reads an integer of 64 bits; an absent or null key gives the default.
VELMORCORE_API int64_t ubrix_remoteconfig_GetLong(char const* key, int64_t defaultValue);
/// Reads a real; an absent or null key, or a text that is no number, gives the default.
VELMORCORE_API double ubrix_remoteconfig_GetDouble(char const* key, double defaultValue);
/// Reads a bool: true for "TRUE" in any case and for 1; an absent or null key, or an empty text, gives the
/// default.
VELMORCORE_API bool ubrix_remoteconfig_GetBool(char const* key, bool defaultValue);
/// Copies a text and its terminator into `value`, which has room for `size` bytes; an absent key copies the
/// default. False, with `value` as it was, if it doesn't fit, and for a null key or `value`. A text of the
/// server's that looks like a real comes back with six decimals: "1.10" as "1.100000".
VELMORCORE_API bool ubrix_remoteconfig_GetString(char const* key, char* value, int size,
                                                 char const* defaultValue);

// ---- The host's update: the thread that calls it is the one that queued calls run on. ----

/// From now on, for the rest of the process, calls for the game's thread wait for ubrix_target_unity_update.
/// Without this call none is ever delivered, and what is posted before it is lost: call it once, ahead of
/// all other functions.
VELMORCORE_API void ubrix_target_unity_enable_ui_update(void);
/// Runs at most 20 waiting calls on the calling thread; call it once a frame, always on the same thread.
VELMORCORE_API void ubrix_target_unity_update(void);

// ---- Managed bridge: native objects that are paired with managed ones by a number. ----

// Native objects call these, on their own thread: with the object's id, then words of the size of an address,
// whose meaning the two classes settle between them. They are never called with a lock of the library held,
// and may call any function here.

/// A callback with one word.
typedef void (*VelmorCoreSendCallback1)(int64_t objectId, intptr_t first);
/// A callback with two words.
typedef void (*VelmorCoreSendCallback2)(int64_t objectId, intptr_t first, intptr_t second);
/// A callback with three words.
typedef void (*VelmorCoreSendCallback3)(int64_t objectId, intptr_t first, intptr_t second, intptr_t third);
/// A callback with four words.
typedef void (*VelmorCoreSendCallback4)(int64_t objectId, intptr_t first, intptr_t second, intptr_t third,
                                        intptr_t fourth);
/// A callback with five words.
typedef void (*VelmorCoreSendCallback5)(int64_t objectId, intptr_t first, intptr_t second, intptr_t third,
                                        intptr_t fourth, intptr_t fifth);

/// Makes the native objects of a class: those that are known as `className` itself, with ".REQ" and with
/// ".RESP" behind it; each keeps the id. True if there was one of the latter two. False, and nothing is made,
/// for a null, empty or unknown name; the library by itself knows none. Use an id once: the objects that have
/// it already are neither found nor deleted any more.
VELMORCORE_API bool addPlatformObject(int64_t objectId, char const* className);
/// Deletes the ".REQ" and ".RESP" objects of this id; the one of the name itself stays until the core is
/// released. An unknown id does nothing. Don't remove an object while it works on another thread.
VELMORCORE_API void removePlatformObject(int64_t objectId);

// Each setter replaces one callback; null clears it. Once it has returned, the earlier callback isn't called
// any more: a call of it that runs on another thread is waited for, so don't hold what that call waits for.
// Inside a callback of the bridge nothing is waited for. The release of the core clears all ten in the same
// way.

/// Sets what takes a message: two words.
VELMORCORE_API void setSarnetSendMessageCallback(VelmorCoreSendCallback2 callback);
/// Sets what takes a structure: two words.
VELMORCORE_API void setSarnetSendStructCallback(VelmorCoreSendCallback2 callback);
/// Sets what takes a result: two words.
VELMORCORE_API void setSarnetSendResultCallback(VelmorCoreSendCallback2 callback);
/// Sets what takes a result with a structure: three words.
VELMORCORE_API void setSarnetSendResultStructCallback(VelmorCoreSendCallback3 callback);
/// Sets what takes a buffer: three words.
VELMORCORE_API void setSarnetSendBufferCallback(VelmorCoreSendCallback3 callback);
/// Sets what takes a result with a buffer: four words.
VELMORCORE_API void setSarnetSendResultBufferCallback(VelmorCoreSendCallback4 callback);
/// Sets what takes a result with a structure and a buffer: five words.
VELMORCORE_API void setSarnetSendResultStructBufferCallback(VelmorCoreSendCallback5 callback);
/// Sets what takes a call of a method without parameters: one word.
VELMORCORE_API void setSarnetSendVoidMethodCallback(VelmorCoreSendCallback1 callback);
/// Sets what takes a call of a method with a parameter: two words.
VELMORCORE_API void setSarnetSendVoidMethodParamCallback(VelmorCoreSendCallback2 callback);
/// Sets what takes a call of a method with a buffer: three words.
VELMORCORE_API void setSarnetSendVoidMethodBufferCallback(VelmorCoreSendCallback3 callback);

// ---- Network ----

/// Hears of a change of the network's state, on the thread of the host's update.
typedef void (*VelmorCoreNetworkCallback)(VelmorCoreNetworkState state);

/// The present state; always 1 on this platform.
VELMORCORE_API VelmorCoreNetworkState ubrix_network_GetNetworkState(void);
/// Encodes the detailed record into `buffer`: two 4-byte big-endian integers (state, detail) and four texts,
/// each a 4-byte big-endian length and its bytes. No terminator is added. False, with a log line, if `size`
/// isn't above the encoded length.
VELMORCORE_API bool ubrix_network_GetDetailNetworkInfo(char* buffer, int size);
/// Replaces the callback, which runs in the host's update behind the network's observers; null clears it,
/// and so does a release of the core. On this platform nothing reports changes by itself.
VELMORCORE_API void ubrix_network_SetNetworkChangedCallback(VelmorCoreNetworkCallback callback);

// ---- Device ----

/// Copies the device id (36 characters) and its terminator into `buffer`, and fills the rest of the `size`
/// bytes with zeros. The first call reads, and on a device without an id writes, a file. False, with
/// `buffer` as it was, if it doesn't fit or there is no id.
VELMORCORE_API bool Ubrix_system_GetUUID(char* buffer, int size);
/// Always false: there is no advertising id.
VELMORCORE_API bool Ubrix_system_GetIDFA(void);
/// Always false: it isn't looked for.
VELMORCORE_API bool Ubrix_system_IsDeviceRooted(void);
/// Deprecated: always -1, with a log line.
VELMORCORE_API int Ubrix_system_CheckPermission(int permission);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // VELMORCORE_VELMORCORE_H
