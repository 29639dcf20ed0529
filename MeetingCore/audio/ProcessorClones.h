#pragma once

/// Marks a loop that is compiled for several generations of the processor; which one runs is chosen at the start. Under
/// ThreadSanitizer, whose run-time is not ready that early, there is only one.
#if defined(__SANITIZE_THREAD__)
#define VARNET_PROCESSOR_CLONES
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define VARNET_PROCESSOR_CLONES
#endif
#endif

#ifndef VARNET_PROCESSOR_CLONES
#if defined(__x86_64__) && defined(__linux__)
#define VARNET_PROCESSOR_CLONES __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define VARNET_PROCESSOR_CLONES
#endif
#endif
