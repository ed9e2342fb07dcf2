#include "tools/orv/Command.h"

#include "orv/util/IniFile.h"
#include "orv/util/IniFileException.h"
#include "orv/util/IniFileIterators.h"

#include <optional>
#include <vector>

namespace tool {
namespace {

using orv::Result;
using orv::String;
using orv::io::PrintWriter;
using namespace orv::util;

/// The file that the options name, and the work on it.
class Work {
public:
    explicit Work(const Arguments& arguments)
        : m_arguments(arguments), m_path(arguments.text(u"file"))
    {
    }

    void get(PrintWriter& out) const
    {
        IniFile file = open(true);
        const std::optional<String> value = valueOf(file, given(u"set"), given(u"key"));
        if (!value) throw Failure{keyName() + u" is not there", orv::E_NOT_FOUND};
        out.println(*value);
    }

    void set(PrintWriter&) const
    {
        const String set = given(u"set"), key = given(u"key"), value = given(u"value");
        const bool overwrites = !m_arguments.has(u"keep");
        const Result result =
            open(false).AddKey(set.getData(), key.getData(), value.getData(), overwrites);
        if (orv::failed(result)) throw Failure{keyName() + u" is there already", result};

        // The class keeps what it could not save, so another object looks.
        IniFile saved = open(false);
        if (valueOf(saved, set, key) != value) {
            throw Failure{m_path + u" does not hold " + keyName() + u" as given", E_FAIL};
        }
    }

    void remove(PrintWriter&) const
    {
        IniFile file = open(true);
        const String set = given(u"set");
        if (m_arguments.has(u"key")) {
            const Result result = file.DeleteKey(set.getData(), given(u"key").getData());
            if (orv::failed(result)) throw Failure{keyName() + u" is not there", result};
        } else {
            file.DeleteSet(set.getData());
        }
        if (isThereStill(set)) throw Failure{u"cannot write " + m_path, E_FAIL};
    }

    void listSets(PrintWriter& out) const
    {
        IniFile file = open(true);
        for (IniFileSetIterator names(file, u""); names.hasNext();) out.println(names.next());
    }

    void listKeys(PrintWriter& out) const
    {
        IniFile file = open(true);
        const String set = given(u"set");
        try {
            for (IniFileKeyIterator names(file, set.getData()); names.hasNext();) {
                out.println(names.next());
            }
        } catch (const IniFileException&) {
            throw Failure{u"set \"" + set + u"\" is not there", orv::E_NOT_FOUND};
        }
    }

private:
    String given(const char16_t* option) const { return m_arguments.verbatim(option); }

    String keyName() const
    {
        return u"key \"" + given(u"key") + u"\" of set \"" + given(u"set") + u"\"";
    }

    IniFile open(bool mustExist) const
    {
        try {
            const String lock = m_arguments.has(u"semaphore") ? given(u"semaphore") : String();
            const char* const name = lock.getLength() > 0 ? lock.getBytes() : nullptr;
            return {m_path.getData(), name, static_cast<std::int16_t>(mustExist ? 1 : 0)};
        } catch (const IniFileException& exception) {
            throw Failure{u"cannot open " + m_path, exception.getResult()};
        }
    }

    static std::optional<String> valueOf(IniFile& file, const String& set, const String& key)
    {
        for (std::vector<char16_t> room(512);; room.resize(room.size() * 2)) {
            const Result result =
                file.GetValue(set.getData(), key.getData(), room.data(), room.size());
            if (result == S_OK) return String(room.data());
            if (result == orv::E_NOT_FOUND) return std::nullopt;
        }
    }

    bool isThereStill(const String& set) const
    {
        IniFile file = open(false);
        if (m_arguments.has(u"key")) return valueOf(file, set, given(u"key")).has_value();
        for (IniFileSetIterator names(file, u""); names.hasNext();) {
            if (names.next().equals(set, true)) return true;
        }
        return false;
    }

    const Arguments& m_arguments;
    String m_path;
};

struct Action {
    const char16_t* name;
    void (Work::*run)(PrintWriter& out) const;
};

constexpr Action actions[] = {{u"get", &Work::get},
                              {u"set", &Work::set},
                              {u"delete", &Work::remove},
                              {u"sets", &Work::listSets},
                              {u"keys", &Work::listKeys}};

void runIni(const Arguments& arguments, PrintWriter& out)
{
    const String name = arguments.word(0, u"the action");
    for (const Action& action : actions) {
        if (name == action.name) return (Work(arguments).*action.run)(out);
    }
    throw UsageError{u"there is no action \"" + name + u"\""};
}

constexpr const char16_t* options[] = {u"file", u"set", u"key", u"value", u"semaphore", u"keep"};

} // namespace

const Command ini = {
    u"ini",
    u"sets and keys of a configuration file",
    u" get|set|delete|sets|keys -file=FILE [-set=NAME] [-key=NAME] [-value=TEXT]\n"
    u"       [-semaphore=NAME] [-keep]\n\n"
    u"get prints a value, set changes or adds one, delete removes a key, or without -key a set; "
    u"sets\nand keys list names. A change writes the file anew: sorted, and without comments. "
    u"See IniFile for\nthe form of the file.\n\n"
    u"  -keep       set only what is not there yet\n"
    u"  -semaphore  the name by which the programs that share the file take turns",
    options,
    1,
    &runIni};

} // namespace tool
