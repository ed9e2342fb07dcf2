#include "components/textbundle/CatalogueBundle.h"
#include "components/textbundle/Catalogues.h"
#include "components/textbundle/Registration.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/quark/Component.h"
#include "orv/quark/IORVClassFactory.h"
#include "orv/quark/InterfaceData.h"
#include "orv/util/Guid.h"

namespace orv::components::textbundle {

namespace {

/// Opens the bundles of one catalogue.
class BundleFactory : public ::orv::quark::Implements<ComObject, ::orv::quark::IORVClassFactory> {
public:
    explicit BundleFactory(const String& catalogue)
        : m_catalogue(catalogue),
          m_locale(makeReference<i18n::Locale>(nameOf(catalogue).locale.getData()))
    {
    }

    Result QueryInterface(const GUID& iid, void** out) override
    {
        return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
    }

    Result CreateInstance(IORVUnknown* outer, const GUID& iid, void** out) const override
    {
        if (out == nullptr) return E_POINTER;
        *out = nullptr;
        if (outer != nullptr) {
            return util::Guid(iid) == IORVUnknown::IID ? CLASS_E_NOAGGREGATION : E_INVALIDARG;
        }
        return resultOf([&] {
            const auto texts = Catalogues::instance().open(m_catalogue);
            const auto bundle = makeReference<CatalogueBundle>(texts.get(), m_locale.get());
            throwIfFailed(bundle->QueryInterface(iid, out));
        });
    }

    /// The library stays loaded in any case.
    Result LockServer(std::int16_t) override { return S_OK; }

    static const ::orv::quark::InterfaceData* GetComIntfMap()
    {
        static const ::orv::quark::InterfaceData map[] = {
            ::orv::quark::interfaceRow<::orv::quark::IORVClassFactory, BundleFactory>(),
            ::orv::quark::baseRow<ComObject>(), ::orv::quark::endRow};
        return map;
    }

private:
    String m_catalogue;
    Reference<i18n::Locale> m_locale;
};

} // namespace

} // namespace orv::components::textbundle

using namespace orv::components::textbundle;
using orv::Result;
using orv::resultOf;

Result ORVGetClassObject(const GUID& clsid, const GUID& iid, void** out)
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return resultOf([&] {
        const auto factory = orv::makeReference<BundleFactory>(catalogueOf(clsid));
        orv::throwIfFailed(factory->QueryInterface(iid, out));
    });
}

// Without a catalogue there is nothing to register.
Result ORVRegisterServer(const char16_t*)
{
    return S_OK;
}

Result ORVUnregisterServer()
{
    return resultOf([] { unregisterCatalogues(); });
}

Result ORVRegisterCatalogue(const char16_t* path, const char16_t* catalogue)
{
    if (path == nullptr || catalogue == nullptr) return E_POINTER;
    return resultOf([&] { registerCatalogue(path, catalogue); });
}

Result ORVUnregisterCatalogue(const char16_t* catalogue)
{
    if (catalogue == nullptr) return E_POINTER;
    return resultOf([&] { unregisterCatalogue(catalogue); });
}

Result ORVCheckCatalogue(const char16_t* catalogue, ORVTellBrokenLine tell, void* context)
{
    if (catalogue == nullptr || tell == nullptr) return E_POINTER;
    return resultOf([&] {
        try {
            nameOf(catalogue);
        } catch (const orv::ResultException& exception) {
            tell(context, 0, exception.getDescription().getData());
            throw;
        }
        Catalogue::read(catalogue, [&](std::int32_t line, const char16_t* reason) {
            tell(context, line, reason);
        });
    });
}
