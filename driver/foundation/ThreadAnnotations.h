// SPDX-License-Identifier: MIT
#pragma once

/// Names for clang's thread safety analysis; empty for every other compiler.

#if defined(__clang__)
#define VORLANE_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define VORLANE_THREAD_ANNOTATION(x)
#endif

#define CAPABILITY(x) VORLANE_THREAD_ANNOTATION(capability(x))
#define SCOPED_CAPABILITY VORLANE_THREAD_ANNOTATION(scoped_lockable)
#define GUARDED_BY(x) VORLANE_THREAD_ANNOTATION(guarded_by(x))
#define PT_GUARDED_BY(x) VORLANE_THREAD_ANNOTATION(pt_guarded_by(x))
#define REQUIRES(...) VORLANE_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define ACQUIRE(...) VORLANE_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define RELEASE(...) VORLANE_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define NO_THREAD_SAFETY_ANALYSIS VORLANE_THREAD_ANNOTATION(no_thread_safety_analysis)
