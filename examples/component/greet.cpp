#include "IGreeter.h"

#include <orv/Exception>
#include <orv/Failure>
#include <orv/Reference>
#include <orv/String>

#include <cstdio>

namespace {

orv::Reference<IGreeter> makeGreeter()
{
    void* made = nullptr;
    orv::throwIfFailed(
        ORVComCreateObjectByProgID(u"Example.Greeter", nullptr, IGreeter::IID, &made));
    return orv::Reference<IGreeter>::adopt(static_cast<IGreeter*>(made));
}

} // namespace

int main(int count, char** words)
{
    try {
        const orv::Reference<IGreeter> greeter = makeGreeter();
        orv::String greeting;
        const orv::String name(count > 1 ? words[1] : "stranger");
        orv::throwIfFailed(greeter->Greet(name.getData(), &greeting));
        std::printf("%s\n", greeting.getBytes());
        return 0;
    } catch (const orv::Exception& exception) {
        std::printf("no greeter: 0x%08X\n", static_cast<unsigned>(exception.getResult()));
        return 1;
    }
}
