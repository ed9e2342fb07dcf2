#pragma once

#include <cstdint>
#include <span>

/// \file
/// The tables of encodings, and what the library's load and unload do with them.

namespace orv::text::charset::internal {

/// An encoding of the library's tables. Those without classes are left to external codecs.
struct CodecRow {
    const char16_t* name;
    std::uint32_t codePage; ///< 0 for none
    const char16_t* encoderClass;
    const char16_t* decoderClass;
    const char16_t* const* aliases; ///< ended by null
};

/// The encodings that the library implements, in the order of their registration.
std::span<const CodecRow> builtInCodecs() noexcept;

/// The encodings with a code page that external codecs implement.
std::span<const CodecRow> externalCodecs() noexcept;

/// Registers the built-in codecs and their aliases with the codec manager.
void registerBuiltInCodecs();

/// Builds what the ORVGetEncInfo... functions look into.
void buildEncInfo();

/// Frees it.
void freeEncInfo() noexcept;

} // namespace orv::text::charset::internal
