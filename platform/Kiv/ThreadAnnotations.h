// Clang's thread-safety annotations, under names of this project.
//
// The annotations tell the compiler which lock guards which member and which function needs
// which lock. Clang checks them at compile time (-Wthread-safety). Every other compiler sees
// nothing, and no compiler generates code for them. A "capability" is the checker's word for
// a lock.
//
// Limits of the check: it looks at one function at a time, does not know two names for one
// object as the same, and does not look into constructors and destructors. It does not follow
// a lock that is taken only under a condition, either. Such a lock belongs into a scoped guard
// whose constructor is annotated as if it always took the lock.
#ifndef KIV_THREADANNOTATIONS_H
#define KIV_THREADANNOTATIONS_H

#if defined(__clang__)
// For the macros below: an attribute in Clang's spelling.
#define KIV_THREAD_ANNOTATION(x) __attribute__((x))
#else
// For the macros below: nothing, in compilers without the check.
#define KIV_THREAD_ANNOTATION(x)
#endif

// On a class: its objects are locks. `kind` is the word for them in the compiler's messages.
#define KIV_CAPABILITY(kind) KIV_THREAD_ANNOTATION(capability(kind))

// On a class: its constructor takes a lock and its destructor gives the lock back.
#define KIV_SCOPED_CAPABILITY KIV_THREAD_ANNOTATION(scoped_lockable)

// On a member: it is read and written only by a thread that holds the lock.
#define KIV_GUARDED_BY(lock) KIV_THREAD_ANNOTATION(guarded_by(lock))

// On a function: the caller holds these locks before the call and after it.
#define KIV_REQUIRES(...) KIV_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))

// On a function: it takes these locks, or the lock that it is a member of, and returns with
// them held.
#define KIV_ACQUIRE(...) KIV_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))

// On a function: it gives these locks back, or the lock that it is a member of.
#define KIV_RELEASE(...) KIV_THREAD_ANNOTATION(release_capability(__VA_ARGS__))

// On a function that returns only if the caller may do what the lock allows. The check takes
// the lock as held from the call on.
#define KIV_ASSERT_CAPABILITY(lock) KIV_THREAD_ANNOTATION(assert_capability(lock))

// On a function: its body is not checked. A comment beside it says why.
#define KIV_NO_THREAD_SAFETY_ANALYSIS KIV_THREAD_ANNOTATION(no_thread_safety_analysis)

#endif
