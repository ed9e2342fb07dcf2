#include "tools/orv/Command.h"

#include "orv/Failure.h"
#include "orv/exec/SharedLibrary.h"
#include "orv/quark/Component.h"
#include "orv/util/RegistryKey.h"
#include "tools/orv/Components.h"
#include "tools/orv/Files.h"

#include <algorithm>
#include <cstdio>

namespace tool {
namespace {

using orv::Result;
using orv::String;
using orv::exec::SharedLibrary;
using orv::io::PrintWriter;
using orv::util::RegistryKey;

constexpr std::int32_t PATH_ROOM = 4096;

/// The file as the store names it: absolute, with slashes.
String absoluteFile(const String& file)
{
    char16_t path[PATH_ROOM];
    orv::throwIfFailed(ORVPathExpand(file.getData(), path, PATH_ROOM));
    std::replace(path, path + ORVStrLenW(path), u'\\', u'/');
    const bool hasDrive = path[0] != 0 && path[1] == u':';
    return hasDrive ? path + 2 : path;
}

/// Prints what is wrong with the lines of a catalogue; of a file that is none, the beginning.
class BrokenLines {
public:
    explicit BrokenLines(const String& name) : m_name(name) {}
    BrokenLines(const BrokenLines&) = delete;
    BrokenLines& operator=(const BrokenLines&) = delete;
    ~BrokenLines()
    {
        if (m_count <= MOST) return;
        std::fprintf(stderr, "%s: %d more broken lines\n", m_name.getBytes(), m_count - MOST);
    }

    static void tell(void* self, std::int32_t line, const char16_t* reason)
    {
        auto& lines = *static_cast<BrokenLines*>(self);
        if (++lines.m_count > MOST) return;
        const String place = line > 0 ? u":" + String::valueOf(line) : String();
        const String text = lines.m_name + place + u": " + reason;
        std::fprintf(stderr, "%s\n", text.getBytes());
    }

private:
    static constexpr std::int32_t MOST = 20;

    String m_name;
    std::int32_t m_count = 0;
};

/// The component in a file. What it throws against its word becomes a result.
class Component {
public:
    explicit Component(const String& file) : m_file(file), m_library(file.getData()) {}

    void registerServer()
    {
        auto* const entry = find<decltype(&ORVRegisterServer)>(u"ORVRegisterServer", noComponent);
        check(u" cannot be registered", [&] { return entry(m_file.getData()); });
    }
    void unregisterServer()
    {
        auto* const entry =
            find<decltype(&ORVUnregisterServer)>(u"ORVUnregisterServer", noComponent);
        check(u" cannot be unregistered", entry);
    }
    void requireCatalogues()
    {
        find<decltype(&ORVRegisterCatalogue)>(u"ORVRegisterCatalogue", noCatalogues);
    }
    void registerCatalogue(const String& catalogue)
    {
        auto* const entry =
            find<decltype(&ORVRegisterCatalogue)>(u"ORVRegisterCatalogue", noCatalogues);
        const String file = absoluteFile(catalogue);
        tellBrokenLines(catalogue, file);
        check(u" cannot register the catalogue " + catalogue,
              [&] { return entry(m_file.getData(), file.getData()); });
    }
    void unregisterCatalogue(const String& catalogue)
    {
        auto* const entry =
            find<decltype(&ORVUnregisterCatalogue)>(u"ORVUnregisterCatalogue", noCatalogues);
        check(u" cannot unregister the catalogue " + catalogue,
              [&] { return entry(absoluteFile(catalogue).getData()); });
    }

private:
    static constexpr const char16_t* noComponent = u" is no component: it does not export ";
    static constexpr const char16_t* noCatalogues = u" has no catalogues: it does not export ";

    /// A failure comes again with the registration.
    void tellBrokenLines(const String& name, const String& file)
    {
        auto* const entry = find<decltype(&ORVCheckCatalogue)>(u"ORVCheckCatalogue", noCatalogues);
        BrokenLines lines(name);
        static_cast<void>(
            orv::resultOf([&] { return entry(file.getData(), &BrokenLines::tell, &lines); }));
    }

    template <class Entry>
    Entry find(const char16_t* name, const char16_t* complaint)
    {
        return named(m_file + complaint + name,
                     [&] { return reinterpret_cast<Entry>(m_library.getSymbol(name)); });
    }

    template <class Call>
    void check(const String& complaint, Call call)
    {
        const Result result = orv::resultOf(call);
        if (orv::failed(result)) throw Failure{m_file + complaint, result};
    }

    String m_file;
    SharedLibrary m_library;
};

/// Removes a class whose component cannot do so itself any more.
void removeClass(const String& classId)
{
    const RegistryKey key(ORV_HKEY_CLASSES_64, u"CLSID\\" + classId);
    for (const char16_t* name : {u"ProgID", u"VersionIndependentProgID"}) {
        const String progId = defaultOf(key.getSubkey(name));
        if (progId.getLength() > 0) {
            ORVRegistryDeleteKey(ORV_HKEY_CLASSES_64, progId.getData());
        }
    }
    key.remove();
}

void removeClassesOf(const String& file)
{
    bool found = false;
    for (const RegisteredClass& each : registeredClasses()) {
        if (each.file != file) continue;
        removeClass(each.classId);
        found = true;
    }
    if (!found) throw Failure{u"nothing is registered for " + file, orv::E_NOT_FOUND};
}

void checkIsThere(const String& file)
{
    if (!canBeOpened(file)) throw Failure{u"cannot open " + file, orv::E_NOT_FOUND};
}

Component load(const String& file)
{
    return named(file + u" is no library that can be loaded", [&] { return Component(file); });
}

void registerAll(const Arguments& arguments, PrintWriter&)
{
    const String file = absoluteFile(arguments.text(u"file"));
    const std::vector<String> catalogues = arguments.texts(u"catalogue");
    checkIsThere(file);
    for (const String& catalogue : catalogues) checkIsThere(absoluteFile(catalogue));
    Component component = load(file);
    if (!catalogues.empty()) component.requireCatalogues();
    component.registerServer();
    for (const String& catalogue : catalogues) component.registerCatalogue(catalogue);
}

void unregisterAll(const Arguments& arguments, PrintWriter&)
{
    const String file = absoluteFile(arguments.text(u"file"));
    const std::vector<String> catalogues = arguments.texts(u"catalogue");
    if (catalogues.empty() && !canBeOpened(file)) return removeClassesOf(file);
    Component component = load(file);
    if (catalogues.empty()) return component.unregisterServer();
    for (const String& catalogue : catalogues) component.unregisterCatalogue(catalogue);
}

void list(const Arguments&, PrintWriter& out)
{
    for (const RegisteredClass& each : registeredClasses()) {
        const String name = each.progId.getLength() == 0 ? String(u"-") : each.progId;
        out.println(name + u"\t" + each.classId + u"\t" + each.file +
                    (each.isThere ? u"\tpresent" : u"\tmissing"));
    }
}

struct OperationRow {
    const char16_t* name;
    void (*run)(const Arguments& arguments, PrintWriter& out);
};
constexpr OperationRow operations[] = {
    {u"register", &registerAll}, {u"unregister", &unregisterAll}, {u"list", &list}};

void runComponent(const Arguments& arguments, PrintWriter& out)
{
    const String name = arguments.word(0, u"the operation");
    for (const OperationRow& operation : operations) {
        if (name == operation.name) return operation.run(arguments, out);
    }
    throw UsageError{u"there is no operation \"" + name + u"\""};
}

constexpr const char16_t* options[] = {u"file", u"catalogue"};

} // namespace

const Command component = {
    u"component",
    u"components in the configuration store",
    u" register|unregister -file=FILE [-catalogue=FILE ...]\n"
    u"       orv component list\n\n"
    u"register enters the classes of a component's library into the store, so that hosts create\n"
    u"their objects by ProgID, and then what it serves out of the catalogues. Lines of a\n"
    u"catalogue that give nothing are told on standard error. unregister removes the classes, "
    u"also\n"
    u"those of a file that is gone, or with -catalogue nothing but the catalogues.\n"
    u"list prints a line for each class: ProgID or \"-\", class identifier, file, \"present\" or "
    u"\"missing\",\nseparated by tabs.",
    options,
    1,
    &runComponent};

} // namespace tool
