// A process that writes to the configuration store until it is done or killed.
//
// RegistryChild KEY COUNT: sets the value "last" below KEY to 1, 2, 3 ... COUNT and tells each
// number, once it is set, as 8 bytes on its standard output; before them its process identifier.
// With COUNT 0 it goes on for ever. Exit status 1 when a value cannot be set.

#include "platform/orvcore.h"

#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {

void tell(std::uint64_t number)
{
    if (::write(STDOUT_FILENO, &number, sizeof number) != sizeof number) std::_Exit(2);
}

} // namespace

int main(int, char** arguments)
{
    const std::string key = arguments[1];
    const std::u16string path(key.begin(), key.end());
    const std::uint64_t count = std::stoull(arguments[2]);
    tell(ORVProcessGetID());
    for (std::uint64_t i = 1; count == 0 || i <= count; ++i) {
        const std::u16string name = u"value" + std::u16string(1, char16_t(u'a' + i % 20));
        const std::u16string text(i * 37 % 3000, u'x');
        const auto size = static_cast<std::uint32_t>(text.size() * sizeof(char16_t));
        if (ORVRegistrySetValue(ORV_HKEY_USER, path.c_str(), name.c_str(), 3, text.data(), size) ||
            ORVRegistrySetValue(ORV_HKEY_USER, path.c_str(), u"last", 2, &i, sizeof i)) {
            return 1;
        }
        tell(i);
    }
    return 0;
}
