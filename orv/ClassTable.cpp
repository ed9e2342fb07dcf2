#include "orv/internal/ClassTable.h"

#include "orv/ClassInfo.h"
#include "orv/Exceptions.h"
#include "orv/Floats.h"
#include "orv/Integers.h"
#include "orv/String.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/collections/quark/LinkedList.h"
#include "orv/collections/quark/Map.h"
#include "orv/exec/Thread.h"
#include "orv/i18n/Locale.h"
#include "orv/i18n/StringMapBundle.h"
#include "orv/io/AlphaNumInputStream.h"
#include "orv/io/AlphaNumOutputStream.h"
#include "orv/io/BitInputStream.h"
#include "orv/io/BitOutputStream.h"
#include "orv/io/BufferedInputStream.h"
#include "orv/io/BufferedOutputStream.h"
#include "orv/io/BufferedReader.h"
#include "orv/io/BufferedWriter.h"
#include "orv/io/ByteArrayInputStream.h"
#include "orv/io/ByteArrayOutputStream.h"
#include "orv/io/DataInputStream.h"
#include "orv/io/DataOutputStream.h"
#include "orv/io/FilterInputStream.h"
#include "orv/io/FilterOutputStream.h"
#include "orv/io/FilterReader.h"
#include "orv/io/FilterWriter.h"
#include "orv/io/InputStreamReader.h"
#include "orv/io/IoExceptions.h"
#include "orv/io/NullOutputStream.h"
#include "orv/io/NullWriter.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/io/PrintWriter.h"
#include "orv/io/StdioStreams.h"
#include "orv/io/StringWriter.h"
#include "orv/math/BigDecimal.h"
#include "orv/math/BigInteger.h"
#include "orv/net/TcpServerSocket.h"
#include "orv/quark/ClassFactory.h"
#include "orv/quark/DllModule.h"
#include "orv/sync/Atomic.h"
#include "orv/sync/Event.h"
#include "orv/sync/FakeMutex.h"
#include "orv/sync/Gate.h"
#include "orv/sync/Mutex.h"
#include "orv/sync/ReaderWriterLock.h"
#include "orv/sync/Semaphore.h"
#include "orv/text/charset/AMP7Converters.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "orv/text/charset/CodePageConverters.h"
#include "orv/text/charset/SingleByteConverters.h"
#include "orv/text/charset/UTF16Converters.h"
#include "orv/text/charset/UTF32Converters.h"
#include "orv/text/charset/UTF8Converters.h"
#include "orv/util/Comparator.h"
#include "orv/util/FilePath.h"
#include "orv/util/Guid.h"
#include "orv/util/MTByteBuffer.h"
#include "orv/util/MTCharBuffer.h"

#include <algorithm>
#include <iterator>

namespace orv {

namespace {

using internal::ClassRow;

/// A new object of `T`, made from the arguments.
template <class T, auto... arguments>
Object* make()
{
    return new T(arguments...);
}

/// A class that cannot be made without arguments, or one that `factory` makes.
template <class T>
constexpr ClassRow row(const char16_t* name, Class::Factory factory = nullptr) noexcept
{
    return {name, &typeid(T), factory};
}

constexpr ClassRow rows[] = {
    row<util::AbstractByteBuffer>(u"CORVAbstractByteBuffer"),
    row<util::AbstractCharBuffer>(u"CORVAbstractCharBuffer"),
    row<io::AlphaNumInputStream>(u"CORVAlphaNumInputStream"),
    row<io::AlphaNumOutputStream>(u"CORVAlphaNumOutputStream"),
    row<collections::quark::ArrayList>(u"CORVArrayList", &make<collections::quark::ArrayList>),
    row<sync::Atomic>(u"CORVAtomic"),
    row<math::BigDecimal>(u"CORVBigDecimal", &make<math::BigDecimal>),
    row<math::BigInteger>(u"CORVBigInteger", &make<math::BigInteger>),
    row<io::BitInputStream>(u"CORVBitInputStream"),
    row<io::BitOutputStream>(u"CORVBitOutputStream"),
    row<text::charset::BTCSingleByte>(u"CORVBTCSingleByte"),
    row<text::charset::BTCSingleByteTable>(u"CORVBTCSingleByteTable"),
    row<io::BufferedInputStream>(u"CORVBufferedInputStream"),
    row<io::BufferedOutputStream>(u"CORVBufferedOutputStream"),
    row<io::BufferedReader>(u"CORVBufferedReader"),
    row<io::BufferedWriter>(u"CORVBufferedWriter"),
    row<io::ByteArrayInputStream>(u"CORVByteArrayInputStream"),
    row<io::ByteArrayOutputStream>(u"CORVByteArrayOutputStream",
                                   &make<io::ByteArrayOutputStream, 256>),
    row<text::charset::ByteToCharConverter>(u"CORVByteToCharConverter"),
    row<text::charset::CharToByteConverter>(u"CORVCharToByteConverter"),
    row<Class>(u"orv::Class"),
    row<text::charset::CTBSingleByte>(u"CORVCTBSingleByte"),
    row<text::charset::CTBSingleByteTable>(u"CORVCTBSingleByteTable"),
    row<collections::quark::Collection>(u"CORVCollection"),
    row<quark::ClassFactory>(u"orv::quark::ClassFactory"),
    row<quark::DllModule>(u"CORVComDllModule"),
    row<ComObject>(u"CORVComObject"),
    row<util::Comparator>(u"CORVComparator"),
    row<collections::quark::ConstIterator>(u"CORVConstIterator"),
    row<collections::quark::ConstListIterator>(u"CORVConstListIterator"),
    row<io::DataInputStream>(u"CORVDataInputStream"),
    row<io::DataOutputStream>(u"CORVDataOutputStream"),
    row<Double>(u"CORVDouble"),
    row<sync::Event>(u"CORVEvent", &make<sync::Event, nullptr, 0>),
    row<sync::FakeAtomic>(u"orv::sync::FakeAtomic"),
    row<sync::FakeMutex>(u"CORVFakeMutex", &make<sync::FakeMutex, nullptr, 0>),
    row<util::FilePath>(u"CORVFilePath"),
    row<io::FilterInputStream>(u"CORVFilterInputStream"),
    row<io::FilterOutputStream>(u"CORVFilterOutputStream"),
    row<io::FilterReader>(u"CORVFilterReader"),
    row<io::FilterWriter>(u"CORVFilterWriter"),
    row<Float>(u"CORVFloat"),
    row<sync::Gate>(u"CORVGate", &make<sync::Gate, nullptr, 0>),
    row<util::Guid>(u"CORVGuid"),
    row<collections::quark::HashMap>(u"CORVHashMap", &make<collections::quark::HashMap>),
    row<io::InputStream>(u"CORVInputStream"),
    row<io::InputStreamReader>(u"CORVInputStreamReader"),
    row<Integer16>(u"CORVInteger16"),
    row<Integer32>(u"CORVInteger32"),
    row<Integer64>(u"CORVInteger64"),
    row<Integer8>(u"CORVInteger8"),
    row<collections::quark::Iterator>(u"CORVIterator"),
    row<collections::quark::LinkedList>(u"CORVLinkedList", &make<collections::quark::LinkedList>),
    row<collections::quark::List>(u"CORVList"),
    row<collections::quark::ListIterator>(u"CORVListIterator"),
    row<i18n::Locale>(u"CORVLocale"),
    row<sync::LockObject>(u"CORVLockObject"),
    row<collections::quark::Map>(u"CORVMap"),
    row<util::MTByteBuffer>(u"CORVMTByteBuffer", &make<util::MTByteBuffer>),
    row<util::MTCharBuffer>(u"CORVMTCharBuffer", &make<util::MTCharBuffer>),
    row<sync::Mutex>(u"CORVMutex", &make<sync::Mutex, nullptr, 0>),
    row<io::NullOutputStream>(u"CORVNullOutputStream", &make<io::NullOutputStream>),
    row<io::NullWriter>(u"CORVNullWriter", &make<io::NullWriter>),
    row<Number>(u"CORVNumber"),
    row<Object>(u"CORVObject", &make<Object>),
    row<io::OutputStream>(u"CORVOutputStream"),
    row<io::OutputStreamWriter>(u"CORVOutputStreamWriter"),
    row<io::PrintWriter>(u"CORVPrintWriter"),
    row<io::Reader>(u"CORVReader"),
    row<i18n::StringBundle>(u"CORVResourceBundle"),
    row<util::ROByteBuffer>(u"CORVROByteBuffer", &make<util::ROByteBuffer>),
    row<util::ROCharBuffer>(u"CORVROCharBuffer", &make<util::ROCharBuffer>),
    row<exec::IRunnable>(u"CORVRunnable"),
    row<util::RWByteBuffer>(u"CORVRWByteBuffer", &make<util::RWByteBuffer>),
    row<util::RWCharBuffer>(u"CORVRWCharBuffer", &make<util::RWCharBuffer>),
    row<sync::ReaderWriterLock>(u"CORVRWLock", &make<sync::ReaderWriterLock, nullptr, 0>),
    row<sync::Semaphore>(u"CORVSemaphore", &make<sync::Semaphore, 0, nullptr, 0>),
    row<collections::quark::Set>(u"CORVSet"),
    row<SignedInteger>(u"CORVSignedInteger"),
    row<io::StdioInputStream>(u"CORVStdioInputStream", &make<io::StdioInputStream>),
    row<io::StdioOutputStream>(u"CORVStdioOutputStream", &make<io::StdioOutputStream>),
    row<String>(u"CORVString", &make<String>),
    row<i18n::StringMapBundle>(u"orv::i18n::StringMapBundle"),
    row<io::StringWriter>(u"CORVStringWriter", &make<io::StringWriter, 0>),
    row<sync::Object>(u"CORVSyncObject"),
    row<net::TcpServerSocket>(u"orv::net::TcpServerSocket"),
    row<net::TcpSocket>(u"orv::net::TcpSocket"),
    row<exec::Thread>(u"CORVThread"),
    row<UInteger16>(u"CORVUInteger16"),
    row<UInteger32>(u"CORVUInteger32"),
    row<UInteger64>(u"CORVUInteger64"),
    row<UInteger8>(u"CORVUInteger8"),
    row<UnsignedInteger>(u"CORVUnsignedInteger"),
    row<io::Writer>(u"CORVWriter"),
    row<AccessViolationException>(u"orv::AccessViolationException"),
    row<ArrayBoundsException>(u"orv::ArrayBoundsException"),
    row<CastFailedException>(u"orv::CastFailedException", &make<CastFailedException>),
    row<ClassNotFoundException>(u"orv::ClassNotFoundException", &make<ClassNotFoundException>),
    row<CloneNotSupportedException>(u"orv::CloneNotSupportedException",
                                    &make<CloneNotSupportedException>),
    row<Exception>(u"orv::Exception", &make<Exception>),
    row<ExternalException>(u"orv::ExternalException"),
    row<IllegalAccessException>(u"orv::IllegalAccessException", &make<IllegalAccessException>),
    row<IllegalInstructionException>(u"orv::IllegalInstructionException"),
    row<IllegalStateException>(u"orv::IllegalStateException", &make<IllegalStateException>),
    row<IntDivByZeroException>(u"orv::IntDivByZeroException", &make<IntDivByZeroException>),
    row<IntErrorException>(u"orv::IntErrorException", &make<IntErrorException>),
    row<IntOverflowException>(u"orv::IntOverflowException", &make<IntOverflowException>),
    row<text::charset::InvalidCharacterException>(u"orv::text::charset::InvalidCharacterException",
                                                  &make<text::charset::InvalidCharacterException>),
    row<InvalidPathException>(u"orv::InvalidPathException", &make<InvalidPathException>),
    row<IntDivByZeroException>(u"orv::IntDivByZeroException"),
    row<IntErrorException>(u"orv::IntErrorException"),
    row<IntOverflowException>(u"orv::IntOverflowException"),
    row<io::IoException>(u"orv::io::IoException", &make<io::IoException>),
    row<io::TimeoutException>(u"orv::io::TimeoutException", &make<io::TimeoutException>),
    row<MathDivByZeroException>(u"orv::MathDivByZeroException"),
    row<MathErrorException>(u"orv::MathErrorException"),
    row<MathInvalidOpException>(u"orv::MathInvalidOpException"),
    row<MathOverflowException>(u"orv::MathOverflowException"),
    row<MathUnderflowException>(u"orv::MathUnderflowException"),
    row<OutOfMemoryException>(u"orv::OutOfMemoryException", &make<OutOfMemoryException>),
    row<RangeErrorException>(u"orv::RangeErrorException", &make<RangeErrorException>),
    row<ReadOnlyException>(u"orv::ReadOnlyException", &make<ReadOnlyException>),
    row<StackOverflowException>(u"orv::StackOverflowException"),
    row<io::UnexpectedEOFException>(u"orv::io::UnexpectedEOFException",
                                    &make<io::UnexpectedEOFException>),
    row<text::charset::UnknownEncodingException>(u"orv::text::charset::UnknownEncodingException",
                                                 &make<text::charset::UnknownEncodingException>),
    row<text::charset::UnmappableCharacterException>(
        u"orv::text::charset::UnmappableCharacterException",
        &make<text::charset::UnmappableCharacterException>),
    row<UnsupportedOperationException>(u"orv::UnsupportedOperationException",
                                       &make<UnsupportedOperationException>),
    row<UserAbortException>(u"orv::UserAbortException"),
    row<text::charset::CTBASCII>(u"orv::text::charset::CTBASCII", &make<text::charset::CTBASCII>),
    row<text::charset::BTCASCII>(u"orv::text::charset::BTCASCII", &make<text::charset::BTCASCII>),
    row<text::charset::CTBISO8859_1>(u"orv::text::charset::CTBISO8859_1",
                                     &make<text::charset::CTBISO8859_1>),
    row<text::charset::BTCISO8859_1>(u"orv::text::charset::BTCISO8859_1",
                                     &make<text::charset::BTCISO8859_1>),
    row<text::charset::CTBCP437>(u"orv::text::charset::CTBCP437", &make<text::charset::CTBCP437>),
    row<text::charset::BTCCP437>(u"orv::text::charset::BTCCP437", &make<text::charset::BTCCP437>),
    row<text::charset::CTBCP1252>(u"orv::text::charset::CTBCP1252",
                                  &make<text::charset::CTBCP1252>),
    row<text::charset::BTCCP1252>(u"orv::text::charset::BTCCP1252",
                                  &make<text::charset::BTCCP1252>),
    row<text::charset::BTCUTF8>(u"orv::text::charset::BTCUTF8", &make<text::charset::BTCUTF8>),
    row<text::charset::CTBUTF8>(u"orv::text::charset::CTBUTF8", &make<text::charset::CTBUTF8>),
    row<text::charset::CTBUTF16LE>(u"orv::text::charset::CTBUTF16LE",
                                   &make<text::charset::CTBUTF16LE>),
    row<text::charset::BTCUTF16LE>(u"orv::text::charset::BTCUTF16LE",
                                   &make<text::charset::BTCUTF16LE>),
    row<text::charset::CTBUTF16BE>(u"orv::text::charset::CTBUTF16BE",
                                   &make<text::charset::CTBUTF16BE>),
    row<text::charset::BTCUTF16BE>(u"orv::text::charset::BTCUTF16BE",
                                   &make<text::charset::BTCUTF16BE>),
    row<text::charset::CTBUTF32LE>(u"orv::text::charset::CTBUTF32LE",
                                   &make<text::charset::CTBUTF32LE>),
    row<text::charset::BTCUTF32LE>(u"orv::text::charset::BTCUTF32LE",
                                   &make<text::charset::BTCUTF32LE>),
    row<text::charset::CTBUTF32BE>(u"orv::text::charset::CTBUTF32BE",
                                   &make<text::charset::CTBUTF32BE>),
    row<text::charset::BTCUTF32BE>(u"orv::text::charset::BTCUTF32BE",
                                   &make<text::charset::BTCUTF32BE>),
    row<text::charset::BTCAMP7>(u"orv::text::charset::BTCAMP7", &make<text::charset::BTCAMP7>),
    row<text::charset::CTBAMP7>(u"orv::text::charset::CTBAMP7", &make<text::charset::CTBAMP7>),
};

} // namespace

std::span<const ClassRow> internal::classTable() noexcept
{
    return rows;
}

} // namespace orv

orv::Result ORVEnumerateClassInfo(std::uint32_t* count, orv::ClassInfo* out) noexcept
{
    if (count == nullptr || (*count != 0 && out == nullptr)) return E_INVALIDARG;
    const std::uint32_t room = *count;
    *count = static_cast<std::uint32_t>(std::size(orv::rows));
    if (room < *count) return orv::E_BUFFER_TOO_SMALL;
    std::transform(std::begin(orv::rows), std::end(orv::rows), out, [](const auto& row) {
        return orv::ClassInfo{row.name, row.factory != nullptr ? 1u : 0u};
    });
    return S_OK;
}
