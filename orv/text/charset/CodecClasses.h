#pragma once

#include "orv/Class.h"
#include "orv/ComObject.h"

namespace orv::text::charset {

/// The run-time classes that serve one encoding.
class ORV_API CodecClasses final : public ComObject {
public:
    CodecClasses(const Class* encoder, const Class* decoder) noexcept
        : m_encoder(encoder), m_decoder(decoder)
    {
    }
    ~CodecClasses() noexcept(false) override;

    /// The classes of the two converters, owned by the class manager.
    const Class* encoder() const noexcept { return m_encoder; }
    const Class* decoder() const noexcept { return m_decoder; }

private:
    const Class* m_encoder; ///< owned by the class manager
    const Class* m_decoder;
};

} // namespace orv::text::charset
