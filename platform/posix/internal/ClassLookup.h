#pragma once

#include "platform/orvcore.h"

/// \file
/// The way from a ProgID or a class identifier to the library of a component.

namespace orvcore {

/// What a component exports as ORVGetClassObject.
using ClassObjectEntry = ORVResult (*)(const GUID& classId, const GUID& iid, void** out);

/// A registered class whose library is loaded.
struct ClassTarget {
    GUID classId;
    ClassObjectEntry entry;
};

/// The results are those of ORVComCreateObjectByProgID(), ORVModuleComCreateObject() and
/// ORVComClassIDFromProgID(), which go no further than here.
ORVResult findByProgId(const char16_t* progId, ClassTarget* out);
ORVResult findByClassId(const GUID& classId, ClassTarget* out);
ORVResult findClassId(const char16_t* progId, GUID* out) noexcept;

} // namespace orvcore
