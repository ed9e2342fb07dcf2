#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "orv/text/charset/CodecManager.h"
#include "orv/text/charset/SingleByteConverters.h"
#include "platform/orvcore.h"

namespace orv::text::charset {

namespace {

/// `object` as the converter it should be. What is none is released.
template <class Converter>
Converter* narrowed(Object* object, const char16_t* name)
{
    if (auto* const converter = dynamic_cast<Converter*>(object)) return converter;
    const Reference<Object> dropped(object);
    throw UnknownEncodingException(String(name));
}

/// A converter by the platform's default name.
template <class Converter, class Fallback>
Converter* defaultConverter()
{
    char16_t name[40] = {};
    if (failed(ORVGetDefaultCharEncoding(name, 40)) || name[0] == 0) return new Fallback;
    return Converter::getConverter(name);
}

} // namespace

ByteToCharConverter* ByteToCharConverter::getConverter(const char16_t* name)
{
    if (name == nullptr) return getDefaultConverter();
    return narrowed<ByteToCharConverter>(CodecManager::getInstance()->getDecoder(name), name);
}

ByteToCharConverter* ByteToCharConverter::getDefaultConverter()
{
    return defaultConverter<ByteToCharConverter, BTCASCII>();
}

CharToByteConverter* CharToByteConverter::getConverter(const char16_t* name)
{
    if (name == nullptr) return getDefaultConverter();
    return narrowed<CharToByteConverter>(CodecManager::getInstance()->getEncoder(name), name);
}

CharToByteConverter* CharToByteConverter::getDefaultConverter()
{
    return defaultConverter<CharToByteConverter, CTBASCII>();
}

} // namespace orv::text::charset
