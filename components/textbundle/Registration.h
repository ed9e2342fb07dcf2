#pragma once

#include "orv/String.h"
#include "platform/orvcore.h"

/// \file
/// What the configuration store knows of catalogues.
///
/// A catalogue NAME.LOCALE.messages is the class with the ProgID Tessaly.NAME.StringBundle.LOCALE.
/// Its class identifier is made of the ProgID, and the key of the class has, beside what every
/// class has there, the path of the file as the value "Catalogue".
///
/// Failures are ResultException.

namespace orv::components::textbundle {

/// What the name of a catalogue's file says.
struct CatalogueName {
    String bundle, locale;

    String progId() const;
};

/// E_INVALIDARG where the file is not called NAME.LOCALE.messages, or LOCALE is not of the form
/// language_COUNTRY@variant, the last two as may be.
CatalogueName nameOf(const String& path);

/// The class identifier for a ProgID, whatever its case: name-based, version 3 of RFC 9562.
GUID classIdOf(const String& progId);

/// Registers the catalogue at `catalogue` for the component at `component`, in place of one of the
/// same name and locale. 0x8007000D for a file with nothing but broken lines.
void registerCatalogue(const String& component, const String& catalogue);

/// E_NOT_FOUND where this very file is not registered. The file itself need not be there.
void unregisterCatalogue(const String& catalogue);

/// Removes all catalogues.
void unregisterCatalogues();

/// The file of a class. CLASS_E_CLASSNOTAVAILABLE where the class is no catalogue.
String catalogueOf(const GUID& classId);

} // namespace orv::components::textbundle
