// Names for clang's thread-safety analysis: which lock guards a field, which lock a function needs.

#ifndef KDXCOMMON_BASE_THREAD_ANNOTATIONS_H_
#define KDXCOMMON_BASE_THREAD_ANNOTATIONS_H_

#if defined(__clang__)
#define KDX_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define KDX_THREAD_ATTRIBUTE(x)
#endif

#define KDX_CAPABILITY(name) KDX_THREAD_ATTRIBUTE(capability(name))
#define KDX_SCOPED_CAPABILITY KDX_THREAD_ATTRIBUTE(scoped_lockable)
#define KDX_GUARDED_BY(lock) KDX_THREAD_ATTRIBUTE(guarded_by(lock))
#define KDX_REQUIRES(...) KDX_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define KDX_ACQUIRE(...) KDX_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define KDX_TRY_ACQUIRE(...) KDX_THREAD_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
#define KDX_RELEASE(...) KDX_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define KDX_NO_THREAD_SAFETY_ANALYSIS KDX_THREAD_ATTRIBUTE(no_thread_safety_analysis)

#endif  // KDXCOMMON_BASE_THREAD_ANNOTATIONS_H_
