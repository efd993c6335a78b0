// Clang's thread-safety attributes: which lock guards which field, checked at compile time under clang.
#pragma once

#if defined(__clang__)
#define VC_CAPABILITY(name) __attribute__((capability(name)))
#define VC_SCOPED_CAPABILITY __attribute__((scoped_lockable))
#define VC_GUARDED_BY(lock) __attribute__((guarded_by(lock)))
#define VC_REQUIRES(...) __attribute__((requires_capability(__VA_ARGS__)))
#define VC_ACQUIRE(...) __attribute__((acquire_capability(__VA_ARGS__)))
#define VC_RELEASE(...) __attribute__((release_capability(__VA_ARGS__)))
#define VC_NO_THREAD_SAFETY_ANALYSIS __attribute__((no_thread_safety_analysis))
#else
#define VC_CAPABILITY(name)
#define VC_SCOPED_CAPABILITY
#define VC_GUARDED_BY(lock)
#define VC_REQUIRES(...)
#define VC_ACQUIRE(...)
#define VC_RELEASE(...)
#define VC_NO_THREAD_SAFETY_ANALYSIS
#endif
