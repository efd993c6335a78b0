/// @file
/// Uploads of finished files to an object store, and how a host provides them.
#pragma once

#include <VelmorCore/Export.h>

#include <cstdint>

/// One upload. Whoever takes a task from WWW::GetOzkUploadTask sets its parameters and its listener, calls
/// Upload once, and lets go of the pointer: the listener gets the task back and deletes it there.
///
/// A host that brings a transport derives from this class and sets a factory, below. What it owes its caller
/// is exactly one OnUploadFinished for each Upload. Texts are zero-terminated bytes, copied by the calls that
/// take them; null counts as empty. A task belongs to one thread at a time.
class VELMORCORE_API OzkCUploadTask {
public:
    /// Hears how an upload ended. Not owned by the task.
    class VELMORCORE_API Listener {
    public:
        /// `result`: 0 or 1 if the file need not be kept, any other number if it should stay. `task` is the
        /// listener's to delete, with `delete`; the transport touches it no more. On any thread, also from
        /// inside Upload.
        virtual void OnUploadFinished(OzkCUploadTask* task, int result) = 0;

    protected:
        Listener() = default;
        ~Listener() = default;
        /// For derived classes.
        Listener(Listener const&) = default;
        /// For derived classes.
        Listener& operator=(Listener const&) = default;
    };

    virtual ~OzkCUploadTask() = default;
    OzkCUploadTask(OzkCUploadTask const&) = delete;
    OzkCUploadTask& operator=(OzkCUploadTask const&) = delete;

    /// Starts the upload of the file at `filePath` under the name `uploadId` and returns without waiting for
    /// it. `partSize`: bytes a part; 0 or less if the server named none, and the transport chooses. `url`:
    /// base address of the configuration server. The file must stay until the listener was told.
    virtual void Upload(char const* uploadId, char const* filePath, std::int64_t partSize,
                        char const* url) = 0;
    /// The name that Upload took; empty before. Valid until the next Upload or the task's end.
    virtual char const* GetUploadId() = 0;
    /// The path that Upload took; empty before. Valid until the next Upload or the task's end.
    virtual char const* GetFilePath() = 0;
    /// Who uploads: device, application and user as compact JSON with a line feed at its end.
    virtual void SetComParams(char const* params) = 0;
    /// The one listener; null for none.
    virtual void SetListener(Listener* listener) = 0;

protected:
    OzkCUploadTask() = default;
};

namespace Ubrix {

/// Makes a task with `new`, or gives null if it has none to give. Called on the thread that asks for a task,
/// which for an order of the server is one of the library's, with no lock of the library held; it may take
/// its time there, and must not throw.
using OzkUploadTaskFactory = OzkCUploadTask* (*)(void* userData);

/// Lets `factory` make the upload tasks from now on. Null brings the built-in one back, whose tasks keep what
/// they are given, send nothing, and tell their listener nothing. `userData` is handed through. Both must
/// stay valid until another factory is set and no call is under way. Any thread.
VELMORCORE_API void SetOzkUploadTaskFactory(OzkUploadTaskFactory factory, void* userData);

}  // namespace Ubrix
