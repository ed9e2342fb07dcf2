#pragma once

#include "orv/Object.h"

#include <atomic>
#include <memory>

namespace orv {

template <class T>
class Reference;
template <class T>
class Str1HashMap;

} // namespace orv

namespace orv::text::charset {

/// Decides which converter serves an encoding name.
///
/// Built-in codecs and what hosts register come first, in any case of letters; then an external
/// codec registered as the component "Tessaly.CharCodec." and the name as it was given; at last
/// aliases and the numbers of code pages lead to the canonical name, which starts over. "DEFAULT"
/// is a name of ASCII: the default encoding is asked for by a null name at the converters.
///
/// Threads: lookups from any; registerCodec() before other threads look codecs up.
class ORV_API CodecManager {
public:
    CodecManager(const CodecManager&) = delete;
    CodecManager& operator=(const CodecManager&) = delete;

    /// The one manager, made on first use.
    static CodecManager* getInstance();
    /// Deletes the manager, if there is one.
    static void freeInstance();

    /// Names the run-time classes that serve an encoding. The first registration of a name stands;
    /// case does not matter. Throws ClassNotFoundException for a class that is not registered.
    void registerCodec(const char16_t* name, const char16_t* encoderClass,
                       const char16_t* decoderClass);

    /// A new converter with count 0 for the named encoding, null where no codec answers to it.
    [[nodiscard]] Object* getEncoder(const char16_t* name);
    [[nodiscard]] Object* getDecoder(const char16_t* name);

    /// The manager, or null.
    static std::atomic<CodecManager*> m_instance;

private:
    using Codecs = Str1HashMap<Reference<ComObject>>;
    struct Side;

    CodecManager();
    ~CodecManager();

    Object* make(const char16_t* name, const Side& side);

    std::unique_ptr<Codecs> m_codecs; ///< CodecClasses by names in upper case
};

} // namespace orv::text::charset
