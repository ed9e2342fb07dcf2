// Counts words in files.
//
//     example_count_words -in=letter.txt -least=3 the and
//     example_count_words -v -in=letter.txt,notes.txt
//
// Files are given behind "=", for a word that begins with a slash is an option.

#include <orv/Exception>
#include <orv/Reference>
#include <orv/String>
#include <orv/io/FileInputStream>
#include <orv/io/InputStreamReader>
#include <orv/util/CommandLineParser>

#include <cstdio>

using namespace orv;
using namespace orv::io;
using util::CommandLineParser;

namespace {

/// Whether a word counts: by its length, and by the words asked for, if any.
bool isWanted(const String& word, const CommandLineParser& line)
{
    if (word.getLength() < line.getValueLong(u"least", 0)) return false;
    const std::int32_t count = line.getParameterCount();
    for (std::int32_t i = 0; i < count; ++i) {
        if (word.equals(line.getParameter(i)->getValueString(0), true)) return true;
    }
    return count == 0;
}

std::int32_t countWords(const String& path, const CommandLineParser& line)
{
    const auto bytes = makeReference<FileInputStream>(path);
    const auto reader = makeReference<InputStreamReader>(bytes.get(), u"UTF-8", 4096);
    std::int32_t found = 0;
    String word;
    for (std::int32_t unit = 0; unit >= 0;) {
        unit = reader->read();
        if (unit >= 0 && ORVStrChrW(u" \t\r\n.,;:!?", static_cast<char16_t>(unit)) == nullptr) {
            word.append(static_cast<char16_t>(unit));
            continue;
        }
        if (!word.isEmpty() && isWanted(word, line)) {
            ++found;
            if (line.isPresent(u"v")) std::printf("  %s\n", word.getBytes());
        }
        word.clear();
    }
    return found;
}

} // namespace

int main(int count, char** words)
{
    CommandLineParser line;
    line.defineOption(u"least", 1, u"1"); // takes one word, and is 1 where it is not given
    line.parse(count - 1, words + 1);     // without the program itself
    try {
        const auto files = line.getOption(u"in");
        for (std::int32_t i = 0; files && i < files->getValueCount(); ++i) {
            const String path = files->getValueString(i);
            std::printf("%d words in %s\n", countWords(path, line), path.getBytes());
        }
        return 0;
    } catch (const Exception& exception) {
        std::fprintf(stderr, "example_count_words: %s (0x%08X)\n",
                     exception.getDescription().getBytes(),
                     static_cast<unsigned>(exception.getResult()));
        return 1;
    }
}
