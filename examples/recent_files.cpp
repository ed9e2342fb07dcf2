// Keeps the files that were opened last in the configuration store of the user, and prints them.
//
//     example_recent_files letter.txt notes.txt

#include <orv/Exception>
#include <orv/String>
#include <orv/util/RegistryKey>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace orv;
using util::RegistryKey;

namespace {

constexpr std::size_t MOST_FILES = 9;

/// The files in the order of the values, which is that of their names: "1", "2" ...
std::vector<String> readFiles(const RegistryKey& key)
{
    std::vector<String> files;
    if (!key.valueExists(u"1")) return files;
    for (const auto names = key.getValueIterator(); names->hasNext();) {
        files.push_back(key.getValueString(*names->next()));
    }
    return files;
}

void writeFiles(const RegistryKey& key, const std::vector<String>& files)
{
    std::int32_t number = 0;
    for (const String& file : files) key.setValue(String::valueOf(++number), file);
}

/// Puts a file first, wherever it stood before.
void open(std::vector<String>& files, const String& file)
{
    files.erase(std::remove(files.begin(), files.end(), file), files.end());
    files.insert(files.begin(), file);
    if (files.size() > MOST_FILES) files.pop_back();
}

} // namespace

int main(int count, char** words)
{
    try {
        const RegistryKey program(u"ORV_HKEY_USER/Software/Example");
        const RegistryKey recent = program.getSubkey(u"Recent");

        std::vector<String> files = readFiles(recent);
        for (int i = 1; i < count; ++i) open(files, words[i]);
        writeFiles(recent, files);

        const std::uint32_t runs =
            program.valueExists(u"runs") ? program.getValueUINT32(u"runs") + 1 : 1;
        program.setValue(u"runs", runs);

        std::printf("Run %u, opened last:\n", runs);
        for (const String& file : files) std::printf("  %s\n", file.getBytes());
        return 0;
    } catch (const Exception& exception) {
        std::fprintf(stderr, "example_recent_files: %s (0x%08X)\n",
                     exception.getDescription().getBytes(),
                     static_cast<unsigned>(exception.getResult()));
        return 1;
    }
}
