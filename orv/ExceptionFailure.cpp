#include "orv/Failure.h"

#include "orv/Exceptions.h"

#include <cxxabi.h>

namespace orv {

// What unwinds a cancelled thread is no object, which the sanitizer would take as a fault here.
__attribute__((no_sanitize("null"))) Result resultOfCurrentException()
{
    // The order decides for OutOfMemoryException, which is caught by the first two.
    try {
        throw;
    } catch (abi::__forced_unwind&) {
        throw; // a cancelled thread must go on unwinding
    } catch (const Exception& exception) {
        return exception.getResult();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

void throwResult(Result result)
{
    throw ResultException(result);
}

void throwOutOfMemory()
{
    throw OutOfMemoryException();
}

void throwReadOnly()
{
    throw ReadOnlyException();
}

void throwRange()
{
    throw RangeErrorException();
}

void throwCastFailed()
{
    throw CastFailedException();
}

void throwCloneNotSupported()
{
    throw CloneNotSupportedException();
}

void throwClassNotFound(const char16_t* name)
{
    throw ClassNotFoundException(name);
}

void throwIllegalAccess()
{
    throw IllegalAccessException();
}

void throwException(const char16_t* text)
{
    throw Exception(text);
}

} // namespace orv
