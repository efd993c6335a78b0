/// @file
/// HTTP requests: one request a task, its whole answer delivered in memory; and the frame of downloads.
///
/// Every request goes out over TLS, to port 443 of the URL's host whatever port or scheme the URL names,
/// through no proxy, with the server's certificate and name verified. Redirects are followed, to https only
/// and at most 10 times; to another host or port they take no header of the request along. Once the process
/// exits, requests are given up like cancelled ones, and nobody is called back any more. URLs and headers are
/// bytes in code page 936; they go out as UTF-8, and what a URL may not hold is percent-escaped (escapes that
/// stand in it stay as they are). URLs of any length are carried.
#pragma once

#include <VelmorCore/Export.h>

#include <cstddef>
#include <cstdint>

class OzkCUploadTask;

namespace Ubrix {

/// What all URL tasks share.
class VELMORCORE_API WWWTask {
public:
    virtual ~WWWTask() = default;
    /// Sets a request header, replacing the value of a present key. Headers go out in ascending byte order of
    /// their keys as key, colon, value. Does nothing if either is null. A key that is no HTTP token or a text
    /// with a control character makes the next request fail with code 1.
    /// Takes no lock: for use while no request is being started.
    virtual void SetHeader(char const* key, char const* value) = 0;
    /// Replaces the URL. Does nothing for null. A request in flight goes on with the old one. Takes no lock.
    virtual void SetUrl(char const* url) = 0;
    /// The URL; valid until the next SetUrl or the task's destruction.
    virtual char const* GetUrl() = 0;
    /// Gives the request in flight up: the exchange is aborted, no callback comes once this has returned, and
    /// the task takes new requests at once. Waits for a callback that runs on another thread, never for the
    /// network. From inside the callback it changes nothing. Any thread.
    virtual void Cancel() = 0;
};

/// One request and its answer. Made by WWW::Request, destroyed by WWW::Destroy, reusable in between.
class VELMORCORE_API DataTask : public virtual WWWTask {
public:
    /// Receives the outcome of a request, on the request's own thread. Not owned by the task.
    class VELMORCORE_API Listener {
    public:
        /// Called once for each request that was started and not cancelled. A certificate that wasn't
        /// accepted is code 1; one line of level Warning says what to do about it.
        ///
        /// errorCode   0  an answer came; its status is not judged, and a connection that broke while the
        /// body
        ///                was read, a body of more than 64 MiB, or one that is still coming after ten
        ///                minutes, gives the bytes so far
        ///             1  any failure but these
        ///             2  time-out: 60 s to connect, 20 s without a byte sent, 30 s without one received, ten
        ///                minutes for the whole
        ///             3  the host's name doesn't resolve
        ///             4  the URL can't be read
        ///             5  no connection
        /// httpStatus  the status number, 0 on failure
        /// data        the body, `length` bytes and a NUL behind them; valid during the call. Null on failure
        /// length      bytes of the body, 0 on failure
        ///
        /// While it runs, the task still counts as requesting, no lock of the library is held, and whoever
        /// sets or removes the listener, cancels or destroys the task on another thread waits. The listener
        /// itself may do all of that.
        virtual void OnDataTaskFinished(DataTask* task, int errorCode, int httpStatus, char const* data,
                                        std::uint64_t length) = 0;

    protected:
        ~Listener() = default;
    };

    /// Starts a GET request, on a thread of its own, and returns at once. The URL and the headers are
    /// copied. While a request is in flight, and inside the callback, it logs "DataTask is Requesting" and
    /// starts nothing. If the system refuses a thread, the listener is told code 1 before the call returns.
    /// Any thread.
    virtual void Get() = 0;
    /// Starts a POST request in the same way; `data` is copied, `length` bytes. Null data is logged and
    /// starts nothing; length 0 sends a GET.
    virtual void Post(void const* data, std::size_t length) = 0;

    /// Sets the one listener; null for none. Waits for a callback that runs on another thread. Any thread.
    virtual void SetListener(Listener* listener) = 0;
    /// Clears the listener, whatever `listener` is. Once it has returned, no further callback runs.
    virtual void RemoveListener(Listener* listener) = 0;
};

/// A download into a file: on this platform a record of what was asked for, and nothing else. No transport is
/// wired in: no operation goes out to the network, writes a file or tells a listener anything, and Cancel
/// does nothing. Made by WWW::DownloadFile, destroyed by WWW::Destroy.
class VELMORCORE_API DownloadFileTask : public virtual WWWTask {
public:
    /// Only the pointer is kept here; the listener's operations are those of a platform with a transport.
    class Listener;

    /// Does nothing.
    virtual void Start() = 0;
    /// Does nothing.
    virtual void Pause() = 0;
    /// Stores the one listener, which isn't owned; null for none. Any thread.
    virtual void SetListener(Listener* listener) = 0;
    /// Clears the listener, whatever `listener` is. Any thread.
    virtual void RemoveListener(Listener* listener) = 0;
    /// The file that was named, byte for byte; valid as long as the task.
    virtual char const* GetFilePath() = 0;
};

/// The record of an answer, for tasks that hand one out; none of the tasks here does. Texts and data live as
/// long as the record. One thread at a time.
class VELMORCORE_API UrlResponse {
public:
    virtual ~UrlResponse() = default;
    /// A header's value; null for a null or absent key.
    virtual char const* GetHeader(char const* key) = 0;
    /// The URL.
    virtual char const* GetUrl() = 0;
    /// The version of HTTP, such as "HTTP/1.1".
    virtual char const* GetVersion() = 0;
    /// The status number; 0 in a record that nobody filled.
    virtual int GetStatusCode() = 0;
    /// The status line's reason phrase.
    virtual char const* GetReason() = 0;
    /// The body, with a NUL behind its GetDataLength() bytes.
    virtual char const* GetData() = 0;
    /// Bytes of the body.
    virtual std::size_t GetDataLength() = 0;
};

/// The factory of tasks. Static operations only; all may be called on any thread.
class VELMORCORE_API WWW {
public:
    /// A new task for `url`, which the caller ends with Destroy. Null if `url` is null.
    static DataTask* Request(char const* url);
    /// A new task that is to store what `url` answers in the file `path`, which the caller ends with Destroy.
    /// Null if either is null. Both are copied.
    static DownloadFileTask* DownloadFile(char const* url, char const* path);
    /// Destroys a task; null is ignored. Waits for a callback that runs on another thread, never for the
    /// network: a request in flight is aborted and nobody hears of it. May be called inside the callback.
    static void Destroy(DataTask* task);
    /// Destroys a task; null is ignored.
    static void Destroy(DownloadFileTask* task);
    /// A new upload task, from the host's factory if it has set one; see UploadTask.h. The caller owns it
    /// until it has called Upload. Null if the host's factory gives null, or without memory.
    static OzkCUploadTask* GetOzkUploadTask();

    WWW() = delete;
};

}  // namespace Ubrix
