#include "tools/orv/Command.h"

#include "orv/Exception.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/io/StdioStreams.h"

#include <cstdio>
#include <exception>

namespace tool {
namespace {

using orv::makeReference;
using orv::Reference;
using orv::String;
using orv::io::PrintWriter;

const Command* const commands[] = {
    &about, &alphanum,  &calc, &cipher, &classes,  &component, &connect,    &convert, &digest,
    &echo,  &encodings, &ini,  &log,    &registry, &resolve,   &bundleText, &uri};

constexpr std::int32_t OUTPUT_BUFFER = 16384;

enum ExitStatus { SUCCESS = 0, FAILURE = 1, WRONG_USAGE = 2 };

/// "0x" and eight digits.
String hexadecimal(orv::Result result)
{
    char digits[16];
    std::snprintf(digits, sizeof digits, "0x%08X", static_cast<unsigned>(result));
    return digits;
}

void printError(const String& text)
{
    const char* const bytes = text.getBytes();
    std::fprintf(stderr, "%s\n", bytes);
}

Reference<PrintWriter> standardOutput()
{
    using namespace orv::io;
    auto bytes = makeReference<StdioOutputStream>();
    auto units = makeReference<OutputStreamWriter>(bytes.get(), nullptr, OUTPUT_BUFFER);
    return makeReference<PrintWriter>(units.get(), false);
}

void printHelp(PrintWriter& out)
{
    out.println(u"usage: orv COMMAND [-OPTION=VALUE ...]\n");
    out.println(u"Commands:");
    for (const Command* command : commands) {
        String line(u"  ");
        line.append(command->name).append(u' ', 12 - ORVStrLenW(command->name));
        out.println(line.append(command->summary));
    }
    out.println(u"\n\"orv COMMAND -help\" tells more of a command. Results go to standard output, "
                u"failures to\nstandard error. Exit status: 0 done, 1 failed, 2 wrong usage.");
}

void printUsage(PrintWriter& out, const Command& command)
{
    out.print(u"usage: orv ");
    out.print(command.name);
    out.println(command.usage);
}

const Command* findCommand(const String& name)
{
    for (const Command* command : commands) {
        if (name == command->name) return command;
    }
    return nullptr;
}

bool isHelp(const char* word)
{
    const String text(word);
    return text == u"-help" || text == u"--help" || text == u"-h" || text == u"help";
}

int wrongUsage(const String& text)
{
    printError(u"orv: " + text + u"\nTry \"orv -help\".");
    return WRONG_USAGE;
}

/// Runs `command` and tells what it failed in.
int runCommand(const Command& command, int count, char** words)
{
    const String prefix = String(u"orv ") + command.name + u": ";
    try {
        const Reference<PrintWriter> out = standardOutput();
        if (count > 0 && isHelp(words[0])) {
            printUsage(*out, command);
        } else {
            command.run(Arguments(count, words, command.options, command.words), *out);
        }
        out->flush();
        return SUCCESS;
    } catch (const UsageError& error) {
        printError(prefix + error.text + u"\nTry \"orv " + command.name + u" -help\".");
        return WRONG_USAGE;
    } catch (const Failure& failure) {
        printError(prefix + failure.text + u" (" + hexadecimal(failure.result) + u")");
    } catch (const orv::Exception& exception) {
        String text = exception.getDescription();
        if (text.getLength() == 0) text = u"failed";
        printError(prefix + text + u" (" + hexadecimal(exception.getResult()) + u")");
    } catch (const std::exception& exception) {
        printError(prefix + exception.what() + u" (" + hexadecimal(E_FAIL) + u")");
    }
    return FAILURE;
}

int run(int count, char** words)
{
    if (count < 2) return wrongUsage(u"a command is missing");
    if (isHelp(words[1])) {
        const Reference<PrintWriter> out = standardOutput();
        printHelp(*out);
        out->flush();
        return SUCCESS;
    }
    const Command* const command = findCommand(words[1]);
    if (command == nullptr) return wrongUsage(String(u"there is no command \"") + words[1] + u"\"");
    return runCommand(*command, count - 2, words + 2);
}

} // namespace
} // namespace tool

int main(int count, char** words)
{
    try {
        return tool::run(count, words);
    } catch (const orv::Exception& exception) {
        std::fprintf(stderr, "orv: cannot write the output (0x%08X)\n",
                     static_cast<unsigned>(exception.getResult()));
        return tool::FAILURE;
    }
}
