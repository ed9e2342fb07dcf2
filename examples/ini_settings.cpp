// Opens the configuration file of a small server, fills in what is missing, and prints it.
//
//     example_ini_settings server.ini

#include <orv/Exception>
#include <orv/String>
#include <orv/util/IniFile>
#include <orv/util/IniFileIterators>

#include <cstdio>

using namespace orv;
using namespace orv::util;

namespace {

struct Setting {
    const char16_t *set, *key, *value;
};

constexpr Setting defaults[] = {
    {u"network", u"host", u"127.0.0.1"},
    {u"network", u"port", u"8080"},
    {u"log", u"level", u"2"},
};

String valueOf(IniFile& file, const String& set, const String& key)
{
    char16_t value[256];
    return file.GetValue(set.getData(), key.getData(), value, 256) == S_OK ? value : u"";
}

} // namespace

int main(int count, char** words)
{
    const String path(count > 1 ? words[1] : "server.ini");
    try {
        // Programs that name the same semaphore take turns with the file.
        IniFile file(path.getData(), "example server.ini", 0);

        // What somebody has set stays: a key that is there is not overwritten.
        for (const Setting& setting : defaults) {
            file.AddKey(setting.set, setting.key, setting.value, false);
        }

        for (IniFileSetIterator sets(file, u""); sets.hasNext();) {
            const String set = sets.next();
            for (IniFileKeyIterator keys(file, set.getData()); keys.hasNext();) {
                const String key = keys.next();
                std::printf("%s.%s = %s\n", set.getBytes(), key.getBytes(),
                            valueOf(file, set, key).getBytes());
            }
        }
        return 0;
    } catch (const Exception& exception) {
        std::fprintf(stderr, "example_ini_settings: %s (0x%08X)\n",
                     exception.getDescription().getBytes(),
                     static_cast<unsigned>(exception.getResult()));
        return 1;
    }
}
