#pragma once

#include "orv/IORVUnknown.h"

namespace orv::test {

/// What a class of the faulty component does; the first number of its identifier.
enum Fault : std::uint32_t {
    NONE,             ///< nothing wrong: an object of the component's own class
    TEXT,             ///< nothing wrong: an orv::String
    UNKNOWN_CLASS,    ///< the class table lacks it
    NO_FACTORY,       ///< ORVGetClassObject tells success and gives nothing
    THROWS_EARLY,     ///< ORVGetClassObject throws
    NO_OBJECT,        ///< the class factory tells success and gives nothing
    THROWS,           ///< the class factory throws
    THROWS_BAD_ALLOC, ///< the class factory runs out of memory
    LEAVES_REST,      ///< the class factory fails and leaves something behind all the same
    ENDS_THREAD,      ///< the class factory ends the thread
};

constexpr GUID faultId(std::uint32_t fault)
{
    return {fault, 0x6A7B, 0x4C8D, {0x9E, 1, 2, 3, 4, 5, 6, 7}};
}

/// What the object of NONE tells of the component.
class ITeller : public IORVUnknown {
public:
    static constexpr GUID IID{0x1B7F0A53, 0x6D0E, 0x4F1C, {0xA2, 8, 7, 6, 5, 4, 3, 2}};

    virtual std::int32_t timesLoaded() const = 0;
    virtual std::int32_t factoriesMade() const = 0;
    /// Throws the component's own descendant of orv::Exception, with the result 0x80070043.
    virtual void throwOwn() const = 0;

protected:
    ~ITeller() = default;
};

} // namespace orv::test
