#include "orv/Library.h"

#include "orv/ClassManager.h"
#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/internal/ClassTable.h"
#include "orv/internal/EmptyText.h"
#include "orv/internal/ExitList.h"
#include "orv/internal/ModuleToken.h"
#include "orv/math/BigInteger.h"
#include "orv/net/TcpSocket2.h"
#include "orv/sync/Mutex.h"
#include "orv/text/charset/CodecManager.h"
#include "orv/text/charset/internal/CodecTables.h"

#include <clocale>
#include <utility>

namespace orv {

namespace {

constinit std::int32_t initCount = 0;
constinit ORVNewHandler previousNewHandler = nullptr;

void registerClasses()
{
    ClassManager* const manager = ClassManager::getInstance();
    for (const internal::ClassRow& row : internal::classTable()) {
        manager->registerClass(row.name, row.type, row.factory);
    }
}

void bringUp()
{
    // Without a usable locale in the environment the one in force stays.
    static_cast<void>(std::setlocale(LC_ALL, ""));
    previousNewHandler = ORVSetNewHandler(&throwOutOfMemory);
    g_pGlobalLock = new sync::Mutex("ORVCL::g_pGlobalLock", 0);
    registerClasses();
    text::charset::internal::registerBuiltInCodecs();
    text::charset::internal::buildEncInfo();
}

void endSockets()
{
    const ENUM_ORV_E_SOCKET result = net::TcpSocket2::uninit();
    if (result == ORV_E_SOCKET_OK) return;
    throw Exception(String(u"ORVCLLibUninit ").append(ORVGetDescriptionFromORV_E_SOCKET(result)));
}

void takeDown()
{
    text::charset::internal::freeEncInfo();
    text::charset::CodecManager::freeInstance();
    ClassManager::freeInstance();
    endSockets();
    // Destroying it throws where a thread that is left over holds it.
    delete std::exchange(g_pGlobalLock, nullptr);
    ORVSetNewHandler(previousNewHandler);
}

} // namespace

} // namespace orv

orv::Result ORVCLLibInit()
{
    if (++orv::initCount == 1) orv::bringUp();
    return S_OK;
}

orv::Result ORVCLLibUninit() noexcept
{
    if (orv::initCount < 1) return E_FAIL;
    if (--orv::initCount > 0) return S_OK;
    return orv::resultOf([] { orv::takeDown(); });
}

// The statics of the library. They are built in the order of these lines and end in the reverse
// order; no other source has any.

namespace orv {

namespace {

/// The text that all empty Strings share.
struct EmptyTextOwner {
    EmptyTextOwner() { internal::createSharedEmptyText(); }
    EmptyTextOwner(const EmptyTextOwner&) = delete;
    EmptyTextOwner& operator=(const EmptyTextOwner&) = delete;
    ~EmptyTextOwner() { internal::releaseSharedEmptyText(); }
};

/// Load and unload themselves.
struct LifeOfLibrary {
    LifeOfLibrary()
    {
        ORVCLLibInit();
        ORVModuleSetInitialized(internal::moduleToken(), 1);
    }
    LifeOfLibrary(const LifeOfLibrary&) = delete;
    LifeOfLibrary& operator=(const LifeOfLibrary&) = delete;
    ~LifeOfLibrary()
    {
        ORVModuleSetInitialized(internal::moduleToken(), 0);
        ORVCLLibUninit();
        internal::runExitList();
    }
};

const EmptyTextOwner emptyText;

} // namespace

const math::BigInteger math::BigInteger::ONE(std::int32_t{1});
const math::BigInteger math::BigInteger::ZERO(std::int32_t{0});

namespace {

const LifeOfLibrary life;

} // namespace

} // namespace orv
