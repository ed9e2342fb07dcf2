#pragma once

namespace orv::test {

/// How much smaller long tests are under a sanitizer, which makes them that much slower.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
inline constexpr int SLOWNESS = 10;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer) || __has_feature(address_sanitizer)
inline constexpr int SLOWNESS = 10;
#else
inline constexpr int SLOWNESS = 1;
#endif
#else
inline constexpr int SLOWNESS = 1;
#endif

} // namespace orv::test
