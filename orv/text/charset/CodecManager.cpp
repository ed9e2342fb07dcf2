#include "orv/text/charset/CodecManager.h"

#include "orv/Class.h"
#include "orv/Failure.h"
#include "orv/GlobalLock.h"
#include "orv/Reference.h"
#include "orv/Str1Family.h"
#include "orv/Str1HashMap.h"
#include "orv/String.h"
#include "orv/internal/ModuleToken.h"
#include "orv/sync/Lock.h"
#include "orv/text/charset/CodecClasses.h"
#include "orv/text/charset/ComConverters.h"
#include "orv/text/charset/EncInfo.h"
#include "orv/text/charset/internal/CodecTables.h"

namespace orv::text::charset {

CodecClasses::~CodecClasses() noexcept(false) = default;

namespace {

constexpr STRUCT_ORV_STR_LIT_INFO progIdPrefix{u"Tessaly.CharCodec.", 18};

constexpr std::int32_t CAPACITY = 101;
constexpr float LOAD_FACTOR = 0.75F;

/// Whether something was found. To run out of memory is not to find nothing.
bool found(Result result)
{
    if (result == E_OUTOFMEMORY) throwOutOfMemory();
    return !failed(result);
}

/// The codec of a component registered for `name`, null where there is none.
Reference<IORVCharCodec> externalCodec(const char16_t* name)
{
    const String progId = String(progIdPrefix) + name;
    GUID classId{};
    if (!found(ORVComClassIDFromProgID(progId.getData(), &classId))) return nullptr;
    void* codec = nullptr;
    if (!found(ORVModuleComCreateObject(::orv::internal::moduleToken(), classId, nullptr,
                                        IORVCharCodec::IID, &codec))) {
        return nullptr;
    }
    return Reference<IORVCharCodec>::adopt(static_cast<IORVCharCodec*>(codec));
}

} // namespace

/// What tells the making of encoders from that of decoders.
struct CodecManager::Side {
    const Class* (*classOf)(const CodecClasses& codec);
    Object* (*wrap)(IORVCharCodec* codec);
};

constinit std::atomic<CodecManager*> CodecManager::m_instance{nullptr};

CodecManager::CodecManager() : m_codecs(std::make_unique<Codecs>(CAPACITY, LOAD_FACTOR)) {}

CodecManager::~CodecManager() = default;

CodecManager* CodecManager::getInstance()
{
    if (CodecManager* const present = m_instance.load(std::memory_order_acquire)) return present;
    const sync::Lock guard(g_pGlobalLock);
    CodecManager* present = m_instance.load(std::memory_order_relaxed);
    if (present == nullptr) {
        present = new CodecManager;
        m_instance.store(present, std::memory_order_release);
    }
    return present;
}

void CodecManager::freeInstance()
{
    if (m_instance.load(std::memory_order_acquire) == nullptr) return;
    const sync::Lock guard(g_pGlobalLock);
    delete m_instance.exchange(nullptr);
}

void CodecManager::registerCodec(const char16_t* name, const char16_t* encoderClass,
                                 const char16_t* decoderClass)
{
    Str1Copy key(name);
    key.toUpper();
    if (m_codecs->containsKey(key)) return;
    const auto codec =
        makeReference<CodecClasses>(Class::forName(encoderClass), Class::forName(decoderClass));
    m_codecs->put(key, Reference<ComObject>(codec), nullptr);
}

Object* CodecManager::make(const char16_t* name, const Side& side)
{
    if (name == nullptr) return nullptr;
    Str1Fixed<128> key;
    key = name;
    key.toUpper();
    Reference<ComObject> known;
    if (m_codecs->get(key, known)) {
        return side.classOf(static_cast<const CodecClasses&>(*known))->createInstance();
    }

    const Reference<IORVCharCodec> codec = externalCodec(name);
    if (codec) return side.wrap(codec.get());

    EncInfo info{};
    if (!found(ORVGetEncInfoByName(name, &info)) || key == info.name) return nullptr;
    return make(info.name, side);
}

Object* CodecManager::getEncoder(const char16_t* name)
{
    return make(name, {[](const CodecClasses& codec) { return codec.encoder(); },
                       [](IORVCharCodec* codec) -> Object* { return new CTBCom(codec); }});
}

Object* CodecManager::getDecoder(const char16_t* name)
{
    return make(name, {[](const CodecClasses& codec) { return codec.decoder(); },
                       [](IORVCharCodec* codec) -> Object* { return new BTCCom(codec); }});
}

void internal::registerBuiltInCodecs()
{
    CodecManager* const manager = CodecManager::getInstance();
    for (const CodecRow& row : builtInCodecs()) {
        manager->registerCodec(row.name, row.encoderClass, row.decoderClass);
        for (const char16_t* const* alias = row.aliases; *alias != nullptr; ++alias) {
            manager->registerCodec(*alias, row.encoderClass, row.decoderClass);
        }
    }
}

} // namespace orv::text::charset
